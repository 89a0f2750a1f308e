// The operator table of the expression language, cell by cell, through expression texts: every
// operator against every type, mixed types, integer wrap-around and division.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

#include "grammar/Expression.h"
#include "grammar/tests/ExpressionTestSupport.h"

namespace vellum {
namespace {

using testing::outcome;

// One operand pair per type; a is never equal to b, so comparisons can tell the order apart.
struct Operands {
    const char* a;
    const char* b;
};
const Operands kInteger{"7", "2"};
const Operands kReal{"7.5", "2.0"};
const Operands kBoolean{"true", "false"};
const Operands kString{"\"b\"", "\"a\""};

constexpr const char* kUndefined = "exprException 3";

struct BinaryRow {
    const char* op;
    const char* integer;
    const char* real;
    const char* boolean;
    const char* string;
};

std::string binary(const Operands& operands, const char* op, bool swapped = false) {
    return swapped ? std::string(operands.b) + " " + op + " " + operands.a
                   : std::string(operands.a) + " " + op + " " + operands.b;
}

TEST(ExpressionOperatorTest, ArithmeticAndLogicCellsOfEveryType) {
    const BinaryRow rows[] = {
        {"+", "integer 9", "real 9.5", kUndefined, "string \"b\"\"a\""},
        {"-", "integer 5", "real 5.5", kUndefined, kUndefined},
        {"*", "integer 14", "real 15", kUndefined, kUndefined},
        {"/", "integer 3", "real 3.75", kUndefined, kUndefined},
        {"&&", kUndefined, kUndefined, "boolean false", kUndefined},
        {"||", kUndefined, kUndefined, "boolean true", kUndefined},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.op);
        EXPECT_EQ(outcome(binary(kInteger, row.op)), row.integer);
        EXPECT_EQ(outcome(binary(kReal, row.op)), row.real);
        EXPECT_EQ(outcome(binary(kBoolean, row.op)), row.boolean);
        EXPECT_EQ(outcome(binary(kString, row.op)), row.string);
    }
}

// Each cell holds the results of a OP b, b OP a and a OP a, or the error.
TEST(ExpressionOperatorTest, ComparisonCellsOfEveryType) {
    struct Row {
        const char* op;
        const char* ordered;  // for integer and real, as "ab ba aa" with t/f
        const char* boolean;
        const char* string;
    };
    const Row rows[] = {
        {"==", "fft", "fft", "fft"},           {"!=", "ttf", "ttf", "ttf"},
        {"<", "ftf", kUndefined, "ftf"},       {">", "tff", kUndefined, "tff"},
        {"<=", "ftt", kUndefined, kUndefined}, {">=", "tft", kUndefined, kUndefined},
    };
    const auto results = [](const Operands& operands, const char* op) -> std::string {
        std::string letters;
        for (const std::string& text : {binary(operands, op), binary(operands, op, true),
                                        std::string(operands.a) + " " + op + " " + operands.a}) {
            const std::string result = outcome(text);
            if (result.rfind("exprException", 0) == 0)
                return result;
            letters += result == "boolean true" ? 't' : result == "boolean false" ? 'f' : '?';
        }
        return letters;
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.op);
        EXPECT_EQ(results(kInteger, row.op), row.ordered);
        EXPECT_EQ(results(kReal, row.op), row.ordered);
        EXPECT_EQ(results(kBoolean, row.op), row.boolean);
        EXPECT_EQ(results(kString, row.op), row.string);
    }
}

TEST(ExpressionOperatorTest, UnaryCellsOfEveryType) {
    EXPECT_EQ(outcome("-7"), "integer -7");
    EXPECT_EQ(outcome("-7.5"), "real -7.5");
    EXPECT_EQ(outcome("-true"), kUndefined);
    EXPECT_EQ(outcome("-\"b\""), kUndefined);
    EXPECT_EQ(outcome("!7"), kUndefined);
    EXPECT_EQ(outcome("!7.5"), kUndefined);
    EXPECT_EQ(outcome("!true"), "boolean false");
    EXPECT_EQ(outcome("!\"b\""), kUndefined);
}

TEST(ExpressionOperatorTest, MixedTypesRaiseCode2ForEveryBinaryOperator) {
    const Operands mixed[] = {{"7", "7.0"}, {"true", "1"}, {"\"1\"", "1"}, {"2.5", "false"}};
    for (const char* op : {"+", "-", "*", "/", "&&", "||", "==", "!=", "<", "<=", ">", ">="}) {
        for (const auto& operands : mixed) {
            EXPECT_EQ(outcome(binary(operands, op)), "exprException 2") << binary(operands, op);
        }
    }
}

TEST(ExpressionOperatorTest, ErrorsCarryTheOffendingValues) {
    try {
        Expression("1 + 2.5").evaluate(Environment{});
        FAIL() << "no exception";
    } catch (const exprException& error) {
        ASSERT_NE(error.first(), nullptr);
        ASSERT_NE(error.second(), nullptr);
        EXPECT_EQ(*error.first(), Value::integer(1));
        EXPECT_EQ(*error.second(), Value::real(2.5));
    }
}

TEST(ExpressionOperatorTest, IntegerArithmeticWrapsIn32Bits) {
    Environment environment;
    environment.bind("lowest", Value::integer(std::numeric_limits<std::int32_t>::min()));
    EXPECT_EQ(outcome("2147483647 + 1", environment), "integer -2147483648");
    EXPECT_EQ(outcome("lowest - 1", environment), "integer 2147483647");
    EXPECT_EQ(outcome("65536 * 65536", environment), "integer 0");
    EXPECT_EQ(outcome("65537 * 65537", environment), "integer 131073");
    EXPECT_EQ(outcome("-lowest", environment), "integer -2147483648");
    EXPECT_EQ(outcome("lowest / -1", environment), "integer -2147483648");
    // A literal that does not fit is not an integer of the language.
    EXPECT_EQ(outcome("2147483648"), "exprException 0");
}

TEST(ExpressionOperatorTest, IntegerDivisionTruncatesAndRejectsZero) {
    EXPECT_EQ(outcome("(0 - 7) / 2"), "integer -3");
    EXPECT_EQ(outcome("7 / (0 - 2)"), "integer -3");
    EXPECT_EQ(outcome("1 / 3"), "integer 0");
    try {
        Expression("5 / 0").evaluate(Environment{});
        FAIL() << "no exception";
    } catch (const exprException& error) {
        EXPECT_EQ(error.code(), exprException::kUndefined);
        ASSERT_NE(error.second(), nullptr);
        EXPECT_EQ(*error.second(), Value::integer(0));
    }
}

TEST(ExpressionOperatorTest, RealDivisionByZeroFollowsIeee) {
    EXPECT_EQ(outcome("1.0 / 0.0"), "real inf");
    EXPECT_EQ(outcome("-1.0 / 0.0"), "real -inf");
    const auto nan = Expression("0.0 / 0.0").evaluate(Environment{});
    ASSERT_TRUE(nan && nan->is(ValueType::Real));
    EXPECT_TRUE(std::isnan(nan->asReal()));
}

}  // namespace
}  // namespace vellum
