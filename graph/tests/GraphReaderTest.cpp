#include <gtest/gtest.h>

#include <climits>

#include "base/Console.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphReader.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "tests/support/GraphInvariants.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::graphIsConsistent;
using test::TempFolder;
using test::textOf;

// Reads `text` as the file "g.dg" of a fresh folder; `messages` receives the console text with
// the folder's path replaced by "DIR".
bool readText(const std::string& text, DirectedGraph& graph, std::string& messages) {
    TempFolder folder;
    const std::string file = folder.write("g.dg", text);
    ConsoleCapture capture;
    const bool ok = loadGraph(file, graph);
    messages = capture.text();
    for (std::size_t at; (at = messages.find(folder.root().string())) != std::string::npos;)
        messages.replace(at, folder.root().string().size(), "DIR");
    return ok;
}

struct FailureRow {
    const char* text;
    const char* messages;
};

TEST(GraphReader, ReportsFailuresWithTheirMessagesAndPositions) {
    const FailureRow rows[] = {
        // An action that fails: its message, then the report without position and excerpt.
        {"directed graph { vertex 40 edge 40 -> 98 }",
         "Vertex with number '98' not found!!!\n"
         "File 'DIR/g.dg' contains errors near position -1 in line 1\nDump '' !!!\n"},
        {"directed graph { vertex 1 edge 7 -> 8 }",
         "Vertex with number '7' not found!!!\nVertex with number '8' not found!!!\n"
         "File 'DIR/g.dg' contains errors near position -1 in line 1\nDump '' !!!\n"},
        // Syntax errors: where the walk stopped, 6 characters before and 16 after, and line 1.
        {"directed graph {\n\tvertex x }",
         "File 'DIR/g.dg' contains errors near position 25 in line 1\nDump 'ertex x }' !!!\n"},
        // The file forms that do not read back: an empty vector, a real with an exponent, a
        // string holding a double quote.
        {"directed graph { vertex 1 { vector v = ( ) } }",
         "File 'DIR/g.dg' contains errors near position 41 in line 1\nDump 'v = ( ) } }' !!!\n"},
        {"directed graph { vertex 1 { real x = 1e6 } }",
         "File 'DIR/g.dg' contains errors near position 38 in line 1\nDump ' x = 1e6 } }' !!!\n"},
        {"directed graph { vertex 1 { string s = \"a\"b\" } }",
         "File 'DIR/g.dg' contains errors near position 42 in line 1\n"
         "Dump ' = \"a\"b\" } }' !!!\n"},
        // Control characters of the excerpt are shown escaped.
        {"directed graph\r\n{ vertex\t1 edge 1 --> 1 }",
         "File 'DIR/g.dg' contains errors near position 34 in line 1\n"
         "Dump 'dge 1 --> 1 }' !!!\n"},
        {"directed graph\r\n{\tvertex 1 edge 1\t-> 2 }",
         "Vertex with number '2' not found!!!\n"
         "File 'DIR/g.dg' contains errors near position -1 in line 1\nDump '' !!!\n"},
        {"directed graph % comment\n{ }",
         "File 'DIR/g.dg' contains errors near position 15 in line 1\n"
         "Dump 'graph % comment\\n{ }' !!!\n"},
        {"", "File 'DIR/g.dg' contains errors near position 0 in line 1\nDump '' !!!\n"},
    };
    for (const FailureRow& row : rows) {
        DirectedGraph graph;
        std::string messages;
        EXPECT_FALSE(readText(row.text, graph, messages)) << row.text;
        EXPECT_EQ(messages, row.messages) << row.text;
        EXPECT_TRUE(graphIsConsistent(graph));
    }
}

TEST(GraphReader, AVertexKeywordWithoutNumberIsSkippedWhenTheBraceFollows) {
    // The keyword is consumed, the vertex fails, and the closing brace still matches.
    DirectedGraph graph;
    std::string messages;
    EXPECT_TRUE(readText("directed graph {\n\tvertex }", graph, messages));
    EXPECT_EQ(graph.vertexCount(), 0u);
}

TEST(GraphReader, MissingFileFailsWithTheReport) {
    ConsoleCapture capture;
    DirectedGraph graph;
    EXPECT_FALSE(loadGraph("/nonexistent/x.dg", graph));
    EXPECT_EQ(capture.text(),
              "File '/nonexistent/x.dg' contains errors near position 0 in line 1\n"
              "Dump '' !!!\n");
    EXPECT_EQ(loadGraph("/nonexistent/x.dg"), nullptr);
}

TEST(GraphReader, FailedReadLeavesWhatWasBuilt) {
    DirectedGraph graph;
    graph.createVertex();  // emptied by the first action
    TempFolder folder;
    const std::string file =
        folder.write("g.dg", "directed graph { vertex 5 { label a } vertex 6 edge 5 -> 9 }");
    ConsoleCapture quiet;
    ASSERT_FALSE(GraphReader().read(file, graph));
    ASSERT_EQ(graph.vertexCount(), 2u);
    EXPECT_EQ(graph.edgeCount(), 0u);
    EXPECT_EQ(graph.vertexCount("a"), 1u);
    // The numbers are removed only after success.
    auto* id = dynamic_cast<IntegerAttribute*>(graph.vertices().front()->findAttribute("__ID__"));
    ASSERT_NE(id, nullptr);
    EXPECT_EQ(id->value(), 5);
}

