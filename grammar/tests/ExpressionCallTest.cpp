// Library calls: the names cut from the call's text, real calls into the example library
// plugins/vmath through dlopen, missing libraries and functions, functions that return nothing,
// the calling convention, and libraries shared between expressions and threads.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "grammar/Expression.h"
#include "grammar/ExpressionCall.h"
#include "grammar/tests/ExpressionTestSupport.h"

namespace vellum {
namespace {

using testing::outcome;

int codeOf(const std::string& text) {
    try {
        Expression(text).evaluate(Environment{});
    } catch (const exprException& error) {
        return error.code();
    }
    return -1;
}

TEST(ExpressionCallTest, NamesAreCutFromTheWholeCallTextAtTheFirstFullStop) {
    struct Row {
        const char* text;
        const char* library;
        const char* function;
    };
    const Row rows[] = {
        {"$(vmath.twice)", "$(vmath", "twice)"},
        {"$(a.b.c)", "$(a", "b.c)"},
        {"$(nodot)", "$(nodot)", ""},
    };
    for (const auto& row : rows) {
        const CallName name = splitCallText(row.text);
        EXPECT_EQ(name.library, row.library) << row.text;
        EXPECT_EQ(name.function, row.function) << row.text;
    }
}

TEST(ExpressionCallTest, CallsTheExampleLibrary) {
    const std::pair<const char*, const char*> cases[] = {
        {"$(vmath.abs)(0 - 3)", "integer 3"},
        {"$(vmath.abs)(0.0 - 2.5)", "real 2.5"},
        {"$(vmath.max)(2, 7)", "integer 7"},
        {"$(vmath.min)(2.5, 1.0)", "real 1"},
        {"$(vmath.sqrt)(2.25)", "real 1.5"},
        {"$(vmath.length)(\"abc\")", "integer 5"},  // the quotes count
        {"$(vmath.max)(2, 7) * 2", "integer 14"},
        {"$(vmath.max)($(vmath.abs)(0 - 9), 4)", "integer 9"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(outcome(text), expected) << text;
    }
}

TEST(ExpressionCallTest, NegationBeforeACallAppliesToItsFirstArgument) {
    EXPECT_EQ(outcome("-$(vmath.abs)(5)"), "integer 5");
    EXPECT_EQ(outcome("-$(vmath.max)(3, 1)"), "integer 1");
}

TEST(ExpressionCallTest, NothingReturnedIsCode1WhereAValueIsNeeded) {
    EXPECT_EQ(outcome("$(vmath.abs)(\"x\")"), "nothing");
    EXPECT_EQ(outcome("$(vmath.abs)"), "nothing");
    EXPECT_EQ(outcome("$(vmath.max)(1, 2.0)"), "nothing");
    EXPECT_EQ(codeOf("$(vmath.abs)(\"x\") + 1"), exprException::kMissing);
    EXPECT_EQ(codeOf("$(vmath.abs)($(vmath.abs)(true))"), exprException::kMissing);
    EXPECT_EQ(codeOf("$(vmath.abs)(true) ? 1 : 2"), exprException::kMissing);
}

TEST(ExpressionCallTest, MissingFunctionSurfacesOnlyAtEvaluationAsCode1) {
    Expression expression("$(vmath.nosuch)(1)");
    EXPECT_TRUE(expression.hasTree());
    EXPECT_EQ(codeOf("$(vmath.nosuch)(1)"), exprException::kMissing);
}

TEST(ExpressionCallTest, MissingLibraryRaisesCode7WhileBuilding) {
    Expression expression;
    try {
        expression.setText("1 + $(nolibrary.f)(2)");
        FAIL() << "no exception";
    } catch (const exprException& error) {
        EXPECT_EQ(error.code(), exprException::kLibraryNotLoaded);
        ASSERT_NE(error.first(), nullptr);
        EXPECT_EQ(*error.first(), Value::string("$(nolibrary"));
    }
    EXPECT_FALSE(expression.hasTree());
}

// A function in this program, to see exactly what a library function receives.
extern "C" Value* describeCall(const ValueList* arguments, const Environment* environment) {
    std::ostringstream out;
    for (const Value& argument : *arguments) {
        out << argument << " ";
    }
    const Value* tag = environment->find("tag");
    out << (tag == nullptr ? std::string("untagged") : tag->asString());
    return newResult(Value::string(out.str()));
}

TEST(ExpressionCallTest, ArgumentsArriveInWrittenOrderWithTheEnvironment) {
    CallNode call({"$(test", "describe)"}, nullptr, &describeCall);
    call.appendArgument(std::make_unique<ConstantNode>(Value::integer(1)));
    call.appendArgument(std::make_unique<ConstantNode>(Value::string("\"x\"")));
    call.appendArgument(std::make_unique<ConstantNode>(Value::boolean(true)));
    Environment environment;
    environment.bind("tag", Value::string("here"));
    const auto result = call.evaluate(environment);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, Value::string("1 \"x\" true here"));
}

struct TagContext : EvaluationContext {
    std::string tag;
};

// Reports the tag of the context it is lent, or nothing without one.
extern "C" Value* contextTag(const ValueList*, const Environment* environment) {
    const auto* context = dynamic_cast<const TagContext*>(environment->context());
    return context == nullptr ? nullptr : newResult(Value::string(context->tag));
}

TEST(ExpressionCallTest, TheEnvironmentLendsItsContextToFunctions) {
    CallNode call({"$(test", "tag)"}, nullptr, &contextTag);
    Environment environment;
    EXPECT_EQ(call.evaluate(environment), nullptr);
    TagContext context;
    context.tag = "rule";
    environment.setContext(&context);
    const Environment copy = environment;
    const auto result = call.evaluate(copy);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, Value::string("rule"));
}

// What a checking tool sees of the calls: each as written, whether the library has the
// function, and the arguments that are constants.
TEST(ExpressionCallTest, ListsItsCallsAsWritten) {
    const Expression expression(
        R"($(vmath.max)(1, $(vmath.nosuch)("a" + "b", -2)) == x ? $(vmath.abs)("c") : 0)");
    const std::vector<CallSite> calls = expression.calls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].text, "$(vmath.max)");
    EXPECT_EQ(calls[0].library, "$(vmath");
    EXPECT_EQ(calls[0].function, "max");
    EXPECT_TRUE(calls[0].found);
    ASSERT_EQ(calls[0].arguments.size(), 2u);
    EXPECT_EQ(calls[0].arguments[0], Value::integer(1));
    EXPECT_FALSE(calls[0].arguments[1]) << "a call is no constant";
    EXPECT_EQ(calls[1].function, "nosuch");
    EXPECT_FALSE(calls[1].found);
    ASSERT_EQ(calls[1].arguments.size(), 2u);
    EXPECT_FALSE(calls[1].arguments[0] || calls[1].arguments[1]) << "nor is a sum or a negation";
    EXPECT_EQ(calls[2].arguments, (std::vector<std::optional<Value>>{Value::string("\"c\"")}));
}

