// The function library "$(graph" in rule expressions, through the real plug-in, with the
// patterns read from a folder of their own along koralGraphRules: degree and edge tests on loops,
// parallel and lingering edges, the negative pattern against a search of the whole graph, the
// messages for misuse, and the check that finds misuse without applying the rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ReferenceMatcher.h"
#include "RuleFixtures.h"
#include "base/SearchPaths.h"
#include "graph/ExpressionCheck.h"
#include "graph/IntegerAttribute.h"
#include "graph/OccurrenceTests.h"
#include "graph/PreparedRule.h"
#include "graph/RuleApplication.h"
#include "graph/RuleObjectData.h"
#include "tests/support/GraphInvariants.h"
#include "tests/support/ScopedEnvironment.h"

namespace vellum {
namespace {

using test::graphFromText;
using test::ruleFromText;

class GraphFunctions : public ::testing::Test {
  protected:
    // The rule "main" with the left-hand side `left`, which it deletes, and the condition.
    static std::unique_ptr<DirectedGraphRule> conditioned(const std::string& left,
                                                          const std::string& condition) {
        auto rule = ruleFromText("directed graphrule main { left-hand side { " + left +
                                 " } interface { } right-hand side { } }");
        EXPECT_NE(rule, nullptr) << left;
        rule->setCondition(condition);
        return rule;
    }
    void pattern(const std::string& name, const std::string& left) const {
        patterns_.write(name + ".drl", "directed graphrule " + name + " { left-hand side { " +
                                           left + " } interface { } right-hand side { } }");
    }
    // Whether the condition of `rule` holds at `occurrence`, with the console's text.
    static bool holds(const DirectedGraphRule& rule, DirectedGraph& host,
                      const GraphMorphism& occurrence, std::string* console = nullptr) {
        ConsoleCapture capture;
        OccurrenceTests tests(rule.prepared(), rule.name(), host);
        const bool result = tests.conditionHolds(occurrence);
        if (console != nullptr)
            *console = capture.text();
        return result;
    }

    test::TempFolder patterns_;
    test::ScopedEnvironment rules_{"koralGraphRules", patterns_.path()};
    test::ScopedEnvironment extension_{"DirectedGraphEXTRULE", "drl"};
};

TEST_F(GraphFunctions, CountEdgesByLabelWithLoopsParallelAndLingeringEdges) {
    auto host = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label c }"
        " edge 1 -> 2 { label e } edge 1 -> 2 { label e } edge 1 -> 1 { label l }"
        " edge 2 -> 1 { label f } edge 1 -> 2 { label g } edge 3 -> 3 { label l } }");
    // The loop at c is removed but lingers in c's incoming list; b gets enough edges to x for
    // the graph to count them by label.
    DirectedGraphVertex* a = host->verticesWithLabel("a").front();
    DirectedGraphVertex* b = host->verticesWithLabel("b").front();
    ASSERT_TRUE(host->removeEdge(host->verticesWithLabel("c").front()->outgoing().front()));
    for (int i = 0; i < 40; ++i)
        host->createEdge(b, a)->setLabel("m");
    const std::string left =
        "vertex 1 = x { label a } vertex 2 = y { label b } vertex 3 = z"
        " { label c }";
    const std::map<std::string, bool> rows = {
        {R"($(graph.outdegree)("x", "e") == 2)", true},
        {R"($(graph.outdegree)("x", "*") == 4)", true},
        {R"($(graph.indegree)("x", "*") == 42)", true},
        {R"($(graph.indegree)("x", "l") == 1)", true},
        {R"($(graph.outdegree)("y", "e") == 0)", true},
        {R"($(graph.outdegree)("y", "m") == 40)", true},
        {R"($(graph.outdegree)("y", "nothing") == 0)", true},
        {R"($(graph.indegree)("z", "*") == 0)", true},
        {R"($(graph.outdegree)("z", "l") == 0)", true},
        {R"($(graph.edge)("x", "y", "g"))", true},
        {R"($(graph.edge)("y", "x", "g"))", false},
        {R"($(graph.edge)("y", "x", "m"))", true},
        {R"($(graph.edge)("x", "x", "l"))", true},
        {R"($(graph.edge)("x", "x", "*"))", true},
        {R"($(graph.edge)("z", "z", "*"))", false},
        {R"($(graph.edge)("x", "z", "*"))", false},
    };
    for (const auto& [condition, expected] : rows) {
        auto rule = conditioned(left, condition);
        GraphMorphism occurrence;
        std::string console;
        ASSERT_TRUE(rule->match(*host, occurrence, 0));
        EXPECT_EQ(holds(*rule, *host, occurrence, &console), expected) << condition << console;
        EXPECT_EQ(console, "") << condition;
    }
}