TEST(GraphReader, AFailedLoadLeavesTheGraphAsItWas) {
    DirectedGraph graph;
    std::string messages;
    ASSERT_TRUE(
        readText("directed graph { vertex 1 { label hub integer n = 3 } vertex 2 "
                 "{ vector p = (1 2 3) } edge 1 -> 2 { label e } edge 2 -> 2 }",
                 graph, messages));
    const std::string before = textOf(graph);
    const DirectedGraphVertex* hub = graph.vertices().front();
    const char* broken[] = {
        // A syntax error after vertices and edges were read.
        "directed graph { vertex 7 { label a } vertex 8 edge 7 -> 8 { integer n = x } }",
        // An edge to a vertex that is not in the file.
        "directed graph { vertex 7 { label a } vertex 8 edge 7 -> 9 }",
        "directed graph { vertex 7 { label a } vertex 8 { real r = 1e6 } }",
        "",
    };
    for (const char* text : broken) {
        EXPECT_FALSE(readText(text, graph, messages)) << text;
        EXPECT_TRUE(graphIsConsistent(graph)) << text;
        EXPECT_EQ(textOf(graph), before) << text;
        if (textOf(graph) != before)
            continue;  // the old elements may be gone
        EXPECT_TRUE(graph.contains(*hub)) << text;
        EXPECT_EQ(graph.vertexCount("hub"), 1u) << text;
        EXPECT_EQ(graph.vertexCount("a"), 0u) << text;
    }
    ConsoleCapture quiet;
    EXPECT_FALSE(loadGraph("/nonexistent/x.dg", graph));
    EXPECT_EQ(textOf(graph), before);

    // A load that succeeds replaces everything, and the graph goes on working.
    ASSERT_TRUE(
        readText("directed graph { vertex 7 { label a } vertex 8 edge 8 -> 7 }", graph, messages));
    EXPECT_TRUE(graphIsConsistent(graph));
    EXPECT_EQ(graph.vertexCount(), 2u);
    EXPECT_EQ(graph.vertexCount("hub"), 0u);
    EXPECT_EQ(graph.edgeCount("e"), 0u);
    DirectedGraphVertex* a = graph.verticesWithLabel("a").front();
    ASSERT_NE(a, nullptr);
    EXPECT_NE(graph.createEdge(a, graph.createVertex()), nullptr);
    EXPECT_TRUE(graph.removeVertex(a));
    EXPECT_TRUE(graphIsConsistent(graph));
}

TEST(GraphReader, BuildsTheGraphOfAValidFile) {
    const char* text =
        "% a comment\n"
        "directed graph my_graph\n{ % another\n"
        "\tvertex 1 { label hub integer n = -82 real r = 0.0000125 boolean b = true\n"
        "\t\tstring s = \"a\\\"b\\\\\" vector v = ( 1 -2 3.25 ) integer n = 5 }\n"
        "\tvertex 2\n\tvertex 3 { }\n"
        "\tedge 1 -> 2 { label e string s = \"%no\" } edge 3 -> 3 edge 2 -> 1\n"
        "}\ndirected graph ignored { vertex 9 }";
    DirectedGraph graph;
    std::string messages;
    ASSERT_TRUE(readText(text, graph, messages)) << messages;
    EXPECT_EQ(messages, "");
    ASSERT_TRUE(graphIsConsistent(graph));
    ASSERT_EQ(graph.vertexCount(), 3u);
    ASSERT_EQ(graph.edgeCount(), 3u);
    for (const DirectedGraphVertex& v : graph.vertices())
        EXPECT_EQ(v.findAttribute("__ID__"), nullptr);
    const DirectedGraphVertex& hub = *graph.vertices().front();
    EXPECT_EQ(hub.label(), "hub");
    ASSERT_EQ(hub.attributeCount(), 5u) << "the second n is dropped";
    EXPECT_EQ(dynamic_cast<IntegerAttribute*>(hub.findAttribute("n"))->value(), -82);
    EXPECT_EQ(dynamic_cast<RealAttribute*>(hub.findAttribute("r"))->value(), 0.0000125);
    EXPECT_TRUE(dynamic_cast<BooleanAttribute*>(hub.findAttribute("b"))->value());
    EXPECT_EQ(dynamic_cast<StringAttribute*>(hub.findAttribute("s"))->value(), "a\\\"b\\\\")
        << "backslash sequences kept as written, quotes stripped";
    EXPECT_EQ(dynamic_cast<VectorAttribute*>(hub.findAttribute("v"))->value(),
              (std::vector<double>{1, -2, 3.25}));
    const DirectedGraphEdge& first = *graph.edges().front();
    EXPECT_EQ(first.source(), &hub);
    EXPECT_EQ(first.label(), "e");
    EXPECT_EQ(dynamic_cast<StringAttribute*>(first.findAttribute("s"))->value(), "%no");
    EXPECT_EQ(graph.edgeCount(""), 2u);
}

TEST(GraphReader, ResolvesNumbersAsTheLinearSearchWould) {
    // Duplicate numbers: the first vertex wins. Fractions: the whole part counts. Numbers far
    // beyond 32 bits: a defined value, the same for the vertex and the edge.
    DirectedGraph graph;
    std::string messages;
    ASSERT_TRUE(
        readText("directed graph { vertex 4 { label first } vertex 4 { label second }"
                 " vertex 3.6 vertex 99999999999999999999999999999999999999 "
                 "edge 4 -> 3 edge 99999999999999999999999999999999999999 -> 4.9 }",
                 graph, messages))
        << messages;
    ASSERT_EQ(graph.edgeCount(), 2u);
    const DirectedGraphEdge& toThree = *graph.edges().front();
    EXPECT_EQ(toThree.source()->label(), "first");
    std::vector<const DirectedGraphVertex*> order;
    for (const auto& v : graph.vertices())
        order.push_back(&v);
    EXPECT_EQ(toThree.target(), order[2]);
    const DirectedGraphEdge& big = *std::next(graph.edges().begin());
    EXPECT_EQ(big.source(), order[3]);
    EXPECT_EQ(big.target(), order[0]);
}

}  // namespace
}  // namespace vellum
