#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "base/Console.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
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

TEST(GraphWriter, WritesTheExactLayout) {
    DirectedGraph graph;
    DirectedGraphVertex* a = graph.createVertex();
    DirectedGraphVertex* b = graph.createVertex();
    a->setLabel("hub");
    a->addAttribute(std::make_unique<IntegerAttribute>("n", -3));
    a->addAttribute(std::make_unique<IntegerAttribute>("__NR__", 9));
    a->addAttribute(std::make_unique<RealAttribute>("big", 1000000));
    a->addAttribute(std::make_unique<RealAttribute>("tiny", -0.0000125));
    a->addAttribute(std::make_unique<RealAttribute>("r", 0.1 + 0.2));
    a->addAttribute(std::make_unique<BooleanAttribute>("f", false));
    a->addAttribute(std::make_unique<StringAttribute>("s", "x \\\" y"));
    a->addAttribute(std::make_unique<VectorAttribute>("v", std::vector<double>{1, -2.5, 3}));
    graph.createEdge(a, b);
    graph.createEdge(b, a)->setLabel("back");
    graph.createEdge(b, b)->addAttribute(std::make_unique<IntegerAttribute>("__link__", 1));
    EXPECT_EQ(textOf(graph),
              "directed graph\n{\n"
              "\n\tvertex 1 {\n"
              "\t\tlabel hub\n"
              "\t\tinteger n = -3\n"
              // Plain decimal where the default format would use an exponent.
              "\t\treal big = 1000000\n"
              "\t\treal tiny = -0.0000125\n"
              "\t\treal r = 0.3\n"
              "\t\tboolean f = false\n"
              "\t\tstring s = \"x \\\" y\"\n"
              "\t\tvector v = (1 -2.5 3)\n"
              "\t}\n"
              "\n\tvertex 2 {\n\t}\n"
              "\n\tedge 1 -> 2\n"
              "\n\tedge 2 -> 1\n\t{\n\t\tlabel back\n\t}\n"
              // An internal attribute is not written but still opens the block.
              "\n\tedge 2 -> 2\n\t{\n\t}\n"
              "}\n");
}

TEST(GraphWriter, UsesTheDefaultFormatWhateverTheStreamSays) {
    DirectedGraph graph;
    graph.createVertex()->addAttribute(std::make_unique<RealAttribute>("r", 2.0));
    std::ostringstream out;
    out << std::fixed << std::setprecision(2) << std::hex;
    GraphWriter(out).write(graph);
    EXPECT_NE(out.str().find("real r = 2\n"), std::string::npos) << out.str();
    EXPECT_TRUE(out.flags() & std::ios_base::fixed) << "the caller's format comes back";
}

// Structure, labels and attributes compared by list positions.
::testing::AssertionResult sameGraph(const DirectedGraph& x, const DirectedGraph& y) {
    if (x.vertexCount() != y.vertexCount() || x.edgeCount() != y.edgeCount())
        return ::testing::AssertionFailure() << "counts differ";
    std::map<const DirectedGraphVertex*, int> px, py;
    auto sameObject = [](const GraphObject& a, const GraphObject& b) {
        if (a.label() != b.label() || a.attributeCount() != b.attributeCount())
            return false;
        auto ia = a.attributes().begin();
        for (const Attribute& attribute : b.attributes()) {
            if (ia->name() != attribute.name() || !ia->equals(attribute))
                return false;
            ++ia;
        }
        return true;
    };
    auto vy = y.vertices().begin();
    for (const DirectedGraphVertex& v : x.vertices()) {
        if (!sameObject(v, *vy))
            return ::testing::AssertionFailure() << "vertex " << px.size() << " differs";
        py[&*vy] = static_cast<int>(px.size());
        px[&v] = static_cast<int>(px.size());
        ++vy;
    }
    auto ey = y.edges().begin();
    for (const DirectedGraphEdge& e : x.edges()) {
        if (!sameObject(e, *ey) || px[e.source()] != py[ey->source()] ||
            px[e.target()] != py[ey->target()])
            return ::testing::AssertionFailure() << "an edge differs";
        ++ey;
    }
    return ::testing::AssertionSuccess();
}

TEST(GraphWriter, RoundTripPreservesStructureLabelsAndAttributes) {
    TempFolder folder;
    const std::string original =
        folder.write("in.dg",
                     "directed graph g { vertex 10 { label a integer i = 2147483647 real r = -0.25 "
                     "boolean t = true string s = \"C:\\\\dir\\\\\" string q = \"say \\\"hi\\\"\" "
                     "vector v = ( 0.5 100 ) } vertex 20 { label b } vertex 30 "
                     "edge 30 -> 10 { label x real w = 123456 } edge 10 -> 10 edge 10 -> 20 "
                     "edge 10 -> 20 { boolean parallel = false } }");
    auto first = loadGraph(original);
    ASSERT_NE(first, nullptr);
    const std::string copy = folder.path("copy.dg");
    ASSERT_TRUE(saveGraph(*first, copy));
    auto second = loadGraph(copy);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(graphIsConsistent(*second));
    EXPECT_TRUE(sameGraph(*first, *second));
    EXPECT_EQ(TempFolder::read(copy), textOf(*second)) << "a second save gives the same text";
    EXPECT_NE(TempFolder::read(copy).find("string s = \"C:\\\\dir\\\\\"\n"), std::string::npos);
}

TEST(GraphWriter, FailureLeavesTheTargetAndNoTemporaryFile) {
    TempFolder folder;
    DirectedGraph graph;
    graph.createVertex();
    ConsoleCapture capture;
    const std::string missingFolder = folder.path("missing/out.dg");
    EXPECT_FALSE(saveGraph(graph, missingFolder));
    EXPECT_EQ(capture.text(), "Could not write the file '" + missingFolder + "' !!!\n");
    // A target that cannot be replaced (a folder): the rename fails after all was written.
    const std::string blocked = folder.path("blocked.dg");
    std::filesystem::create_directory(blocked);
    folder.write("blocked.dg/keep", "kept");
    EXPECT_FALSE(saveGraph(graph, blocked));
    EXPECT_EQ(TempFolder::read(folder.path("blocked.dg/keep")), "kept");
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.root())) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(files, 1) << "the temporary file was removed";
    // Replacing an existing file works, and an existing file takes the new text.
    const std::string target = folder.write("old.dg", "old text");
    EXPECT_TRUE(saveGraph(graph, target));
    EXPECT_EQ(TempFolder::read(target), textOf(graph));
}

}  // namespace
}  // namespace vellum
