// Expressions that cannot be evaluated: type errors, division by zero, names nobody bound, trees
// nested beyond the builder's limit, overlong tokens and bytes outside the language. Each ends
// in an exprException with its code, or in a defined value; none may crash.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "grammar/Expression.h"

namespace vellum {
namespace {

// The value of the text, or the code of the exprException it raises.
struct Outcome {
    std::optional<Value> value;
    int code = -1;
};

Outcome evaluate(const std::string& text, const Environment& environment = {}) {
    try {
        Expression expression;
        const std::unique_ptr<Value> value = expression.evaluateOnce(text, environment);
        return {value != nullptr ? std::optional<Value>(*value) : std::nullopt, -1};
    } catch (const exprException& error) {
        return {std::nullopt, error.code()};
    }
}

std::string repeated(const std::string& piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i)
        text += piece;
    return text;
}

// Type errors raise their codes. An integer divisor of 0 is an undefined operation; reals follow
// the floating-point rules; integer quotients are truncated and wrap like the other integer
// operations. Bytes outside the language are malformed, but text after a complete expression is
// ignored, whatever it is.
TEST(ExpressionInput, TypeErrorsDivisionAndForeignBytesEndInTheirValueOrCode) {
    const int none = -1;
    const struct {
        const char* text;
        std::optional<Value> value;
        int code;
    } rows[] = {
        {"1 + 2.0", std::nullopt, exprException::kTypeMismatch},
        {"\"a\" == 1", std::nullopt, exprException::kTypeMismatch},
        {"true + true", std::nullopt, exprException::kUndefined},
        {"\"a\" - \"b\"", std::nullopt, exprException::kUndefined},
        {"\"a\" <= \"b\"", std::nullopt, exprException::kUndefined},
        {"-true", std::nullopt, exprException::kUndefined},
        {"!1", std::nullopt, exprException::kUndefined},
        {"1 && 2", std::nullopt, exprException::kUndefined},
        {"1 ? 2 : 3", std::nullopt, exprException::kConditionNotBoolean},
        {"1 / 0", std::nullopt, exprException::kUndefined},
        {"0 / 0", std::nullopt, exprException::kUndefined},
        {"1 / (2 - 2)", std::nullopt, exprException::kUndefined},
        {"7 / 2", Value::integer(3), none},
        {"-7 / 2", Value::integer(-3), none},
        {"(0 - 2147483647 - 1) / (0 - 1)", Value::integer(std::numeric_limits<int>::min()), none},
        {"1.0 / 0.0", Value::real(std::numeric_limits<double>::infinity()), none},
        {"-1.0 / 0.0", Value::real(-std::numeric_limits<double>::infinity()), none},
        {"1.0 / 0", std::nullopt, exprException::kTypeMismatch},
        {"", std::nullopt, exprException::kMalformed},
        {"\xff", std::nullopt, exprException::kMalformed},
        {"\xc3\x28", std::nullopt, exprException::kMalformed},
        {"\x01", std::nullopt, exprException::kMalformed},
        {"1 \xff 2", Value::integer(1), none},
        {"caf\xc3\xa9 + 1", std::nullopt, exprException::kUnbound},
    };
    for (const auto& row : rows) {
        const Outcome outcome = evaluate(row.text);
        EXPECT_EQ(outcome.value, row.value) << row.text;
        EXPECT_EQ(outcome.code, row.code) << row.text;
    }
    const Outcome nan = evaluate("0.0 / 0.0");
    ASSERT_TRUE(nan.value && nan.value->is(ValueType::Real));
    EXPECT_TRUE(std::isnan(nan.value->asReal()));
}

TEST(ExpressionInput, NamesNobodyBoundRaiseCode5UnlessNotEvaluated) {
    Environment environment;
    environment.bind("x", Value::integer(1));
    EXPECT_EQ(evaluate("y + 1", environment).code, exprException::kUnbound);
    EXPECT_EQ(evaluate("x.y", environment).code, exprException::kUnbound);
    // Both operands of && are evaluated.
    EXPECT_EQ(evaluate("false && y", environment).code, exprException::kUnbound);
    // Only the chosen branch of ? : is.
    EXPECT_EQ(evaluate("x == 1 ? 5 : y", environment).value, Value::integer(5));
}

// Evaluating and destroying a tree recurse once per level, so the builder refuses trees deeper
// than its limit; parentheses alone add no level.
TEST(ExpressionInput, TreesDeeperThanTheLimitAreRefused) {
    const std::size_t limit = ExpressionBuilder::kMaxDepth;
    EXPECT_EQ(evaluate("1" + repeated(" + 1", limit - 1)).value,
              Value::integer(static_cast<int>(limit)));
    EXPECT_EQ(evaluate("1" + repeated(" + 1", limit)).code, exprException::kMalformed);
    EXPECT_EQ(evaluate(repeated("true ? ", limit - 1) + "1" + repeated(" : 2", limit - 1)).value,
              Value::integer(1));
    EXPECT_EQ(evaluate(repeated("true ? ", limit) + "1" + repeated(" : 2", limit)).code,
              exprException::kMalformed);
    EXPECT_EQ(evaluate(repeated("(", 100000) + "1" + repeated(")", 100000)).value,
              Value::integer(1));
    EXPECT_EQ(evaluate(repeated("(", 100000) + "1").code, exprException::kMalformed);
}

TEST(ExpressionInput, OverlongTokensAreMalformed) {
    Environment environment;
    const std::string name(127, 'v');
    environment.bind(name, Value::integer(4));
    EXPECT_EQ(evaluate(name + " + 1", environment).value, Value::integer(5));
    EXPECT_EQ(evaluate(name + "v + 1", environment).code, exprException::kMalformed);
    // An integer beyond 32 bits is no number of the language; a long real is.
    EXPECT_EQ(evaluate(std::string(11, '9')).code, exprException::kMalformed);
    EXPECT_EQ(evaluate("0." + std::string(125, '5')).value, Value::real(0.5555555555555556));
    EXPECT_EQ(evaluate("0." + std::string(126, '5')).code, exprException::kMalformed);
    const std::string text = '"' + std::string(125, 's') + '"';
    EXPECT_EQ(evaluate(text).value, Value::string(text));
    EXPECT_EQ(evaluate('"' + std::string(126, 's') + '"').code, exprException::kMalformed);
}

}  // namespace
}  // namespace vellum