TEST(ExpressionCallTest, LibrariesAreSharedWhileHeldAndLoadedAgainAfterwards) {
    auto first = FunctionLibrary::open("$(vmath");
    auto second = FunctionLibrary::open("$(vmath");
    ASSERT_TRUE(first);
    EXPECT_EQ(first, second);
    EXPECT_NE(first->function("abs)"), nullptr);
    EXPECT_EQ(first->function("nosuch)"), nullptr);
    first.reset();
    second.reset();
    EXPECT_TRUE(FunctionLibrary::open("$(vmath"));
    EXPECT_FALSE(FunctionLibrary::open("$(nolibrary"));

    const auto names = FunctionLibrary::candidates("$(x");
    ASSERT_EQ(names.size(), 4u);
    EXPECT_EQ(names[1], "$(x.so");
    EXPECT_EQ(names[3].substr(names[3].size() - 7), "/$(x.so");
}

TEST(ExpressionCallTest, ThreadsBuildAndEvaluateCallsIndependently) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (std::size_t t = 0; t < wrong.size(); ++t) {
        threads.emplace_back([t, &wrong] {
            for (std::int32_t k = 0; k < 50; ++k) {
                Expression expression("$(vmath.abs)(0 - k)");
                Environment environment;
                environment.bind("k", Value::integer(k));
                if (*expression.evaluate(environment) != Value::integer(k))
                    ++wrong[t];
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace vellum
