// The graph reader on malformed files reports the exact position and excerpt
// that users see, and a complete file passes every action of the grammar in
// order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/Console.h"
#include "graph/GraphReader.h"
#include "tests/support/TempFile.h"

namespace vellum::testing {
namespace {

struct MalformedFile {
    const char* what;
    const char* content;
    const char* report;  // the console text, "NAME" standing for the file name
};

const MalformedFile kMalformedFiles[] = {
    {"identifier that begins with a keyword",
     "directed graph my_graph \n\t{  vertex 66\n  {\tlabel\n  edgecount  "
     "vector\tcount =  (\n1\n"
     "  -2 )  } edge 66\n-> \n\t66 \n\t{  } \n\t}\n",
     "File 'NAME' contains errors near position 55 in line 1\n"
     "Dump '  edgecount  vector\\tco' !!!\n"},
    {"file ends inside a vector",
     "directed graph my_graph { vertex 1 vertex 2 { label a string pos = "
     "\"%no\" boolean dx = "
     "true } vertex 3 { label X_1 integer y = 967 } vertex 4 edge 1 -> 4 edge "
     "4 -> 4 { label a "
     "vector count\n",
     "File 'NAME' contains errors near position 188 in line 1\nDump 'count\\n' "
     "!!!\n"},
    {"comment where a literal is expected",
     "directed graph host % note\n {\r\nvertex\r\n\t1 edge 1 "
     "->\r\n\t1\r\nedge\r\n\t1\r\n"
     "\t-> 1 edge 1\r\n-> 1 }",
     "File 'NAME' contains errors near position 20 in line 1\n"
     "Dump ' host % note\\n {\\r\\nverte' !!!\n"},
    {"comment holding a byte above 127",
     "directed graph g % caf\xe9 }\n {\n\tvertex\n1 vertex 2\n\tvertex\n\t3 "
     "{\nlabel A }\n"
     "vertex 4\n}\n",
     "File 'NAME' contains errors near position 17 in line 1\n"
     "Dump 'aph g % caf\xe9 }\\n {\\n\\tver' !!!\n"},
    {"edge to a vertex that does not exist",
     "% test file\n directed graph g { vertex 63 { label "
     "b\r\n\tinteger\r\nw\r\n\t=\r\n\t-82 } "
     "vertex\r\n\t53 {\r\nboolean x = true }\r\n\tedge 53 "
     "->\r\n63\r\n\tedge\r\n\t53 -> "
     "98\r\n\t}\n",
     "Vertex with number '98' not found!!!\n"
     "File 'NAME' contains errors near position -1 in line 1\nDump '' !!!\n"},
    {"vector without numbers",
     "directed graph { vertex\n1 { label b string Size\n= \"x_y\"\n\tinteger "
     "tag =\n78 vector\nv\n"
     "= ( ) } vertex 2\n\t{ label hub string x\n\t=\n\t\"{x}\"\n}\n\tedge\n\t1 "
     "->\n1\n}\n",
     "File 'NAME' contains errors near position 87 in line 1\n"
     "Dump 'v\\n= ( ) } vertex 2\\n\\t{ ' !!!\n"},
    {"string left open runs to the next quote",
     "directed graph\n\t{\n\tvertex 1 {\n\tlabel hub\nstring tag\n\t=\n\"a "
     "b\n\tstring\n"
     "k_2 = \"hello\" vector w\n\t=\n(\n0.5\n3.25 ) } vertex\n\t2\n}\r\n",
     "File 'NAME' contains errors near position 75 in line 1\n"
     "Dump '_2 = \"hello\" vector w\\n' !!!\n"},
    {"number with a plus sign",
     "directed graph {\nvertex\n\t20\nvertex 27\n{ vector tag =\n\t( "
     "1\n\t)\n\t} vertex 31 { } "
     "vertex 12\n{ label b string\nmass\n=\n\"Node 7\"\n\tboolean mass "
     "=\nfalse }\n\tedge\n31\n"
     "->\n\t31 edge\n\t20 -> 20\nedge +3 -> 12\nedge 27 ->\n\t31 edge\n\t27 -> "
     "12\n}\r\n",
     "File 'NAME' contains errors near position 181 in line 1\n"
     "Dump '\\nedge +3 -> 12\\nedge 27' !!!\n"},
    {"a keyword with nothing after it stops after the keyword", "directed graph { vertex {",
     "File 'NAME' contains errors near position 24 in line 1\nDump 'ertex {' "
     "!!!\n"},
};

// The reader, noting every action number it is called with.
class RecordingReader : public GraphReader {
  public:
    int onAction(int number) override {
        actions.push_back(number);
        return GraphReader::onAction(number);
    }
    std::vector<int> actions;
};

std::string withName(std::string report, const std::string& name) {
    return report.replace(report.find("NAME"), 4, name);
}

TEST(GraphFileSyntax, MalformedFilesReportPositionAndExcerpt) {
    for (const MalformedFile& row : kMalformedFiles) {
        test::TempFile file(row.content);
        GraphReader reader;
        DirectedGraph graph;
        ConsoleCapture capture;
        EXPECT_FALSE(reader.read(file.path(), graph)) << row.what;
        EXPECT_EQ(capture.text(), withName(row.report, file.path())) << row.what;
    }
}

TEST(GraphFileSyntax, EveryConstructCallsItsActionsInOrderAndLaterTextIsIgnored) {
    RecordingReader reader;
    const char* text =
        "% a comment before everything\n"
        "directed graph g {\n"
        "  vertex 1 { label A integer n = -3 real r = 2.5 string "
        "s = \"a\\\"b\" boolean b = true\n"
        "             vector v = (1 2.5 -3) }\n"
        "  vertex 2 % a comment between tokens\n"
        "  edge 1 -> 2 { label e }\n"
        "}\n"
        "directed graph second { this is not read";
    test::TempFile file(text);
    DirectedGraph graph;
    ASSERT_TRUE(reader.read(file.path(), graph));
    EXPECT_EQ(reader.actions,
              (std::vector<int>{0, 1, 2, 11, 4, 5, 6, 3, 7, 8, 8, 8, 9, 2, 10, 11}));
    EXPECT_EQ(graph.vertexCount(), 2u);
    EXPECT_EQ(graph.edgeCount(), 1u);
}

}  // namespace
}  // namespace vellum::testing