// absent(P) at an occurrence is true exactly when no occurrence of P, found by the reference
// search in the whole graph, maps P's named vertices to the images of those variables; present
// is its opposite.
TEST_F(GraphFunctions, NegativePatternAgreesWithAWholeGraphSearch) {
    const std::vector<std::string> rows = {
        "vertex 1 = x { label * } vertex 2 = y { label * } edge 3 : 1 -> 2 { label a }",
        "vertex 1 = x { label * } vertex 2 = y { label * } vertex 3 { label * }"
        " edge 4 : 1 -> 3 { label a } edge 5 : 3 -> 2 { label b }",
        "vertex 1 = x { label * } vertex 2 { label * } edge 3 : 1 -> 2 { label a }"
        " edge 4 : 2 -> 1 { label a }",
        "vertex 1 = x { label u } vertex 2 { label * } vertex 3 { label * }"
        " edge 4 : 1 -> 2 { label * } edge 5 : 1 -> 3 { label * } edge 6 : 2 -> 3 { label * }",
        "vertex 1 = y { label * } vertex 2 { label v } edge 3 : 2 -> 1 { label b }"
        " edge 4 : 2 -> 1 { label b } edge 5 : 2 -> 2 { label * }",
    };
    const std::string left = "vertex 1 = x { label * } vertex 2 = y { label * }";
    test::RandomGraphs random(2024);
    int absent = 0;
    int present = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const std::string name = "p" + std::to_string(row);
        pattern(name, rows[row]);
        auto patternRule = test::patternRule(rows[row]);
        auto whenAbsent = conditioned(left, "$(graph.absent)(\"" + name + "\")");
        auto whenPresent = conditioned(left, "$(graph.present)(\"" + name + "\")");
        for (int round = 0; round < 60; ++round) {
            DirectedGraph host;
            random.fill(host, 7, 16, {"u", "v"}, {"a", "b"}, true);
            const auto found = test::ReferenceMatcher(patternRule->editLeftSide(), host).run();
            const auto occurrences = whenAbsent->prepared().matcher().findAll(host);
            // The same occurrences in the same order, paired with the other rule's vertices.
            const auto twins = whenPresent->prepared().matcher().findAll(host);
            ASSERT_EQ(occurrences.size(), twins.size());
            for (std::size_t i = 0; i < occurrences.size(); ++i) {
                const GraphMorphism& occurrence = occurrences[i];
                // The image of the rule's variable x (its first vertex) or y (its second).
                auto imageOf = [&occurrence](const std::string& variable) {
                    return occurrence.vertexPairs()[variable == "x" ? 0 : 1].right;
                };
                auto extends = [&imageOf](const GraphMorphism& p) {
                    return std::all_of(p.vertexPairs().begin(), p.vertexPairs().end(),
                                       [&imageOf](const VertexPair& pair) {
                                           const std::string& variable = variableOf(*pair.left);
                                           return variable.empty() ||
                                                  pair.right == imageOf(variable);
                                       });
                };
                const bool expected = std::none_of(found.begin(), found.end(), extends);
                ASSERT_EQ(holds(*whenAbsent, host, occurrence), expected)
                    << rows[row] << "\nround " << round << "\n"
                    << test::textOf(host);
                ASSERT_EQ(holds(*whenPresent, host, twins[i]), !expected);
                (expected ? absent : present) += 1;
            }
        }
    }
    EXPECT_GT(absent, 500);
    EXPECT_GT(present, 200);
}

