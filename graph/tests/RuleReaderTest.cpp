#include <gtest/gtest.h>

#include "RuleFixtures.h"
#include "graph/AttributeExpression.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/RuleObjectData.h"
#include "graph/StringAttribute.h"
#include "tests/support/GraphInvariants.h"

namespace vellum {
namespace {

using test::graphIsConsistent;
using test::ruleFromText;

// "directed graphrule r { left-hand side { LEFT } interface { PAIRS } right-hand side { RIGHT }
// CONDITION }"
std::string ruleText(const std::string& left, const std::string& pairs, const std::string& right,
                     const std::string& condition = "") {
    return "directed graphrule r { left-hand side { " + left + " } interface { " + pairs +
           " } right-hand side { " + right + " } " + condition + " }";
}

const char* const kAbortReport =
    "File 'DIR/r.drl' contains errors near position -1 in line 1\n"
    "Dump '' !!!\n";

struct MessageRow {
    std::string text;
    bool reads;
    std::string messages;
};

TEST(RuleReader, ReportsEachActionMessage) {
    const MessageRow rows[] = {
        {ruleText("vertex 1 = x", "", "vertex 2 = y"), false,
         std::string("Variables are only allowed on the left hand side of the rule!!!\n") +
             kAbortReport},
        {ruleText("vertex 1 { integer n = [1] }", "", ""), false,
         std::string("Expressions are only allowed on the right hand side of the rule!!!\n") +
             kAbortReport},
        {ruleText("vertex 1", "", "vertex 2 { integer n = [1] }"), false,
         std::string("No variables defined!!!\n") + kAbortReport},
        {ruleText("vertex 1", "", "vertex 2 @ 9"), false,
         std::string("Could not resolve the reference to vertex with the number '9' !!!\n") +
             kAbortReport},
        {ruleText("vertex 1 @ 1", "", ""), false,
         std::string("You can't reference a node in the left hand side of the rule!!!\n") +
             kAbortReport},
        {ruleText("vertex 1 edge 5 : 1 -> 7", "", ""), false,
         std::string("Vertex with number '7' not found!!!\n") + kAbortReport},
        {ruleText("vertex 1", "", "vertex @ 2"), true,
         "WARNING!!!\nYou can't force a reference to a node on the right hand side of the "
         "rule!\nIgnoring this time...\n"},
        // A syntax error: where the walk stopped, with the excerpt around it.
        {ruleText("vertex 1 { label 7 }", "", ""), false,
         "File 'DIR/r.drl' contains errors near position 57 in line 1\n"
         "Dump 'label 7 } } interface ' !!!\n"},
        // "inputs" is the reserved word "input" and the identifier "s".
        {ruleText("vertex 1 { real inputs = 1 }", "", ""), false,
         "File 'DIR/r.drl' contains errors near position 56 in line 1\n"
         "Dump ' real inputs = 1 } } i' !!!\n"},
    };
    for (const MessageRow& row : rows) {
        std::string messages;
        const auto rule = ruleFromText(row.text, &messages);
        EXPECT_EQ(rule != nullptr, row.reads) << row.text;
        EXPECT_EQ(messages, row.messages) << row.text;
    }
}

TEST(RuleReader, BuildsEveryPartOfTheRule) {
    std::string messages;
    const auto rule = ruleFromText(
        "% a comment\ndirected graphrule grow { left-hand side {\n"
        "  vertex @ 10 = a { label * real w = -0.25 }\n"
        "  vertex 11 { vector v = ( ) }\n"
        "  edge 20 : 10 -> 11 = e { label x } }\n"
        "interface { vertex 10 <-> 30 edge 20 <-> 40 vertex 99 <-> 31 edge 20 <-> 98 }\n"
        "right-hand side { vertex 30 vertex 31 @ 11 { string s = [a + \"!\"] }\n"
        "  edge 40 : 30 -> 31 { integer n = [a.w] } }\n"
        "application condition = [a.w < 0.0] }",
        &messages);
    ASSERT_NE(rule, nullptr) << messages;
    EXPECT_EQ(messages, "");
    EXPECT_EQ(rule->name(), "grow");
    EXPECT_EQ(rule->condition(), "a.w < 0.0");
    const DirectedGraph& left = rule->leftSide();
    const DirectedGraph& right = rule->rightSide();
    ASSERT_EQ(left.vertexCount(), 2u);
    ASSERT_EQ(right.vertexCount(), 2u);
    const DirectedGraphVertex& a = *left.vertices().begin();
    const DirectedGraphVertex& b = *std::next(left.vertices().begin());
    const DirectedGraphEdge& e = *left.edges().begin();
    EXPECT_EQ(variableOf(a), "a");
    EXPECT_TRUE(isForcedReference(a));
    EXPECT_FALSE(isForcedReference(b));
    EXPECT_EQ(a.label(), "*");
    EXPECT_EQ(variableOf(e), "e");
    EXPECT_EQ(e.source(), &a);
    EXPECT_EQ(e.label(), "x");
    // The interface in file order; unknown numbers leave their side empty.
    const GraphMorphism& interface = rule->interface();
    ASSERT_EQ(interface.vertexPairs().size(), 2u);
    ASSERT_EQ(interface.edgePairs().size(), 2u);
    const DirectedGraphVertex& r30 = *right.vertices().begin();
    const DirectedGraphVertex& r31 = *std::next(right.vertices().begin());
    EXPECT_EQ(interface.vertexPairs()[0].left, &a);
    EXPECT_EQ(interface.vertexPairs()[0].right, &r30);
    EXPECT_EQ(interface.vertexPairs()[1].left, nullptr);
    EXPECT_EQ(interface.vertexPairs()[1].right, &r31);
    EXPECT_EQ(interface.edgePairs()[0].right, &*right.edges().begin());
    EXPECT_EQ(interface.edgePairs()[1].right, nullptr);
    EXPECT_EQ(referenceOf(r31), &b);
    // Expressions: the attribute holds its default, the text rides along.
    const auto* s = dynamic_cast<const StringAttribute*>(r31.findAttribute("s"));
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->value(), "");
    ASSERT_NE(expressionOf(*s), nullptr);
    EXPECT_EQ(*expressionOf(*s), "a + \"!\"");
    const Attribute* n = right.edges().begin()->findAttribute("n");
    ASSERT_NE(n, nullptr);
    EXPECT_EQ(*expressionOf(*n), "a.w");
    EXPECT_EQ(expressionOf(*a.findAttribute("w")), nullptr);
    // The numbers of the file are gone from both sides.
    for (const DirectedGraph* side : {&left, &right}) {
        EXPECT_TRUE(graphIsConsistent(*side));
        for (const DirectedGraphVertex& vertex : side->vertices())
            EXPECT_EQ(vertex.findAttribute("__ID__"), nullptr);
        for (const DirectedGraphEdge& edge : side->edges())
            EXPECT_EQ(edge.findAttribute("__ID__"), nullptr);
    }
}

}  // namespace
}  // namespace vellum
