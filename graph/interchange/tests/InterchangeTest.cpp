// Graphs through GraphML, GXL and DOT: what Vellum writes reads back equal; files written by
// NetworkX and Graphviz read; what a graph file cannot spell is refused or renamed, never
// dropped silently; broken files fail with their reason and leave no graph.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "base/Console.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphWriter.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "graph/interchange/ForeignGraph.h"
#include "graph/interchange/Interchange.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

const std::string kData = VELLUM_INTERCHANGE_DATA;

// Strings quoted, vectors in parentheses: what a value was, besides its text.
std::string valueText(const Attribute& attribute) {
    const std::string text = attributeValueText(attribute, exactRealText, " ");
    if (attribute.type() == AttributeType::String)
        return "'" + text + "'";
    return attribute.type() == AttributeType::Vector ? "(" + text + ")" : text;
}

// Every element in order with its label and its attributes' exact values and types.
// Internal attributes are left out; `sorted` lists attributes by name.
std::string describe(const DirectedGraph& graph, bool sorted = false) {
    std::ostringstream out;
    std::map<const DirectedGraphVertex*, int> index;
    auto contents = [&out, sorted](const GraphObject& object) {
        out << " [" << object.label() << "]";
        std::vector<std::string> texts;
        for (const Attribute& attribute : object.attributes())
            if (attribute.name().rfind("__", 0) != 0)
                texts.push_back(" " + attribute.name() + ":" + attributeKeyword(attribute.type()) +
                                "=" + valueText(attribute));
        if (sorted)
            std::sort(texts.begin(), texts.end());
        for (const std::string& text : texts)
            out << text;
        out << "\n";
    };
    for (const DirectedGraphVertex& vertex : graph.vertices()) {
        const int number = static_cast<int>(index.size()) + 1;
        index[&vertex] = number;
        out << "v" << number;
        contents(vertex);
    }
    for (const DirectedGraphEdge& edge : graph.edges()) {
        out << index[edge.source()] << "->" << index[edge.target()];
        contents(edge);
    }
    return out.str();
}

// Labels, all five types, exact reals, a colour that #rrggbb rounds, text that XML and DOT
// must escape, parallel edges both ways, a loop and an unlabelled vertex.
void drawSample(DirectedGraph& graph) {
    DirectedGraphVertex* a = graph.createVertex();
    a->setLabel("Process");
    a->addAttribute(
        std::make_unique<VectorAttribute>("position", std::vector<double>{1.5, -2, 0.1}));
    a->addAttribute(std::make_unique<VectorAttribute>("color", std::vector<double>{0, 0.5, 1}));
    a->addAttribute(std::make_unique<StringAttribute>("note", "a <b> & 'c' \\d"));
    DirectedGraphVertex* b = graph.createVertex();
    b->addAttribute(std::make_unique<IntegerAttribute>("count", -7));
    b->addAttribute(std::make_unique<RealAttribute>("weight", 3.0));
    b->addAttribute(std::make_unique<RealAttribute>("tiny", 1e-300));
    b->addAttribute(std::make_unique<BooleanAttribute>("flag", true));
    b->addAttribute(std::make_unique<VectorAttribute>("color", std::vector<double>{1, 0, 0}));
    b->addAttribute(std::make_unique<IntegerAttribute>("__link__", 4));  // internal: left out
    DirectedGraphVertex* c = graph.createVertex();
    c->setLabel("Resource");
    graph.createEdge(a, b)->setLabel("next");
    graph.createEdge(a, b)->setLabel("next");
    DirectedGraphEdge* back = graph.createEdge(b, a);
    back->addAttribute(std::make_unique<RealAttribute>("length", 0.1));
    graph.createEdge(c, c)->setLabel("loop");
}

