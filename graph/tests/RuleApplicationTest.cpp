#include <gtest/gtest.h>

#include <sstream>

#include "RuleFixtures.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphWriter.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/RuleApplication.h"
#include "graph/StringAttribute.h"
#include "tests/support/GraphInvariants.h"

namespace vellum {
namespace {

using test::describe;
using test::graphFromText;
using test::graphIsConsistent;
using test::ruleFromText;

// Applies a rule and records the events ("2000:1 2 |"), checking the host after every step.
struct Application {
    int result = -1;
    std::vector<std::string> events;
    std::string console;
};

Application apply(DirectedGraph& host, const DirectedGraphRule& rule, int mode) {
    Application run;
    ConsoleCapture capture;
    run.result = applyRule(&host, &rule, mode,
                           [&](int event, DirectedGraph* graph, const GraphMorphism* occurrence) {
                               std::string text = std::to_string(event);
                               if (event == kEventOccurrenceChosen)
                                   text += ":" + describe(*occurrence, *graph);
                               if (event == kEventApplied) {
                                   EXPECT_TRUE(graphIsConsistent(*graph));
                                   for (const VertexPair& pair : occurrence->vertexPairs())
                                       EXPECT_TRUE(graph->contains(*pair.right));
                               }
                               run.events.push_back(text);
                           });
    run.console = capture.text();
    EXPECT_TRUE(graphIsConsistent(host));
    return run;
}

// The host as a graph file, for comparing whole results.
std::string text(const DirectedGraph& graph) {
    std::ostringstream out;
    GraphWriter writer(out);
    return writer.write(graph) ? out.str() : "refused: " + writer.refusal();
}

const std::vector<std::string> kOneStep = {"2000", "2002", "2001"};

std::vector<std::string> withoutOccurrences(std::vector<std::string> events) {
    for (std::string& event : events)
        event = event.substr(0, 4);
    return events;
}

// Deletes a vertex labelled a.
constexpr const char* kDeleteA =
    "directed graphrule del { left-hand side { vertex 1 { label a } } interface { }"
    " right-hand side { } }";

TEST(RuleApplication, DanglingTestMakesModeZeroMoveOn) {
    const auto rule = ruleFromText(kDeleteA);
    auto host = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label a }"
        " edge 1 -> 2 }");
    const Application run = apply(*host, *rule, kModeFirst);
    EXPECT_EQ(run.result, kApplyApplied);
    EXPECT_EQ(run.events, (std::vector<std::string>{"2000:3 |", "2002", "2001"}));
    EXPECT_EQ(host->vertexCount("a"), 1u);
    EXPECT_EQ(host->vertices().front()->label(), "a");  // the one with the edge stays
    // Mode 1 finds no other, and nothing can go any more.
    EXPECT_EQ(apply(*host, *rule, kModeRuleMatch).result, kApplyNoOccurrence);
    EXPECT_EQ(apply(*host, *rule, kModeFirst).result, kApplyNonePassed);
}

TEST(RuleApplication, ModeTwoAppliesDisjointOccurrencesOnly) {
    // Relabels a -> b to c -> b.
    const auto rule = ruleFromText(
        "directed graphrule r { left-hand side { vertex 1 { label a } vertex 2 { label b }"
        " edge 3 : 1 -> 2 } interface { vertex 1 <-> 4 vertex 2 <-> 5 edge 3 <-> 6 }"
        " right-hand side { vertex 4 { label c } vertex 5 { label * } edge 6 : 4 -> 5 } }");
    auto disjoint = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label a }"
        " vertex 4 { label b } edge 1 -> 2 edge 3 -> 4 }");
    Application run = apply(*disjoint, *rule, kModeAllDisjoint);
    EXPECT_EQ(run.result, kApplyApplied);
    EXPECT_EQ(run.events, (std::vector<std::string>{"2000:1 2 | 1", "2002", "2001", "2000:3 4 | 2",
                                                    "2002", "2001"}));
    EXPECT_EQ(disjoint->vertexCount("c"), 2u);
    auto overlapping = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label a }"
        " edge 1 -> 2 edge 3 -> 2 }");
    run = apply(*overlapping, *rule, kModeAllDisjoint);
    EXPECT_EQ(run.result, kApplyApplied);
    EXPECT_EQ(run.events, (std::vector<std::string>{"2000:1 2 | 1", "2002", "2001"}));
    EXPECT_EQ(overlapping->vertexCount("a"), 1u);
}

