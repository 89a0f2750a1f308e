#include <gtest/gtest.h>

#include <string>

#include "base/Console.h"
#include "graph/GraphFastPath.h"
#include "graph/GraphReader.h"
#include "tests/support/GraphInvariants.h"
#include "tests/support/GraphSnapshot.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::graphIsConsistent;
using test::snapshotOf;
using Outcome = GraphFastPath::Outcome;

// What one reading left: its result, the console text and the graph in every detail.
struct Reading {
    bool ok = false;
    std::string console;
    std::string graph;
};

// A graph holding one vertex, so that a reading that leaves the graph alone shows.
void prefill(DirectedGraph& graph) {
    graph.createVertex()->setLabel("before");
}

Reading readWith(const std::string& file, bool fastPath) {
    ConsoleCapture capture;
    DirectedGraph graph;
    prefill(graph);
    GraphReader reader;
    reader.setFastPath(fastPath);
    Reading reading;
    reading.ok = reader.read(file, graph);
    reading.console = capture.text();
    reading.graph = snapshotOf(graph);
    return reading;
}

struct Row {
    const char* text;
    Outcome fastPath;  // whether the fast path reads the file or leaves it to the engine
};

TEST(GraphFastPath, BuildsWhatTheEngineBuildsOrLeavesTheFileToIt) {
    const Row rows[] = {
        // The writer's layout, every attribute type, labels on vertices and edges.
        {"directed graph\n{\n\n\tvertex 1 {\n\t\tlabel a\n\t\tboolean b = false\n\t}\n\n"
         "\tvertex 2 {\n\t\tinteger i = -7\n\t\treal r = 0.001\n\t\tstring s = \"x y\"\n"
         "\t\tvector v = (1 -2.5 3)\n\t}\n\n\tedge 1 -> 2\n\t{\n\t\tlabel e\n\t}\n\n"
         "\tedge 2 -> 2\n}\n",
         Outcome::Read},
        // Tokens glued together, the graph's name, text after the graph, a vertex number with
        // a fraction (its whole part counts), a second attribute of one name (the first stays).
        {"directed graph g{vertex1{label edgy integer n=1 integer n=2}vertex 2.9 "
         "edge1->2{label e}edge 2->1} anything",
         Outcome::Read},
        // A string of bytes above 127, an empty graph.
        {"directed graph { vertex 1 { string s = \"\xc3\xa4\" } }", Outcome::Read},
        {"directed graph { }", Outcome::Read},
        // Left to the engine, which reads them: a comment, an escape, a duplicate number.
        {"directed graph % name\n{ vertex 1 }", Outcome::GaveUp},
        {"directed graph { vertex 1 { string s = \"a\\\"b\" } }", Outcome::GaveUp},
        {"directed graph { vertex 1 vertex 1 edge 1 -> 1 }", Outcome::GaveUp},
        // Left to the engine, which reports them: a label that begins with a keyword, a
        // keyword glued to a name, an unfinished fraction, an unknown endpoint, a missing
        // brace, a name that begins with '_', no header at all (the graph is then left as it
        // was).
        {"directed graph { vertex 1 { label reals } }", Outcome::GaveUp},
        {"directed graph { vertex 1 { integer __ID__ = 5 } }", Outcome::GaveUp},
        {"directed graph { vertexA }", Outcome::GaveUp},
        {"directed graph { vertex 12. }", Outcome::GaveUp},
        {"directed graph { vertex 1 edge 1 -> 2 }", Outcome::GaveUp},
        {"directed graph { vertex 1 { label a }", Outcome::GaveUp},
        {"graph { }", Outcome::GaveUp},
    };
    test::TempFolder folder;
    for (const Row& row : rows) {
        const std::string file = folder.write("g.dg", row.text);
        DirectedGraph fast;
        EXPECT_EQ(GraphFastPath::read(file, fast), row.fastPath) << row.text;
        const Reading engine = readWith(file, false);
        const Reading reader = readWith(file, true);
        EXPECT_TRUE(graphIsConsistent(fast)) << row.text;
        EXPECT_EQ(reader.ok, engine.ok) << row.text;
        EXPECT_EQ(reader.console, engine.console) << row.text;
        EXPECT_EQ(reader.graph, engine.graph) << row.text;
        if (row.fastPath == Outcome::Read) {
            EXPECT_TRUE(engine.ok) << row.text;
            prefill(fast);
            EXPECT_EQ(GraphFastPath::read(file, fast), Outcome::Read);
            EXPECT_EQ(snapshotOf(fast), engine.graph) << row.text;
        }
    }
}

// Tokens that cross the end of the reading window, and a graph large enough to be read in
// several batches of edges, come out as the engine builds them.
TEST(GraphFastPath, ReadsLargeFilesAsTheEngineDoes) {
    std::string text = "directed graph\n{\n";
    const int vertices = 30000;
    for (int i = 1; i <= vertices; ++i) {
        text += "\tvertex " + std::to_string(i * 7919 % 100003);
        text += i % 3 == 0 ? " { label v real x = " + std::to_string(i) + ".25 }\n" : "\n";
    }
    for (int i = 1; i <= 2 * vertices; ++i) {
        text += "\tedge " + std::to_string((i * 31 % vertices + 1) * 7919 % 100003) + " -> " +
                std::to_string((i * 17 % vertices + 1) * 7919 % 100003);
        text += i % 5 == 0 ? " { label e }\n" : "\n";
    }
    text += "}\n";
    test::TempFolder folder;
    const std::string file = folder.write("big.dg", text);
    DirectedGraph fast;
    ASSERT_EQ(GraphFastPath::read(file, fast), Outcome::Read);
    EXPECT_EQ(fast.edgeCount(), 2u * vertices);
    const Reading engine = readWith(file, false);
    ASSERT_TRUE(engine.ok);
    DirectedGraph withPrefill;
    prefill(withPrefill);
    ASSERT_EQ(GraphFastPath::read(file, withPrefill), Outcome::Read);
    EXPECT_EQ(snapshotOf(withPrefill), engine.graph);
}

}  // namespace
}  // namespace vellum