TEST(Interchange, EachFormatGivesBackTheGraphItWasGiven) {
    DirectedGraph sample;
    drawSample(sample);
    const std::string expected = describe(sample);
    test::TempFolder folder;
    for (const char* name : {"g.graphml", "g.gxl", "g.dot", "g.GraphML"}) {
        SCOPED_TRACE(name);
        ConsoleCapture console;
        const std::string file = folder.path(name);
        ASSERT_TRUE(exportGraph(sample, file)) << console.text();
        DirectedGraph read;
        ASSERT_TRUE(importGraph(file, read)) << console.text();
        // DOT lists a vertex's attributes in the order they were first declared in the file.
        const bool sorted = graphFileFormat(file) == GraphFileFormat::DOT;
        EXPECT_EQ(describe(read, sorted), sorted ? describe(sample, true) : expected);
        EXPECT_EQ(console.text(), "");
        // And once more: the second export writes the first's text.
        const std::string again = folder.path(std::string("again-") + name);
        ASSERT_TRUE(exportGraph(read, again));
        if (!sorted) {
            std::ifstream first(file), second(again);
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(first), {}),
                      std::string(std::istreambuf_iterator<char>(second), {}));
        }
    }
}

TEST(Interchange, FilesOfOtherProgramsRead) {
    ConsoleCapture console;
    DirectedGraph graph;
    // NetworkX 3: "long" and "boolean" keys, True/False, a city outside ASCII.
    EXPECT_FALSE(importGraph(kData + "/networkx.graphml", graph));
    EXPECT_NE(console.text().find("node 'alice': the attribute 'city' cannot be read: a string "
                                  "cannot hold the byte"),
              std::string::npos)
        << console.text();
    EXPECT_EQ(graph.vertexCount(), 0u);
    console.reset();
    ASSERT_TRUE(importGraph(kData + "/networkx.graphml", graph, {true})) << console.text();
    EXPECT_EQ(
        describe(graph),
        "v1 [person] age:integer=31 height:real=1.68 admin:boolean=true city:string='Z??rich'\n"
        "v2 [person] age:integer=27 height:real=1.8 admin:boolean=false city:string='Bern'\n"
        "v3 [company] founded:integer=1999\n"
        "1->2 [knows] weight:real=0.5\n"
        "1->3 [works_at] weight:real=1\n"
        "2->3 [works_at] weight:real=2.5\n");
    EXPECT_NE(console.text().find("node 'alice': the attribute 'city' '"), std::string::npos);

    // A graph of Vellum's, exported, read and written again by NetworkX (which drops the
    // vectors' <desc>), comes back equal.
    DirectedGraph original;
    ASSERT_TRUE(importGraph(std::string(VELLUM_EXAMPLES_DIR) + "/models/gallery.dg", original));
    console.reset();
    ASSERT_TRUE(importGraph(kData + "/gallery-networkx.graphml", graph)) << console.text();
    EXPECT_EQ(describe(graph), describe(original));

    // Graphviz's own output: names as labels, its layout as positions in points.
    console.reset();
    ASSERT_TRUE(importGraph(kData + "/graphviz.dot", graph)) << console.text();
    ASSERT_EQ(graph.vertexCount(), 3u);
    ASSERT_EQ(graph.edgeCount(), 3u);
    const DirectedGraphVertex& parse = *graph.vertices().begin();
    EXPECT_EQ(parse.label(), "parse");
    const auto* at = dynamic_cast<const VectorAttribute*>(parse.findAttribute("position"));
    ASSERT_NE(at, nullptr);
    EXPECT_EQ(at->value(), (std::vector<double>{28.5 / 72, 178.0 / 72, 0}));
    EXPECT_NE(parse.findAttribute("shape"), nullptr);
    const DirectedGraphEdge& retry = *std::next(graph.edges().begin());
    EXPECT_EQ(retry.label(), "retry");
    EXPECT_EQ(retry.source()->label(), "check");
    EXPECT_EQ(dynamic_cast<const StringAttribute*>(retry.findAttribute("color"))->value(), "red");
}

