// The condition language of DirectedGraph.gc, compiled through the handler table's
// gcGraphClassExpression and evaluated on a small graph with a folder of rules: counts,
// applicability and their combinations, what compiling refuses and with which message, what
// fails when evaluating, and that a condition compiled once follows the graph it is given.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include "HandlerTestSupport.h"
#include "base/Console.h"

namespace vellum {
namespace {

using test::directedGraphHandler;
using test::ScopedEnvironment;
using test::TempFolder;

// A token, two places and a transition that has edges of its own, so that a rule deleting it
// fails the dangling test.
constexpr const char* kHost = R"(directed graph net {
	vertex 1 { label token } vertex 2 { label place } vertex 3 { label place }
	vertex 4 { label transition }
	edge 2 -> 4 { label arc } edge 4 -> 3 { label arc } edge 1 -> 2 { label on } })";

// A rule whose left-hand side is the vertex x labelled LABEL, kept or deleted, with an optional
// application condition.
std::string oneVertexRule(const std::string& label, bool keep, const std::string& condition = {}) {
    return "directed graphrule r { left-hand side { vertex 1 = x { label " + label + " } }" +
           (keep ? "interface { vertex 1 <-> 1 } right-hand side { vertex 1 }"
                 : "interface { } right-hand side { }") +
           (condition.empty() ? "" : " application condition = [" + condition + "]") + " }";
}

class ConditionTest : public ::testing::Test {
  protected:
    ConditionTest() {
        rules_.write("grow.drl", oneVertexRule("place", true));
        rules_.write("sub/grow.drl", oneVertexRule("transition", true));
        rules_.write("absent.drl", oneVertexRule("nowhere", true));
        rules_.write("touch.drl", oneVertexRule("transition", true));
        rules_.write("dangling.drl", oneVertexRule("transition", false));
        rules_.write("welcome.drl", oneVertexRule("place", true, "x == \"place\""));
        rules_.write("guarded.drl", oneVertexRule("place", true, "x == \"token\""));
        rules_.write("empty.drl",
                     "directed graphrule e { left-hand side { } interface { } "
                     "right-hand side { vertex 1 } application condition = [false] }");
        host_ = directedGraphHandler().loadGraph("DirectedGraph", rules_.write("host.dg", kHost));
    }

    std::unique_ptr<KoralCondition> compile(const std::string& text) {
        return directedGraphHandler().compileCondition("DirectedGraph", nullptr, text);
    }
    // The condition's value on the host; -1 when it does not compile.
    int value(const std::string& text) {
        const auto condition = compile(text);
        return condition ? condition->evaluate(*host_, running_) : -1;
    }

    TempFolder rules_;
    ScopedEnvironment rulePath_{"koralGraphRules", "/nonexistent;" + rules_.path() + "/"};
    ScopedEnvironment extension_{"DirectedGraphEXTRULE", "drl"};
    std::unique_ptr<DirectedGraph> host_;
    const std::atomic<int> running_{0};
};

TEST_F(ConditionTest, CountsComparisonsAndApplicability) {
    ASSERT_TRUE(host_);
    const std::vector<std::pair<const char*, int>> rows = {
        {"vertices == 4 && edges == 3", 1},
        {"vertices < 4", 0},
        {"vertices.place == 2 && vertices.token == 1 && vertices.place * 2 == vertices", 1},
        {"edges.arc == 2 && edges.on == 1 && vertices.nowhere + edges.nowhere == 0", 1},
        {"edges.arc >= 3 || vertices.transition != 1", 0},
        {"(vertices == 5) == false", 1},
        {"vertices.place == 2 ? applicable.grow : false", 1},
        {"$(vmath.max)(vertices, 10) == 10", 1},
        // With the module token's parentheses, and with escaped ones inside it.
        {" ( vertices >= 4 ) ", 1},
        {"vertices == \\(1 + 3\\)", 1},
        {"applicable.grow && applicable.sub.grow", 1},
        {"applicable.absent", 0},
        // Application applies a rule without left-hand vertices without any test.
        {"applicable.empty", 1},
        // An occurrence exists, but deleting the transition would leave its edges dangling.
        {"applicable.touch && applicable.dangling == false", 1},
        // Occurrences exist, but only one application condition holds for them.
        {"applicable.welcome && applicable.guarded == false", 1},
    };
    ConsoleCapture capture;
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(value(text), expected) << text;
    EXPECT_EQ(capture.text(), "");
}

