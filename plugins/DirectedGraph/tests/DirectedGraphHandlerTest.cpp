// The graph and rule entries of DirectedGraph.gc, called through the handler table: files in
// Vellum's formats read into new objects the caller owns, graphs written back unchanged, and
// bad input answered with the reader's or writer's message and a failure result.
#include <gtest/gtest.h>

#include "HandlerTestSupport.h"
#include "base/Console.h"
#include "graph/DirectedGraphRule.h"

namespace vellum {
namespace {

using test::directedGraphHandler;
using test::TempFolder;

constexpr const char* kGraph = R"(directed graph sample
{
	vertex 1 { label place string name = "in" }
	vertex 2 { label transition vector position = ( 1.0 2.0 3.0 ) }
	vertex 3 { label place }
	edge 1 -> 2 { label arc }
	edge 2 -> 3 { label arc integer weight = 3 }
	edge 3 -> 3
}
)";

TEST(DirectedGraphHandler, GraphsSurviveALoadAndSaveRoundTrip) {
    TempFolder folder;
    GraphClassHandlers& handlers = directedGraphHandler();
    const auto graph = handlers.loadGraph("DirectedGraph", folder.write("in.dg", kGraph));
    ASSERT_TRUE(graph);
    EXPECT_EQ(graph->vertexCount("place"), 2u);
    EXPECT_EQ(graph->edgeCount("arc"), 2u);
    EXPECT_EQ(graph->edgeCount(), 3u);

    // Read back, the saved graph saves to the same text: nothing was lost on the way.
    ASSERT_TRUE(handlers.saveGraph(*graph, folder.path("once.dg")));
    const auto again = handlers.loadGraph("DirectedGraph", folder.path("once.dg"));
    ASSERT_TRUE(again);
    ASSERT_TRUE(handlers.saveGraph(*again, folder.path("twice.dg")));
    const std::string saved = TempFolder::read(folder.path("once.dg"));
    EXPECT_EQ(saved, TempFolder::read(folder.path("twice.dg")));
    EXPECT_NE(saved.find("vector position = (1 2 3)"), std::string::npos) << saved;
}

TEST(DirectedGraphHandler, RulesAreReadIntoNewRulesTheCallerOwns) {
    TempFolder folder;
    const std::string path = folder.write("fire.drl", R"(directed graphrule fire {
        left-hand side { vertex 1 = p { label place } vertex 2 edge 3 : 1 -> 2 }
        interface { vertex 1 <-> 1 }
        right-hand side { vertex 1 { label * } }
        application condition = [p.marks > 0] })");
    const std::unique_ptr<DirectedGraphRule> rule(
        directedGraphHandler().loadRuleEntry("DirectedGraph")(path.c_str()));
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->name(), "fire");
    EXPECT_EQ(rule->leftSide().vertexCount(), 2u);
    EXPECT_EQ(rule->leftSide().edgeCount(), 1u);
    EXPECT_EQ(rule->interface().vertexPairs().size(), 1u);
    EXPECT_EQ(rule->condition(), "p.marks > 0");
}

TEST(DirectedGraphHandler, BadInputFailsWithAMessage) {
    TempFolder folder;
    GraphClassHandlers& handlers = directedGraphHandler();
    const std::string badGraph = folder.write("bad.dg", "directed graph {");
    const std::string badRule = folder.write("bad.drl", "directed graphrule {");
    ConsoleCapture capture;
    EXPECT_FALSE(handlers.loadGraph("DirectedGraph", badGraph));
    EXPECT_NE(capture.text().find("File '" + badGraph + "' contains errors"), std::string::npos);
    EXPECT_EQ(handlers.loadRuleEntry("DirectedGraph")(badRule.c_str()), nullptr);
    EXPECT_NE(capture.text().find("File '" + badRule + "' contains errors"), std::string::npos);

    DirectedGraph graph;
    const std::string nowhere = folder.path("no/folder/out.dg");
    capture.reset();
    EXPECT_FALSE(handlers.saveGraph(graph, nowhere));
    EXPECT_EQ(capture.text(), "Could not write the file '" + nowhere + "' !!!\n");

    EXPECT_EQ(handlers.loadGraphEntry("DirectedGraph")(nullptr), nullptr);
    EXPECT_EQ(handlers.saveGraphEntry("DirectedGraph")(&graph, nullptr), 0);
    EXPECT_EQ(handlers.conditionEntry("DirectedGraph")(nullptr, nullptr), nullptr);
}

}  // namespace
}  // namespace vellum