TEST(Interchange, WhatAGraphFileCannotSpellIsRefusedOrRenamedWithAReport) {
    test::TempFolder folder;
    const std::string file = folder.write(
        "odd.graphml",
        "<graphml><key id='l' for='node' attr.name='label' attr.type='string'/>"
        "<key id='k' for='node' attr.name='my key' attr.type='int'><default>5</default></key>"
        "<graph edgedefault='undirected'><node id='a'><data key='l'>two words</data></node>"
        "<node id='b'><data key='l'>vertex1</data><data key='k'>6</data></node>"
        "<edge source='a' target='b'/><edge source='b' target='a'/></graph></graphml>");
    ConsoleCapture console;
    DirectedGraph graph;
    EXPECT_FALSE(importGraph(file, graph));
    EXPECT_EQ(console.text().substr(console.text().find(": ") + 2),
              "node 'a': the label 'two words' cannot be read: a label must be an identifier (a "
              "letter, then letters, digits or '_') in a graph file\n")
        << console.text();
    console.reset();
    ASSERT_TRUE(importGraph(file, graph, {true}));
    EXPECT_EQ(describe(graph),
              "v1 [two_words] my_key:integer=5\n"
              "v2 [x_vertex1] my_key:integer=6\n"
              "1->2 []\n"
              "2->1 []\n");
    const std::string prefix = "GraphML file '" + file + "': ";
    EXPECT_EQ(console.text(),
              prefix + "node 'a': the label 'two words' became 'two_words'\n" + prefix +
                  "node 'a': the attribute name 'my key' became 'my_key'\n" + prefix +
                  "node 'b': the label 'vertex1' became 'x_vertex1'\n" + prefix +
                  "node 'b': the attribute name 'my key' became 'my_key'\n" + prefix +
                  "undirected edges are read as directed from source to target (2 times)\n");
    // Renamed, it saves as a graph file.
    EXPECT_TRUE(exportGraph(graph, folder.path("odd.dg")));
}

TEST(Interchange, BrokenFilesFailWithTheirReasonAndLeaveNoGraph) {
    struct Case {
        const char* name;
        const char* text;
        const char* reason;
    };
    const Case cases[] = {
        {"a.graphml", "<graphml><graph>", "not well-formed XML in line 1"},
        {"b.graphml", "<gxl/>", "the document is no GraphML: its root element is <gxl>"},
        {"c.graphml", "<graphml/>", "the document holds no <graph>"},
        {"d.graphml", "<graphml><graph><node id='a'/><node id='a'/></graph></graphml>",
         "the node id 'a' is used twice"},
        {"e.graphml",
         "<graphml><graph><node id='a'/><edge source='a' target='z'/></graph></graphml>",
         "edge (a -> z) ends at 'z', which is no node of the graph"},
        {"f.gxl", "<gxl><graph><node id='a'/><edge from='a'/></graph></gxl>",
         "an <edge> lacks its from or to"},
        {"g.dot", "digraph { a -> ; }", "not DOT: syntax error in line 1"},
        {"h.dot", "", "the file holds no DOT graph"},
        {"i.graphml",
         "<!DOCTYPE x [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><graphml>&e;</graphml>",
         "the document holds no <graph>"},
        {"j.txt", "", "its extension is none of .dg, .graphml, .gxl, .dot"},
    };
    test::TempFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ConsoleCapture console;
        DirectedGraph graph;
        graph.createVertex();
        EXPECT_FALSE(importGraph(folder.write(c.name, c.text), graph));
        EXPECT_NE(console.text().find(c.reason), std::string::npos) << console.text();
        EXPECT_EQ(graph.vertexCount(), 0u);
    }
    // Graphviz's parser starts afresh: after a broken file, and after a file of two graphs,
    // whose second it must not take for the next file.
    DirectedGraph graph;
    EXPECT_TRUE(importGraph(folder.write("two.dot", "digraph { a }\ndigraph { b c }\n"), graph));
    EXPECT_EQ(graph.vertexCount(), 1u);
    EXPECT_TRUE(importGraph(folder.write("ok.dot", "digraph { a -> b }"), graph));
    EXPECT_EQ(graph.edgeCount(), 1u);
}

TEST(Interchange, ExportRefusesWhatTheFormatCannotCarryAndKeepsTheOldFile) {
    test::TempFolder folder;
    // XML cannot carry control characters; a DOT string does not break lines.
    for (auto [name, text] : {std::pair{"x.graphml", "bell\a"},
                              {"x.gxl", "bell\a"},
                              {"x.dot", "two\nlines"},
                              {"y.dot", "say \\\"hi\\\""}}) {
        SCOPED_TRACE(name);
        DirectedGraph graph;
        graph.createVertex()->addAttribute(std::make_unique<StringAttribute>("s", text));
        const std::string file = folder.write(name, "old");
        ConsoleCapture console;
        EXPECT_FALSE(exportGraph(graph, file));
        EXPECT_NE(console.text().find("node 'n1': the attribute 's'"), std::string::npos)
            << console.text();
        std::ifstream in(file);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "old");
    }
}

}  // namespace
}  // namespace vellum