TEST(RuleApplication, ModeTwoNeverTouchesWhatAnEarlierStepDeleted) {
    // Deletes an a and a b; the second occurrence shares the a that the first step deleted.
    const auto rule = ruleFromText(
        "directed graphrule r { left-hand side { vertex 1 { label a } vertex 2 { label b } }"
        " interface { } right-hand side { } }");
    auto host = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label b } }");
    const Application run = apply(*host, *rule, kModeAllDisjoint);
    EXPECT_EQ(run.result, kApplyApplied);
    EXPECT_EQ(run.events, (std::vector<std::string>{"2000:1 2 |", "2002", "2001"}));
    EXPECT_EQ(text(*host), "directed graph\n{\n\n\tvertex 1 {\n\t\tlabel b\n\t}\n}\n");
}

TEST(RuleApplication, ResultCodesForWhatCannotBeApplied) {
    const auto rule = ruleFromText(kDeleteA);
    auto none = graphFromText("directed graph { vertex 1 { label b } }");
    EXPECT_EQ(apply(*none, *rule, kModeRuleMatch).result, kApplyNoOccurrence);
    EXPECT_EQ(apply(*none, *rule, kModeAllDisjoint).result, kApplyNoOccurrence);
    EXPECT_EQ(apply(*none, *rule, kModeFirst).result, kApplyNonePassed);
    const auto refused = ruleFromText(
        "directed graphrule r { left-hand side { vertex 1 { label a } } interface { }"
        " right-hand side { } application condition = [1 > 2] }");
    auto host = graphFromText("directed graph { vertex 1 { label a } vertex 2 { label a } }");
    EXPECT_EQ(apply(*host, *refused, kModeFirst).result, kApplyNonePassed);
    EXPECT_EQ(apply(*host, *refused, kModeRuleMatch).result, kApplyNoOccurrence);
    const std::string before = text(*host);
    const Application unknown = apply(*host, *rule, 3);
    EXPECT_EQ(unknown.result, kApplyUnknownMode);
    EXPECT_TRUE(unknown.events.empty());
    EXPECT_EQ(text(*host), before);
    EXPECT_EQ(applyRule(nullptr, rule.get(), kModeFirst), kApplyNoGraph);
    EXPECT_EQ(applyRule(host.get(), nullptr, kModeFirst), kApplyNoGraph);

    struct OtherRule : DirectedGraphRule {
        const std::string& className() const override {
            static const std::string name = "UndirectedGraphRule";
            return name;
        }
    } other;
    EXPECT_EQ(applyRule(host.get(), &other, kModeFirst), kApplyWrongRuleClass);
    struct Busy : DirectedGraph {
        bool isReady() const override { return false; }
    } busy;
    EXPECT_EQ(applyRule(&busy, rule.get(), kModeFirst), kApplyNotReady);
    EXPECT_EQ(text(*host), before);
}

TEST(RuleApplication, EmptyLeftHandSideAppliesOnceWithoutTests) {
    const auto rule = ruleFromText(
        "directed graphrule r { left-hand side { } interface { } right-hand side {"
        " vertex 1 { label n integer k = 2 } edge 2 : 1 -> 1 { label * } }"
        " application condition = [false] }");
    for (int mode : {kModeFirst, kModeRuleMatch, kModeAllDisjoint}) {
        auto host = graphFromText("directed graph { vertex 1 }");
        const Application run = apply(*host, *rule, mode);
        EXPECT_EQ(run.result, kApplyApplied);
        EXPECT_EQ(run.events, (std::vector<std::string>{"2001"}));
        // The created edge takes "*" as its label, which no graph file can hold.
        ASSERT_EQ(host->edgeCount(), 1u);
        EXPECT_EQ(host->edges().begin()->label(), "*");
        host->edges().begin()->setLabel("any");
        EXPECT_EQ(text(*host),
                  "directed graph\n{\n\n\tvertex 1 {\n\t}\n\n\tvertex 2 {\n"
                  "\t\tlabel n\n\t\tinteger k = 2\n\t}\n\n\tedge 2 -> 2\n\t{\n"
                  "\t\tlabel any\n\t}\n}\n");
    }
}

