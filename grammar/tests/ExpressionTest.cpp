// Building and evaluating expressions: precedence and associativity, the unary quirk, the
// conditional, the absence of short-circuits, malformed texts, environments and reuse of a tree.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "base/Console.h"
#include "grammar/Expression.h"
#include "grammar/tests/ExpressionTestSupport.h"

namespace vellum {
namespace {

using testing::outcome;

struct Case {
    const char* text;
    const char* expected;
};

void expectAll(const std::vector<Case>& cases, const Environment& environment = {}) {
    for (const auto& c : cases) {
        EXPECT_EQ(outcome(c.text, environment), c.expected) << c.text;
    }
}

TEST(ExpressionTest, PrecedenceAndLeftAssociativity) {
    expectAll({
        {"1 + 2 * 3", "integer 7"},
        {"(1 + 2) * 3", "integer 9"},
        {"10 - 4 - 3", "integer 3"},
        {"100 / 10 / 5", "integer 2"},
        {"2 * 3 - 8 / 4", "integer 4"},
        {"1 + 2 < 4", "boolean true"},
        {"1 < 2 == 2 < 1", "boolean false"},
        {"true || false && false", "boolean true"},
        {"false && true || true", "boolean true"},
        {"1 == 1 && 2 != 2", "boolean false"},
    });
}

TEST(ExpressionTest, ConditionalNestsToTheRightAndBindsLoosest) {
    expectAll({
        {"true ? 1 : 2", "integer 1"},
        {"false ? 1 : 2", "integer 2"},
        {"false ? 1 : true ? 2 : 3", "integer 2"},
        {"false ? 1 : false ? 2 : 3", "integer 3"},
        {"1 < 2 ? 10 + 1 : 20", "integer 11"},
        {"true ? false ? 1 : 2 : 3", "integer 2"},
    });
}

TEST(ExpressionTest, UnaryOperatorAppliesToTheFirstOperandInsideParentheses) {
    Environment environment;
    environment.bind("a", Value::boolean(false));
    environment.bind("b", Value::boolean(false));
    expectAll(
        {
            {"-(1 + 2)", "integer 1"},
            {"-(6 - 3)", "integer -9"},
            {"-(6 * 3) + 1", "integer -17"},
            {"!(a && b)", "boolean false"},  // (!a) && b
            {"!(a) || b", "boolean true"},
            {"6 - - 3", "integer 9"},
            {"-2 * 3", "integer -6"},
            // Nested: the inner operator takes the flag, the outer one is left pending.
            {"-(-(3))", "exprException 0"},
            {"- - 3", "exprException 0"},
        },
        environment);
}

TEST(ExpressionTest, ConditionalEvaluatesOnlyTheChosenBranch) {
    Environment environment;
    environment.bind("c", Value::boolean(true));
    expectAll(
        {
            {"c ? 1 : x", "integer 1"},
            {"c ? x : 1", "exprException 5"},
            {"!c ? x : 2", "integer 2"},
            {"1 ? 2 : 3", "exprException 4"},
            {"x ? 2 : 3", "exprException 5"},
        },
        environment);
}

TEST(ExpressionTest, LogicalOperatorsEvaluateBothSides) {
    expectAll({
        {"false && x", "exprException 5"},
        {"true || x", "exprException 5"},
        {"false && 1", "exprException 2"},
    });
    try {
        Expression("false && missing.name").evaluate(Environment{});
        FAIL() << "no exception";
    } catch (const exprException& error) {
        EXPECT_EQ(error.code(), exprException::kUnbound);
        ASSERT_NE(error.first(), nullptr);
        EXPECT_EQ(*error.first(), Value::string("missing.name"));
    }
}

TEST(ExpressionTest, MalformedTextsRaiseCode0AndTextAfterAnExpressionIsIgnored) {
    expectAll({
        {"", "exprException 0"},
        {"   ", "exprException 0"},
        {"1 +", "exprException 0"},
        {"(1 + 2", "exprException 0"},
        {"true ? 1", "exprException 0"},
        {"* 2", "exprException 0"},
        {"1 2", "integer 1"},
        {"trueValue", "boolean true"},
        {"falsehood", "boolean false"},
        {"3 )", "integer 3"},
    });
}

TEST(ExpressionTest, LiteralsAndVariables) {
    Environment environment;
    environment.bind("x.y", Value::integer(4));
    environment.bind("name_2", Value::string("plain"));
    expectAll(
        {
            {"\"a\\\"b\"", "string \"a\\\"b\""},
            {"\"\"", "string \"\""},
            {"\"x\" + name_2", "string \"x\"plain"},
            {"x.y * 2", "integer 8"},
            {"2.50", "real 2.5"},
            {"007", "integer 7"},
            {"x", "exprException 5"},
        },
        environment);
}

TEST(ExpressionTest, FirstBindingWinsAndOwnBindingsServeEvaluateWithoutEnvironment) {
    Environment environment;
    environment.bind("n", Value::integer(1));
    environment.bind("n", Value::integer(2));
    EXPECT_EQ(outcome("n", environment), "integer 1");

    Expression expression("n + 1");
    expression.bindings().bind("n", Value::integer(41));
    const auto own = expression.evaluate();
    ASSERT_TRUE(own);
    EXPECT_EQ(*own, Value::integer(42));
    EXPECT_THROW(expression.evaluate(Environment{}), exprException);
}

TEST(ExpressionTest, ATreeIsEvaluatedManyTimesAndReplacedBySetText) {
    Expression expression("k * k");
    for (std::int32_t k = 0; k < 5; ++k) {
        Environment environment;
        environment.bind("k", Value::integer(k));
        EXPECT_EQ(*expression.evaluate(environment), Value::integer(k * k));
    }
    expression.setText("k + 1");
    Environment one;
    one.bind("k", Value::integer(1));
    EXPECT_EQ(*expression.evaluate(one), Value::integer(2));

    EXPECT_THROW(expression.setText("k +"), exprException);
    EXPECT_FALSE(expression.hasTree());
    EXPECT_EQ(expression.evaluate(one), nullptr);

    EXPECT_EQ(*expression.evaluateOnce("k - 1", one), Value::integer(0));
    EXPECT_FALSE(expression.hasTree());
}

TEST(ExpressionTest, VariableNamesListsEachNameTheTreeReadsOnceInTextOrder) {
    Expression expression("b.x > 1 ? a + b.x : $(vmath.max)(c, a)");
    EXPECT_EQ(expression.variableNames(), (std::vector<std::string>{"b.x", "a", "c"}));
    // Names count only where they are variables: not in strings, not as a call's names.
    expression.setText("\"a\" + s");
    EXPECT_EQ(expression.variableNames(), std::vector<std::string>{"s"});
    expression.setText("1 + 2");
    EXPECT_TRUE(expression.variableNames().empty());

    expression.setText("k");
    EXPECT_THROW(expression.setText("k + m +"), exprException);
    EXPECT_TRUE(expression.variableNames().empty());
    Environment environment;
    environment.bind("k", Value::integer(1));
    expression.evaluateOnce("k", environment);
    EXPECT_TRUE(expression.variableNames().empty());
}

TEST(ExpressionTest, ManyExpressionsBuiltFromOneTextAreIndependent) {
    std::vector<std::unique_ptr<Expression>> expressions;
    for (int i = 0; i < 200; ++i) {
        expressions.push_back(std::make_unique<Expression>("v * 2 + 1"));
    }
    for (int i = 0; i < 200; ++i) {
        Environment environment;
        environment.bind("v", Value::integer(i));
        EXPECT_EQ(*expressions[static_cast<std::size_t>(i)]->evaluate(environment),
                  Value::integer(2 * i + 1));
    }
}

TEST(ExpressionTest, NestingBeyondTheDepthLimitIsRejectedNotOverflowed) {
    const auto chain = [](int terms) {
        std::string text = "1";
        for (int i = 1; i < terms; ++i) {
            text += " + 1";
        }
        return text;
    };
    const int limit = ExpressionBuilder::kMaxDepth;
    EXPECT_EQ(outcome(chain(limit)), "integer " + std::to_string(limit));
    EXPECT_EQ(outcome(chain(limit + 2)), "exprException 0");
    EXPECT_EQ(outcome(chain(100000)), "exprException 0");
    // Parentheses alone add no level to the tree.
    EXPECT_EQ(outcome(std::string(10000, '(') + "5" + std::string(10000, ')')), "integer 5");
}

TEST(ExpressionTest, UnknownActionNumberIsReportedAndAborts) {
    struct Probe : Expression {
        int call(int number) { return onAction(number); }
    } probe;
    ConsoleCapture capture;
    EXPECT_EQ(probe.call(99), 0);
    EXPECT_EQ(capture.text(), "Unkown callback number !!!\n");
    EXPECT_EQ(probe.call(17), 1);  // reserved numbers do nothing
}

}  // namespace
}  // namespace vellum