TEST_F(ConditionTest, MalformedTextsAreRefusedLeavingTheMessageToTheModule) {
    ConsoleCapture capture;
    for (const char* text :
         {"", "()", "vertices >", "vertices == 4 4", "vertices == 4 )", "(vertices == 4",
          "vertices) || (edges", "\"open == vertices", "truex", "vertices == \\1"}) {
        EXPECT_FALSE(compile(text)) << text;
    }
    EXPECT_EQ(capture.text(), "");
}

TEST_F(ConditionTest, UnknownNamesRulesAndLibrariesAreNamed) {
    const std::string broken = rules_.write("broken.drl", "directed graphrule broken {");
    const std::vector<std::pair<std::string, std::string>> refusals = {
        {"vertex > 1", "Unknown name 'vertex' in condition 'vertex > 1'"},
        {"applicable", "Unknown name 'applicable' in condition 'applicable'"},
        {"edges > 1 && foo.bar", "Unknown name 'foo.bar' in condition 'edges > 1 && foo.bar'"},
        {"applicable.gone",
         "Rule 'gone' in condition 'applicable.gone' not found: no file "
         "'gone.drl' along koralGraphRules"},
        {"$(nolib.f)(1) == 1",
         "Library '$(nolib' in condition '$(nolib.f)(1) == 1' could not "
         "be loaded"},
        // The reader's own report comes first.
        {"applicable.broken",
         "Rule 'broken' in condition 'applicable.broken' could not be read from '" + broken + "'"},
    };
    for (const auto& [text, message] : refusals) {
        ConsoleCapture capture;
        EXPECT_FALSE(compile(text)) << text;
        const std::string all = capture.text();
        EXPECT_EQ(all.substr(all.find_last_of('\n', all.size() - 2) + 1), message + "\n");
    }
}

TEST_F(ConditionTest, EvaluationErrorsAreFalseWithOneLine) {
    const std::vector<std::pair<std::string, std::string>> failures = {
        {"vertices == true", "exprException 2"},
        {"!vertices", "exprException 3"},
        {"vertices", "the value is integer, not boolean"},
        {"$(vmath.sqrt)(vertices)", "no value"},
    };
    for (const auto& [text, problem] : failures) {
        ConsoleCapture capture;
        EXPECT_EQ(value(text), 0) << text;
        EXPECT_EQ(capture.text(), "Condition '" + text + "' failed: " + problem + "\n");
    }
}

TEST_F(ConditionTest, CompiledOnceItFollowsTheGraphItIsGiven) {
    const auto condition = compile("applicable.grow && vertices.place >= 2");
    ASSERT_TRUE(condition);
    // The rule was read when compiling: its file is not needed any more.
    std::filesystem::remove(rules_.path("grow.drl"));
    DirectedGraph graph;
    DirectedGraphVertex* first = graph.createVertex();
    EXPECT_EQ(condition->evaluate(graph, running_), 0);
    first->setLabel("place");
    graph.createVertex()->setLabel("place");
    EXPECT_EQ(condition->evaluate(graph, running_), 1);
    first->setLabel("token");
    EXPECT_EQ(condition->evaluate(graph, running_), 0);
    EXPECT_EQ(condition->evaluate(*host_, running_), 1);
    const std::atomic<int> stopped{1};
    EXPECT_EQ(condition->evaluate(*host_, stopped), 0);
}

TEST_F(ConditionTest, OneConditionServesSeveralThreads) {
    const auto condition = compile("applicable.welcome && vertices == 4");
    ASSERT_TRUE(condition);
    std::vector<int> trueCounts(3, 0);
    std::vector<std::thread> threads;
    for (int& count : trueCounts) {
        auto graph = directedGraphHandler().loadGraph("DirectedGraph", rules_.path("host.dg"));
        threads.emplace_back([&condition, &count, this, graph = std::move(graph)] {
            for (int i = 0; i < 100; ++i)
                count += condition->evaluate(*graph, running_);
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(trueCounts, std::vector<int>(trueCounts.size(), 100));
}

}  // namespace
}  // namespace vellum
