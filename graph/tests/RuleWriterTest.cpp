#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "RuleFixtures.h"
#include "graph/AttributeExpression.h"
#include "graph/IntegerAttribute.h"
#include "graph/RuleCheck.h"
#include "graph/RuleObjectData.h"
#include "graph/RuleWriter.h"

namespace vellum {
namespace {

using test::ruleFromText;
using test::TempFolder;

std::string written(const DirectedGraphRule& rule) {
    std::ostringstream out;
    RuleWriter(out).write(rule);
    return out.str();
}

TEST(RuleWriter, WritesTheFileLayout) {
    const auto rule = ruleFromText(
        "directed graphrule grow { left-hand side { vertex 7 = x { label a string s = \"q\\\"\" }"
        " vertex @ 8 edge 9 : 7 -> 8 = e }"
        " interface { vertex 7 <-> 1 edge 9 <-> 55 vertex 3 <-> 1 }"
        " right-hand side { vertex 1 @ 8 { label * real r = [x.w * 2.0] vector v = ( ) }"
        " vertex 2 { boolean b = true integer i = -3 }"
        " edge 3 : 2 -> 1 { label y } }"
        " application condition = [x == \"a\"] }");
    ASSERT_NE(rule, nullptr);
    EXPECT_EQ(written(*rule),
              "directed graphrule grow\n"
              "{\n"
              "\tleft-hand side\n"
              "\t{\n"
              "\n"
              "\t\tvertex 1 = x\n"
              " \t\t{\n"
              "\t\t\tlabel a\n"
              "\t\t\tstring s = \"q\\\"\"\n"
              "\t\t}\n"
              "\n"
              "\t\tvertex 2\n"
              "\t\tedge 3 : 1 -> 2 = e\n"
              "\t}\n"
              "\n"
              "\tinterface\n"
              "\t{\n"
              "\t\tvertex 1 <-> 4\n"
              "\t\tvertex 0 <-> 4\n"
              "\t\tedge 3 <-> 0\n"
              "\t}\n"
              "\tright-hand side\n"
              "\t{\n"
              "\n"
              "\t\tvertex 4\n"
              " \t\t{\n"
              "\t\t\tlabel *\n"
              "\t\t\treal r = [x.w * 2.0]\n"
              "\t\t\tvector v = ()\n"
              "\t\t}\n"
              "\n"
              "\t\tvertex 5\n"
              " \t\t{\n"
              "\t\t\tboolean b = true\n"
              "\t\t\tinteger i = -3\n"
              "\t\t}\n"
              "\t\tedge 6 : 5 -> 4\n"
              "\t\t{\n"
              "\t\t\tlabel y\n"
              "\t\t}\n"
              "\t}\n"
              "\tapplication condition = [x == \"a\"]\n"
              "}\n");
}

TEST(RuleWriter, RoundTripKeepsTheRuleButNotItsMarks) {
    const auto rule = ruleFromText(
        "directed graphrule r { left-hand side { vertex @ 1 = v { label a integer n = 4 }"
        " vertex 2 edge 3 : 1 -> 2 { real w = 2.5 } edge 4 : 2 -> 2 }"
        " interface { vertex 1 <-> 5 edge 3 <-> 7 }"
        " right-hand side { vertex 5 vertex 6 @ 2 { string s = [v + \"x\"] }"
        " edge 7 : 5 -> 6 } }");
    ASSERT_NE(rule, nullptr);
    TempFolder folder;
    const std::string file = folder.path("out.drl");
    ASSERT_TRUE(saveRule(*rule, file));
    const std::string first = TempFolder::read(file);
    const auto again = ruleFromText(first);
    ASSERT_NE(again, nullptr) << first;
    EXPECT_EQ(written(*again), first);
    EXPECT_EQ(again->interface().vertexPairs().size(), 1u);
    EXPECT_EQ(again->interface().edgePairs().size(), 1u);
    EXPECT_EQ(again->leftSide().edgeCount(), 2u);
    for (const DirectedGraphVertex& vertex : again->leftSide().vertices())
        EXPECT_FALSE(isForcedReference(vertex));
    for (const DirectedGraphVertex& vertex : again->rightSide().vertices())
        EXPECT_EQ(referenceOf(vertex), nullptr);
}

// A rule changed in memory into what a file could not hold is refused with the reader's message
// before anything is written; the same rule read from its file has nothing to refuse.
TEST(RuleWriter, ReaderRefusalTellsWhatTheReaderWouldSay) {
    const char* const text =
        "directed graphrule r { left-hand side { vertex 1 = v { label a } vertex 2 }"
        " interface { vertex 1 <-> 3 } right-hand side { vertex 3 { integer n = [1] }"
        " vertex 4 } }";
    auto first = [](DirectedGraph& side) -> DirectedGraphVertex& {
        return *side.vertices().begin();
    };
    auto last = [](DirectedGraph& side) -> DirectedGraphVertex& {
        DirectedGraphVertex* found = nullptr;
        for (DirectedGraphVertex& vertex : side.vertices())
            found = &vertex;
        return *found;
    };
    const struct {
        const char* what;
        std::function<void(DirectedGraphRule&)> edit;
        const char* message;
    } rows[] = {
        {"as read", [](DirectedGraphRule&) {}, ""},
        {"a reference on the left",
         [&](DirectedGraphRule& r) {
             setReference(last(r.editLeftSide()), &first(r.editLeftSide()));
         },
         "You can't reference a node in the left hand side of the rule!!!"},
        {"a variable on the right",
         [&](DirectedGraphRule& r) { setVariable(last(r.editRightSide()), "w"); },
         "Variables are only allowed on the left hand side of the rule!!!"},
        {"an expression on the left",
         [&](DirectedGraphRule& r) {
             auto attribute = std::make_unique<IntegerAttribute>("m", 0);
             setExpression(*attribute, "1");
             last(r.editLeftSide()).addAttribute(std::move(attribute));
         },
         "Expressions are only allowed on the right hand side of the rule!!!"},
        {"the only variable gone",
         [&](DirectedGraphRule& r) { setVariable(first(r.editLeftSide()), ""); },
         "No variables defined!!!"},
    };
    for (const auto& row : rows) {
        auto rule = ruleFromText(text);
        ASSERT_NE(rule, nullptr);
        row.edit(*rule);
        EXPECT_EQ(readerRefusal(*rule), row.message) << row.what;
    }
}

TEST(RuleWriter, ReportsAFileItCannotWrite) {
    const auto rule = ruleFromText(
        "directed graphrule r { left-hand side { } interface { } right-hand side { } }");
    ASSERT_NE(rule, nullptr);
    ConsoleCapture capture;
    EXPECT_FALSE(saveRule(*rule, "/nonexistent-folder/r.drl"));
    EXPECT_EQ(capture.text(), "Could not write the file '/nonexistent-folder/r.drl' !!!\n");
}

}  // namespace
}  // namespace vellum
