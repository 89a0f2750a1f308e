// The rule editor's document: one history across both sides and the interface, what a save
// refuses with the reader's words, what reaches the file (the rule, not the editor's look), and
// a load that fails. The rule editor's frame tests load and save every bundled rule.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "base/Console.h"
#include "graph/IntegerAttribute.h"
#include "graph/RuleReader.h"
#include "graph/StringAttribute.h"
#include "gui/edit/RuleDocument.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

// A left-hand side a -e-> b built with the editing commands.
struct Edge {
    RuleDocument rule;
    GraphDocument& left = rule.side(RuleSide::Left);
    GraphDocument& right = rule.side(RuleSide::Right);
    DirectedGraphVertex* a = left.insertVertex("sphere", TPXp3(0, 0, 0));
    DirectedGraphVertex* b = left.insertVertex("cube", TPXp3(2, 0, 0));
    DirectedGraphEdge* e = left.connect(*a, *b);
};

TEST(RuleDocument, OneHistoryCoversBothSidesAndTheInterface) {
    Edge r;
    ASSERT_NE(r.rule.keepOnRight(*r.e), nullptr);
    EXPECT_EQ(r.right.graph().vertexCount(), 2u);
    EXPECT_EQ(r.right.graph().edgeCount(), 1u);
    EXPECT_EQ(r.rule.interface().vertexPairs().size(), 2u);
    EXPECT_EQ(r.rule.roleOf(RuleSide::Left, *r.a), RuleRole::Kept);
    EXPECT_EQ(r.rule.numberOf(*r.a), r.rule.numberOf(*r.rule.partnerOf(RuleSide::Left, *r.a)));

    // Keeping an edge with its ends is one step.
    ASSERT_TRUE(r.rule.undo());
    EXPECT_EQ(r.right.graph().vertexCount(), 0u);
    EXPECT_TRUE(r.rule.interface().empty());
    EXPECT_EQ(r.rule.roleOf(RuleSide::Left, *r.a), RuleRole::Deleted);
    EXPECT_EQ(r.left.graph().edgeCount(), 1u);
    ASSERT_TRUE(r.rule.redo());
    EXPECT_EQ(r.rule.interface().edgePairs().size(), 1u);

    // Deleting a right-hand partner takes its pairs (the vertex's and its edge's) with it.
    auto* partner = static_cast<DirectedGraphVertex*>(r.rule.partnerOf(RuleSide::Left, *r.b));
    ASSERT_TRUE(r.rule.remove(RuleSide::Right, *partner));
    EXPECT_EQ(r.rule.interface().vertexPairs().size(), 1u);
    EXPECT_TRUE(r.rule.interface().edgePairs().empty());
    EXPECT_EQ(r.rule.roleOf(RuleSide::Left, *r.b), RuleRole::Deleted);
    ASSERT_TRUE(r.rule.undo());
    EXPECT_EQ(r.rule.partnerOf(RuleSide::Left, *r.b), partner);
    EXPECT_EQ(r.rule.interface().edgePairs().size(), 1u);

    // Variables and references are undone like labels.
    ASSERT_TRUE(r.rule.setVariable(RuleSide::Left, *r.a, "x"));
    ASSERT_TRUE(r.rule.undo());
    EXPECT_TRUE(r.rule.variables().empty());
    ASSERT_TRUE(r.rule.remove(RuleSide::Left, *r.a));
    EXPECT_EQ(r.rule.interface().vertexPairs().size(), 1u);
    while (r.rule.undo()) {
    }
    EXPECT_EQ(r.left.graph().vertexCount(), 0u);
    EXPECT_FALSE(r.rule.modified());
}

TEST(RuleDocument, SaveRefusesWithTheReadersWordsAndWritesNothing) {
    test::TempFolder folder;
    const struct {
        const char* what;
        std::function<void(Edge&)> edit;
        const char* message;
    } rows[] = {
        {"a variable on the right",
         [](Edge& r) { r.rule.setVariable(RuleSide::Right, *r.rule.keepOnRight(*r.a), "y"); },
         "Variables are only allowed on the left hand side of the rule!!!"},
        {"an expression on the left",
         [](Edge& r) {
             r.rule.setAttribute(RuleSide::Left, *r.a, std::make_unique<IntegerAttribute>("n", 0),
                                 "1 + 1");
         },
         "Expressions are only allowed on the right hand side of the rule!!!"},
        {"an expression whose variable was taken away",
         [](Edge& r) {
             r.rule.setVariable(RuleSide::Left, *r.a, "x");
             r.rule.setAttribute(RuleSide::Right, *r.rule.keepOnRight(*r.a),
                                 std::make_unique<IntegerAttribute>("n", 0), "x.n + 1");
             r.rule.setVariable(RuleSide::Left, *r.a, "");
         },
         "No variables defined!!!"},
    };
    for (const auto& row : rows) {
        Edge r;
        row.edit(r);
        const std::string file = folder.path("r.drl");
        const EditResult saved = r.rule.save(file);
        EXPECT_FALSE(saved) << row.what;
        EXPECT_EQ(saved.title, "Alert") << row.what;
        EXPECT_EQ(saved.message, row.message) << row.what;
        EXPECT_FALSE(std::filesystem::exists(file)) << row.what;
        EXPECT_TRUE(r.rule.modified()) << row.what;
    }
}

TEST(RuleDocument, TheFileGetsTheRuleButNotTheEditorsLook) {
    test::TempFolder folder;
    Edge r;
    r.rule.setLabel(RuleSide::Left, *r.a, "*");
    DirectedGraphVertex* kept = r.rule.keepOnRight(*r.a);
    r.rule.setAttribute(RuleSide::Right, *kept,
                        std::make_unique<StringAttribute>("representation", "cone"));
    ASSERT_TRUE(r.rule.setName("grow"));
    ASSERT_TRUE(r.rule.save(folder.path("grow.drl")));
    ConsoleCapture quiet;
    const std::unique_ptr<DirectedGraphRule> read = loadRule(folder.path("grow.drl"));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->name(), "grow");
    for (const DirectedGraphVertex& vertex : read->leftSide().vertices())
        EXPECT_EQ(vertex.attributeCount(), 0u) << "the left-hand side's shapes and places";
    ASSERT_EQ(read->rightSide().vertexCount(), 1u);
    const DirectedGraphVertex& right = *read->rightSide().vertices().begin();
    EXPECT_EQ(right.label(), "*");
    ASSERT_EQ(right.attributeCount(), 1u) << "only what the user set";
    EXPECT_EQ(static_cast<const StringAttribute*>(right.findAttribute("representation"))->value(),
              "cone");
    ASSERT_EQ(read->interface().vertexPairs().size(), 1u);
    EXPECT_EQ(read->interface().vertexPairs()[0].right, &right);
    EXPECT_FALSE(r.rule.modified());
    EXPECT_EQ(r.rule.fileName(), folder.path("grow.drl"));
}

TEST(RuleDocument, AFailedLoadKeepsTheRule) {
    test::TempFolder folder;
    RuleDocument document;
    ASSERT_TRUE(document.load(std::string(VELLUM_EXAMPLES_DIR) + "/mutex/take.drl"));
    const std::string bad = folder.write("bad.drl", "directed graphrule b { left-hand side {");
    const EditResult loaded = document.load(bad);
    EXPECT_FALSE(loaded);
    EXPECT_NE(loaded.message.find("contains errors"), std::string::npos) << loaded.message;
    EXPECT_EQ(document.name(), "take");
    EXPECT_EQ(document.side(RuleSide::Left).graph().vertexCount(), 2u);
}

}  // namespace
}  // namespace vellum