// A variable of an edge stands for that very edge, not for any edge between its ends.
TEST_F(GraphFunctions, APatternEdgeNamedByAnEdgeVariableIsThatEdge) {
    pattern("twin",
            "vertex 1 = x vertex 2 = y edge 3 : 1 -> 2 = e { label a }"
            " edge 4 : 1 -> 2 { label * }");
    auto rule = conditioned("vertex 1 = x vertex 2 = y edge 3 : 1 -> 2 = e { label * }",
                            R"($(graph.present)("twin"))");
    for (const auto& [labels, expected] :
         std::map<std::string, bool>{{"a b", true}, {"b a", false}, {"a", false}}) {
        std::string text = "directed graph { vertex 1 vertex 2 ";
        for (const char label : labels) {
            if (label != ' ')
                text += std::string("edge 1 -> 2 { label ") + label + " } ";
        }
        auto host = graphFromText(text + "}");
        GraphMorphism occurrence;
        ASSERT_TRUE(rule->match(*host, occurrence, 0));
        EXPECT_EQ(holds(*rule, *host, occurrence), expected) << labels;
    }
}

// Each problem is said once per application, with the condition's own failure after it.
TEST_F(GraphFunctions, MisuseIsReportedOnceWithItsCause) {
    pattern("apart", "vertex 1 = x vertex 2 vertex 3 edge 4 : 2 -> 3");
    pattern("stranger", "vertex 1 = q");
    pattern("edgy", "vertex 1 = e");
    const std::string left = "vertex 1 = x vertex 2 = y edge 3 : 1 -> 2 = e";
    // Two occurrences, each of which the rule may delete.
    auto host = graphFromText(
        "directed graph { vertex 1 vertex 2 vertex 3 vertex 4 edge 1 -> 2 edge 3 -> 4 }");
    const std::string failed = "Application condition of rule 'main' failed: exprException 1\n";
    const std::vector<std::pair<std::string, std::string>> rows = {
        {R"($(graph.outdegree)("q", "a") == 0)",
         "Rule 'main': $(graph.outdegree): the rule declares no variable 'q'\n"},
        {R"($(graph.indegree)("x") == 0)",
         "Rule 'main': $(graph.indegree): takes 2 arguments (VARIABLE, LABEL), not 1\n"},
        {R"($(graph.edge)("x", "y", 3) == true)",
         "Rule 'main': $(graph.edge): argument 3 is integer, not a string\n"},
        {R"($(graph.outdegree)("e", "a") == 0)",
         "Rule 'main': $(graph.outdegree): the variable 'e' is an edge, not a vertex\n"},
        {R"($(graph.absent)("missing") == true)",
         "Rule 'main': $(graph.absent): the pattern 'missing' is not found: no file "
         "'missing.drl' along koralGraphRules\n"},
        {R"($(graph.absent)("apart") == true)",
         "Rule 'main': $(graph.absent): the pattern 'apart' has a vertex that no edge joins to "
         "a named one, so it would be searched for in the whole graph\n"},
        {R"($(graph.absent)("stranger") == true)",
         "Rule 'main': $(graph.absent): the pattern 'stranger' names the variable 'q', which "
         "the rule does not declare\n"},
        {R"($(graph.present)("edgy") == true)",
         "Rule 'main': $(graph.present): the pattern 'edgy' names a vertex 'e', which is an "
         "edge in the rule\n"},
        {R"($(graph.nosuch)("x"))", ""},
    };
    for (const auto& [condition, message] : rows) {
        auto rule = conditioned(left, condition);
        ConsoleCapture console;
        EXPECT_EQ(applyRule(host.get(), rule.get(), kModeFirst), kApplyNonePassed) << condition;
        EXPECT_EQ(console.text(), message + failed) << condition;
    }
    ConsoleCapture console;
    Expression outside(R"($(graph.outdegree)("x", "a"))");
    EXPECT_EQ(outside.evaluate(Environment()), nullptr);
    EXPECT_EQ(console.text(),
              "$(graph.outdegree) works only in the expressions of a rule that is being applied\n");
}

