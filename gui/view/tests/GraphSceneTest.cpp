// Building a scene from a graph: the attributes a shown vertex gains, the objects made for
// vertices, edges and labels, bends of parallel edges, an unloadable model, marking and
// writing a moved object back.
#include <gtest/gtest.h>

#include <sstream>

#include "base/Console.h"
#include "graph/GraphReader.h"
#include "graph/VectorAttribute.h"
#include "gui/view/ElementLook.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneListing.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

struct Shown {
    std::unique_ptr<DirectedGraph> graph = std::make_unique<DirectedGraph>();
    GraphScene scene;
    std::string listing;
    std::string console;
};

void show(Shown& shown, const std::string& text) {
    test::TempFolder folder;
    const std::string file = folder.write("g.dg", text);
    ConsoleCapture capture;
    ASSERT_TRUE(loadGraph(file, *shown.graph)) << capture.text();
    shown.scene.build(*shown.graph);
    std::ostringstream out;
    writeSceneListing(out, *shown.graph, shown.scene);
    shown.listing = out.str();
    shown.console = capture.text();
}

std::vector<double> vectorOf(const GraphObject& object, const char* name) {
    const auto* attribute = dynamic_cast<const VectorAttribute*>(object.findAttribute(name));
    return attribute ? attribute->value() : std::vector<double>{};
}

TEST(GraphScene, BuildsObjectsAndAddsTheAttributesOfAShownVertex) {
    Shown shown;
    show(shown,
         "directed graph g {\n"
         "  vertex 1 { }\n"
         "  vertex 2 { label hub string representation = \"cube\""
         " vector position = (2 0 0) vector color = (1 1 0) }\n"
         "  vertex 3 { label x string representation = \"box\" }\n"
         "  edge 1 -> 2 { label e }\n"
         "  edge 2 -> 3 { vector color = (0 0 1) }\n"
         "}\n");
    EXPECT_EQ(shown.listing,
              "vertex 1 TPXgeometry_sphere 32 36 at 0 0 0 color 0 0.5 1\n"
              "vertex 2 TPXgeometry_cube 8 6 at 2 0 0 color 1 1 0\n"
              "  label 'hub' size 0.5\n"
              "vertex 3 TPXgeometry_sphere 32 36 at 0 0 0 color 0 0.5 1\n"
              "  label 'x' size 0.5\n"
              "edge 1 1 -> 2 bend 0 0 0 color 1 0 0\n"
              "  label 'e' size 0.4\n"
              "edge 2 2 -> 3 bend 0 0 0 color 0 0 1\n"
              "3 vertices, 2 edges\n");
    EXPECT_EQ(shown.console, "Could not load gometry 'box' !!!\n");
    const DirectedGraphVertex& first = *shown.graph->vertices().begin();
    EXPECT_EQ(vectorOf(first, "position"), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(vectorOf(first, "orientation"), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(vectorOf(first, "scale"), (std::vector<double>{1, 1, 1}));
    EXPECT_NE(first.findAttribute("representation"), nullptr);
    EXPECT_EQ(first.findAttribute("color"), nullptr);
    EXPECT_EQ(shown.scene.objectOf(first)->kind(), TPXkind::ModelObject);
    // An empty label makes no text object.
    EXPECT_EQ(shown.scene.objectOf(first)->firstChild(), nullptr);
    const DirectedGraphEdge& edge = *shown.graph->edges().begin();
    EXPECT_EQ(shown.scene.objectOf(edge)->kind(), TPXkind::EdgeObject);
    EXPECT_EQ(shown.scene.elementOf(shown.scene.objectOf(edge)->identity()), &edge);
}

TEST(GraphScene, ParallelEdgesBendApartAndOppositeOnesTheOtherWay) {
    Shown shown;
    show(shown,
         "directed graph g { vertex 1 { } vertex 2 { vector position = (2 0 0) }"
         " vertex 3 { }\n"
         "  edge 1 -> 2 edge 2 -> 1 edge 1 -> 3 edge 1 -> 3 edge 1 -> 3 }\n");
    // Two edges: a = |k| * 2pi / 2 with k = 1 and -2: the same vector, the second negated.
    // Three edges from 1 to 3 fan out a third of a turn apart.
    EXPECT_NE(shown.listing.find("edge 1 1 -> 2 bend 0 0 -0.5 "), std::string::npos)
        << shown.listing;
    EXPECT_NE(shown.listing.find("edge 2 2 -> 1 bend 0 0 -0.5 "), std::string::npos)
        << shown.listing;
    EXPECT_NE(shown.listing.find("edge 3 1 -> 3 bend 0 0.433013 -0.25 "), std::string::npos)
        << shown.listing;
    EXPECT_NE(shown.listing.find("edge 5 1 -> 3 bend 0 0 0.5 "), std::string::npos)
        << shown.listing;
    // Drawn, the two opposite edges of 1 and 2 curve to different sides.
    const auto edge = shown.graph->edges().begin();
    const GraphEdgeObject* there = shown.scene.objectOf(*edge);
    const GraphEdgeObject* back = shown.scene.objectOf(*std::next(edge));
    EXPECT_GT((there->pointAt(0.5) - back->pointAt(0.5)).length(), 0.9);
}

TEST(GraphScene, MarkingAndWritingBack) {
    Shown shown;
    show(shown, "directed graph g { vertex 1 { label a } vertex 2 { } edge 1 -> 2 }\n");
    DirectedGraphVertex& vertex = *shown.graph->vertices().begin();
    TPXnode* object = shown.scene.objectOf(vertex);
    EXPECT_TRUE(shown.scene.mark(object->identity(), "here"));
    EXPECT_NE(vertex.findAttribute("__mark__"), nullptr);
    EXPECT_FALSE(shown.scene.mark(9999, "nowhere"));

    object->setPosition({1, 2, 3});
    object->setScale({2, 2, 2});
    EXPECT_TRUE(shown.scene.writeBack(object->identity()));
    EXPECT_EQ(vectorOf(vertex, "position"), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(vectorOf(vertex, "scale"), (std::vector<double>{2, 2, 2}));
    // The edge followed its moved end: its middle is half way to vertex 2 at the origin.
    const GraphEdgeObject* edge = shown.scene.objectOf(*shown.graph->edges().begin());
    EXPECT_NEAR(edge->placement().position.y(), 1.0, 1e-9);
    EXPECT_FALSE(shown.scene.writeBack(edge->identity()));
}

TEST(GraphScene, AnUpdateOfSeveralStepsPlacesNewVerticesAmongNeighboursItAddsToo) {
    // One update catching up with two steps: the first placed its vertex at once, the second's
    // vertex hangs between it and a shown one, and must land between the two.
    Shown shown;
    show(shown, "directed graph g { vertex 1 { vector position = (0 0 0) } }\n");
    DirectedGraph& graph = *shown.graph;
    DirectedGraphVertex* old = &*graph.vertices().begin();
    DirectedGraphVertex* earlier = graph.createVertex();
    writePosition(*earlier, TPXp3(4, 0, 0));
    DirectedGraphVertex* newest = graph.createVertex();
    SceneChanges changes;
    changes.changed = {earlier, newest, graph.createEdge(newest, old),
                       graph.createEdge(newest, earlier)};
    shown.scene.update(changes);
    EXPECT_EQ(vectorOf(*newest, "position"), (std::vector<double>{2, 0, 0}));
    EXPECT_EQ(shown.scene.vertexPositions().size(), 3u);
}

}  // namespace
}  // namespace vellum