TEST(RuleApplication, ExpressionsSeeTheBoundVariables) {
    const auto rule = ruleFromText(
        "directed graphrule paint { left-hand side { vertex 1 = x { label red } }"
        " interface { vertex 1 <-> 2 } right-hand side {"
        " vertex 2 { label * string s = [x + \"!\"] integer twice = [x.n * 2] real r = [x.n]"
        "   boolean named = [x.name == \"red\"] string name = [x.name + \"dish\"] }"
        " vertex 3 { label copy string from = [x.name] } edge 4 : 2 -> 3 }"
        " application condition = [x.name == \"red\" && x.n > 1] }");
    auto host = graphFromText(
        "directed graph { vertex 1 { label red integer n = 1 string name = \"red\" }"
        " vertex 2 { label red integer n = 5 string name = \"blue\" }"
        " vertex 3 { label red integer n = 3 string name = \"red\" real keep = 1.5 } }");
    const Application run = apply(*host, *rule, kModeFirst);
    ASSERT_EQ(run.result, kApplyApplied) << run.console;
    EXPECT_EQ(run.events.front(), "2000:3 |");
    EXPECT_EQ(run.console, "");
    // Kept: a named attribute replaced in its place, the others kept, new ones appended.
    EXPECT_EQ(text(*host).substr(text(*host).find("\tvertex 3")),
              "\tvertex 3 {\n\t\tlabel red\n\t\tinteger n = 3\n\t\tstring name = \"reddish\"\n"
              "\t\treal keep = 1.5\n\t\tstring s = \"red!\"\n\t\tinteger twice = 6\n"
              "\t\treal r = 3\n\t\tboolean named = true\n\t}\n\n"
              "\tvertex 4 {\n\t\tlabel copy\n\t\tstring from = \"red\"\n\t}\n\n"
              "\tedge 3 -> 4\n}\n");
    for (const DirectedGraphVertex& vertex : host->vertices())
        EXPECT_EQ(vertex.findAttribute("__ID__"), nullptr);
    // Host attributes carry no expressions.
    EXPECT_EQ(host->vertices().front()->findAttribute("s"), nullptr);
}

TEST(RuleApplication, ExpressionProblemsFailTheStepWithAMessage) {
    const auto mismatch = ruleFromText(
        "directed graphrule bad { left-hand side { vertex 1 = x } interface { vertex 1 <-> 2 }"
        " right-hand side { vertex 2 { integer i = [x.w] } } }");
    auto host = graphFromText("directed graph { vertex 1 { real w = 0.5 } }");
    Application run = apply(*host, *mismatch, kModeRuleMatch);
    EXPECT_EQ(run.result, kApplyStepFailed);
    EXPECT_EQ(withoutOccurrences(run.events), (std::vector<std::string>{"2000", "2002"}));
    EXPECT_EQ(run.console,
              "Rule 'bad': attribute 'i' not set: the expression's value is real, the attribute "
              "is integer\n");
    // An unbound name in the condition fails every occurrence, reported once.
    const auto unbound = ruleFromText(
        "directed graphrule cond { left-hand side { vertex 1 = x } interface { vertex 1 <-> 2 }"
        " right-hand side { vertex 2 } application condition = [y.n > 0] }");
    auto two = graphFromText("directed graph { vertex 1 vertex 2 }");
    run = apply(*two, *unbound, kModeFirst);
    EXPECT_EQ(run.result, kApplyNonePassed);
    EXPECT_EQ(run.console, "Application condition of rule 'cond' failed: exprException 5\n");
}