// On the right-hand side the functions see the graph after the deletions, and only the
// objects the step keeps.
TEST_F(GraphFunctions, RightHandSideSeesWhatTheStepKeeps) {
    auto rule = ruleFromText(
        "directed graphrule rhs { left-hand side { vertex 1 = x { label a } vertex 2 = y"
        " { label b } edge 3 : 1 -> 2 } interface { vertex 1 <-> 4 } right-hand side {"
        " vertex 4 { label a integer out = [$(graph.outdegree)(\"x\", \"*\")] } } }");
    ASSERT_NE(rule, nullptr);
    auto host = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b }"
        " edge 1 -> 2 edge 1 -> 1 }");
    ASSERT_EQ(applyRule(host.get(), rule.get(), kModeFirst), kApplyApplied);
    const auto* out = dynamic_cast<const IntegerAttribute*>(
        host->verticesWithLabel("a").front()->findAttribute("out"));
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->value(), 1) << "the loop is left, the edge to the deleted vertex gone";

    auto deleted = ruleFromText(
        "directed graphrule gone { left-hand side { vertex 1 = x { label a } vertex 2 = y"
        " { label b } } interface { vertex 1 <-> 3 } right-hand side {"
        " vertex 3 { label a integer out = [$(graph.outdegree)(\"y\", \"*\")] } } }");
    ASSERT_NE(deleted, nullptr);
    auto second = graphFromText("directed graph { vertex 1 { label a } vertex 2 { label b } }");
    ConsoleCapture console;
    EXPECT_EQ(applyRule(second.get(), deleted.get(), kModeFirst), kApplyStepFailed);
    EXPECT_EQ(console.text(),
              "Rule 'gone': $(graph.outdegree): the variable 'y' stands for a vertex that the "
              "step deletes\nRule 'gone': attribute 'out' not set: the expression gives no "
              "value\n");
}

TEST_F(GraphFunctions, CheckFindsMisuseWithoutApplying) {
    pattern("held", "vertex 1 = x vertex 2 = y edge 3 : 1 -> 2 { label h }");
    pattern("stranger", "vertex 1 = q");
    auto rule = ruleFromText(
        "directed graphrule c { left-hand side { vertex 1 = x vertex 2 = y"
        " edge 3 : 1 -> 2 = e } interface { } right-hand side { } }");
    ASSERT_NE(rule, nullptr);
    std::vector<RuleVariable> variables;
    for (const DirectedGraphVertex& vertex : rule->leftSide().vertices())
        variables.push_back({variableOf(vertex), &vertex, nullptr});
    variables.push_back({"e", nullptr, &*rule->leftSide().edges().begin()});
    const PatternLoader load = [](const std::string& name, std::string& problem) {
        auto loaded =
            loadRule(SearchPaths::instance().value("koralGraphRules") + "/" + name + ".drl");
        if (!loaded)
            problem = "is not found";
        return loaded;
    };
    const std::vector<std::pair<std::string, std::string>> rows = {
        {R"($(graph.outdegree)("x", "a") == 0 && $(graph.absent)("held"))", ""},
        {R"($(graph.outdegree)("x" + "", "a") == 0)", ""},
        {R"($(graph.outdegree)("q", "a") == 0)",
         "calls '$(graph.outdegree)' for the variable 'q', but the left-hand side declares no "
         "variable 'q'"},
        {R"($(graph.outdegree)("e", "a") == 0)",
         "calls '$(graph.outdegree)' for the variable 'e', but that is an edge, and "
         "'$(graph.outdegree)' needs a vertex"},
        {R"($(graph.outdegree)("x") == 0)",
         "calls '$(graph.outdegree)' with 1 argument, but it takes 2 (VARIABLE, LABEL)"},
        {R"($(graph.edge)("x", "y", 1))",
         "calls '$(graph.edge)' with integer as argument 3, which must be a string"},
        {R"($(graph.nosuch)("x"))",
         "calls '$(graph.nosuch)', but the library '$(graph' has no function 'nosuch'"},
        {R"($(vmath.nosuch)(1) == 1)",
         "calls '$(vmath.nosuch)', but the library '$(vmath' has no function 'nosuch'"},
        {R"(true && $(graph.absent)("missing"))",
         "calls '$(graph.absent)' for the pattern 'missing', but that is not found"},
        {R"($(graph.absent)("stranger"))",
         "calls '$(graph.absent)' for the pattern 'stranger', but that names the variable 'q', "
         "which the rule does not declare"},
    };
    for (const auto& [text, reason] : rows) {
        ConsoleCapture console;  // a pattern that does not read says so there
        const ExpressionProblem problem = checkExpression(text, variables, &load);
        EXPECT_EQ(problem.reason, reason) << text;
    }
    const ExpressionProblem unchecked =
        checkExpression(R"($(graph.absent)("missing"))", variables, nullptr);
    EXPECT_EQ(unchecked.reason, "") << "patterns are looked at only with a loader";
}

}  // namespace
}  // namespace vellum
