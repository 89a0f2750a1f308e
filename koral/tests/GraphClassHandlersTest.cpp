#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>
#include <vector>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "koral/GraphClassHandlers.h"

namespace vellum {
namespace {

using test::libraryError;
using test::ScopedEnvironment;
using test::ScopedWorkingDirectory;
using test::TempFolder;
using test::testPluginDirectory;

TEST(GraphClassHandlers, OpensEachHandlerOnceAndKeepsIt) {
    GraphClassHandlers table;
    ConsoleCapture capture;
    const koralLibrary* first = nullptr;
    {
        ScopedEnvironment path("koralGraphClasses", "/nonexistent;" + testPluginDirectory() + "/");
        first = &table.handler("Complete");
        EXPECT_TRUE(first->loaded());
    }
    // The search path no longer leads to it: the handler opened before is still used.
    ScopedEnvironment gone("koralGraphClasses", "/nonexistent");
    EXPECT_EQ(&table.handler("Complete"), first);
    EXPECT_EQ(capture.text(), "");
}

TEST(GraphClassHandlers, ThreadsAskingAtOnceShareOneHandler) {
    GraphClassHandlers table;
    ScopedEnvironment path("koralGraphClasses", testPluginDirectory());
    std::vector<const koralLibrary*> seen(4, nullptr);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < seen.size(); ++t) {
        threads.emplace_back([&table, &seen, t] {
            seen[t] = &table.handler("Complete");
            table.loadGraphEntry("Complete");
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (const koralLibrary* library : seen)
        EXPECT_EQ(library, seen.front());
    EXPECT_TRUE(seen.front()->loaded());
}

TEST(GraphClassHandlers, SaysWhenAHandlerCannotBeOpened) {
    GraphClassHandlers table;
    ScopedEnvironment path("koralGraphClasses", testPluginDirectory());
    ConsoleCapture capture;
    EXPECT_FALSE(table.open("Missing"));
    // The save entry is then looked up in nothing.
    EXPECT_EQ(libraryError([&] { table.saveGraphEntry("Missing"); }), "No library loaded!!!");
    EXPECT_EQ(capture.text(),
              "Could not open the graph class handler for 'Missing' !!!\n"
              "Could not open the graph class handler for 'Missing' !!!\n");
}

TEST(GraphClassHandlers, NamesEachMissingEntryInItsOwnWording) {
    GraphClassHandlers table;
    ScopedEnvironment path("koralGraphClasses", testPluginDirectory());
    const std::string handler = " of graph class handler for 'Bare' !!!";
    EXPECT_EQ(libraryError([&] { table.loadGraphEntry("Bare"); }),
              "Could not find the function 'gcLoadGraph'" + handler);
    EXPECT_EQ(libraryError([&] { table.saveGraphEntry("Bare"); }),
              "Could not find the function 'gcSaveGraph'" + handler);
    EXPECT_EQ(libraryError([&] { table.loadRuleEntry("Bare"); }),
              "Could not find the function 'gcLoadGraphRule'" + handler);
    EXPECT_EQ(libraryError([&] { table.conditionEntry("Bare"); }),
              "Could not find the function 'gcGraphClassExpression' of the graph class handler "
              "for 'Bare' !!!");
}

TEST(GraphClassHandlers, CallsTheHandlersEntries) {
    GraphClassHandlers table;
    ScopedEnvironment path("koralGraphClasses", testPluginDirectory());
    ScopedEnvironment extension("CompleteEXTGRAPH", "cg");
    EXPECT_EQ(GraphClassHandlers::graphFile("dir/start", "Complete"), "dir/start.cg");

    const auto graph = table.loadGraph("Complete", "dir/start.cg");
    ASSERT_TRUE(graph);
    ASSERT_EQ(graph->vertexCount(), 1u);
    EXPECT_EQ(graph->vertices().begin()->label(), "dir/start.cg");
    EXPECT_EQ(table.loadRuleEntry("Complete")("r.drl"), nullptr);

    const std::atomic<int> running{0};
    const auto one = table.compileCondition("Complete", nullptr, "1");
    ASSERT_TRUE(one);
    EXPECT_EQ(one->evaluate(*graph, running), 1);
    EXPECT_EQ(table.compileCondition("Complete", nullptr, "2")->evaluate(*graph, running), 0);
    EXPECT_FALSE(table.compileCondition("Complete", nullptr, "not a number"));
}

TEST(GraphClassHandlers, SavesThroughTheHandlerOfTheGraphsOwnClass) {
    // A plain DirectedGraph is of class "DirectedGraph": give that class the test handler.
    TempFolder folder;
    folder.copy(testPluginDirectory() + "/Complete.gc", "DirectedGraph.gc");
    ScopedEnvironment path("koralGraphClasses", folder.path());
    GraphClassHandlers table;
    DirectedGraph graph;
    graph.createVertex();
    graph.createVertex();
    ASSERT_TRUE(table.saveGraph(graph, folder.path("out.dg")));
    std::ifstream in(folder.path("out.dg"));
    std::string text;
    in >> text;
    EXPECT_EQ(text, "2");
}

TEST(GraphClassHandlers, WithAnEmptySearchPathTakesTheBareFileNameOnly) {
    ScopedEnvironment path("koralGraphClasses", "");
    {
        ScopedWorkingDirectory inside(testPluginDirectory());
        GraphClassHandlers table;
        EXPECT_TRUE(table.open("Complete"));
    }
    TempFolder elsewhere;
    ScopedWorkingDirectory outside(elsewhere.path());
    GraphClassHandlers table;
    ConsoleCapture capture;
    EXPECT_FALSE(table.open("Complete"));
    EXPECT_EQ(capture.text(), "Could not open the graph class handler for 'Complete' !!!\n");
}

}  // namespace
}  // namespace vellum