TEST(RuleApplication, ParallelEdgesSharingAHostEdgeFailTheDeletion) {
    const auto rule = ruleFromText(
        "directed graphrule step { left-hand side { vertex 1 { label b } vertex 2 { label c }"
        " edge 3 : 1 -> 2 { label x } edge 4 : 1 -> 2 { label * } }"
        " interface { vertex 1 <-> 5 vertex 2 <-> 6 } right-hand side { vertex 5 vertex 6"
        " edge 7 : 6 -> 6 } }");
    auto host = graphFromText(
        "directed graph { vertex 1 { label b } vertex 2 { label c } vertex 3"
        " edge 1 -> 2 { label x } edge 1 -> 3 edge 3 -> 2 }");
    const Application run = apply(*host, *rule, kModeFirst);
    EXPECT_EQ(run.result, kApplyStepFailed);
    EXPECT_EQ(run.events, (std::vector<std::string>{"2000:1 2 | 1 1"}));
    EXPECT_EQ(host->edgeCount(), 2u);  // the shared edge went once
}

TEST(RuleApplication, ModeOneAsLongAsPossibleWalksAChain) {
    // Moves the token t one step along an edge, counting on the way.
    const auto rule = ruleFromText(
        "directed graphrule move { left-hand side { vertex 1 = t { label t } vertex 2 = n"
        " edge 3 : 1 -> 2 } interface { vertex 1 <-> 4 vertex 2 <-> 5 edge 3 <-> 6 }"
        " right-hand side { vertex 4 { label done } vertex 5 { label t integer k = [t.k + 1] }"
        " edge 6 : 4 -> 5 } }");
    auto host = graphFromText(
        "directed graph { vertex 1 { label t integer k = 0 } vertex 2 vertex 3 vertex 4"
        " edge 1 -> 2 edge 2 -> 3 edge 3 -> 4 }");
    int steps = 0;
    while (apply(*host, *rule, kModeRuleMatch).result == kApplyApplied)
        ++steps;
    EXPECT_EQ(steps, 3);
    const DirectedGraphVertex* last = &*std::prev(host->vertices().end());
    EXPECT_EQ(last->label(), "t");
    ASSERT_NE(dynamic_cast<const IntegerAttribute*>(last->findAttribute("k")), nullptr);
    EXPECT_EQ(static_cast<const IntegerAttribute*>(last->findAttribute("k"))->value(), 3);
}

TEST(RuleApplication, ReferencesKeepTheirVertexAndBrokenInterfacesAreRefused) {
    // The right-hand vertex stands for left-hand vertex 2: it is not deleted, but relabelled.
    const auto referencing = ruleFromText(
        "directed graphrule r { left-hand side { vertex 1 { label a } vertex 2 { label b }"
        " edge 3 : 1 -> 2 } interface { } right-hand side { vertex 4 @ 2 { label z } } }");
    auto host =
        graphFromText("directed graph { vertex 1 { label a } vertex 2 { label b } edge 1 -> 2 }");
    EXPECT_EQ(apply(*host, *referencing, kModeFirst).result, kApplyApplied);
    EXPECT_EQ(text(*host), "directed graph\n{\n\n\tvertex 1 {\n\t\tlabel z\n\t}\n}\n");
    // Keeping an edge while deleting its target would leave it without an endpoint.
    const auto broken = ruleFromText(
        "directed graphrule broken { left-hand side { vertex 1 vertex 2 edge 3 : 1 -> 2 }"
        " interface { vertex 1 <-> 4 edge 3 <-> 5 } right-hand side { vertex 4"
        " edge 5 : 4 -> 4 } }");
    auto other = graphFromText("directed graph { vertex 1 vertex 2 edge 1 -> 2 }");
    const std::string before = text(*other);
    const Application run = apply(*other, *broken, kModeFirst);
    EXPECT_EQ(run.result, kApplyStepFailed);
    EXPECT_EQ(run.console,
              "Rule 'broken': the interface keeps an edge whose source or target "
              "the rule deletes\n");
    EXPECT_EQ(text(*other), before);
}

}  // namespace
}  // namespace vellum
