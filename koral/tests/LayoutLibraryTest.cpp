#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <vector>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "koral/LayoutLibrary.h"
#include "koral/VertexPosition.h"

namespace vellum {
namespace {

using test::ScopedEnvironment;
using test::TempFolder;

double distance(const Position& a, const Position& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

std::vector<DirectedGraphVertex*> ring(DirectedGraph& graph, int size) {
    std::vector<DirectedGraphVertex*> vertices;
    for (int i = 0; i < size; ++i)
        vertices.push_back(graph.createVertex());
    for (int i = 0; i < size; ++i)
        graph.createEdge(vertices[i], vertices[(i + 1) % size]);
    return vertices;
}

// Every vertex's position; fails the test for a vertex without one or with two attributes of
// that name.
std::vector<Position> positions(const DirectedGraph& graph) {
    std::vector<Position> result;
    for (const auto& vertex : graph.vertices()) {
        int count = 0;
        for (const Attribute& attribute : vertex.attributes())
            count += attribute.name() == "position" ? 1 : 0;
        EXPECT_EQ(count, 1);
        const auto position = vertexPosition(vertex);
        EXPECT_TRUE(position.has_value());
        result.push_back(position.value_or(Position{NAN, NAN, NAN}));
    }
    return result;
}

double meanEdgeLength(const DirectedGraph& graph) {
    double sum = 0.0;
    for (const auto& edge : graph.edges())
        sum += distance(*vertexPosition(*edge.source()), *vertexPosition(*edge.target()));
    return sum / static_cast<double>(graph.edgeCount());
}

double meanPairDistance(const std::vector<Position>& points) {
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < points.size(); ++j, ++count)
            sum += distance(points[i], points[j]);
    }
    return sum / static_cast<double>(count);
}

class Layouts : public ::testing::Test {
  protected:
    ScopedEnvironment folder_{"VellumLayout", pluginDirectory() + "/"};
    ScopedEnvironment settings_{"VELLUM_FORCE3D", std::nullopt};
    ScopedEnvironment sphereSettings_{"VELLUM_SPHERE", std::nullopt};
};

TEST_F(Layouts, ListsTheLayoutFilesOfTheFolderByName) {
    EXPECT_EQ(LayoutLibrary::available(), (std::vector<std::string>{"force3d", "sphere"}));
    TempFolder other;
    for (const char* file :
         {"b.layout", "a.layout", "x.y.layout", "a.layout.old", "notes.txt", "dir.layout/inside"})
        other.write(file, "");
    ScopedEnvironment elsewhere("VellumLayout", other.path());
    EXPECT_EQ(LayoutLibrary::available(), (std::vector<std::string>{"a", "b", "x"}));
}

TEST_F(Layouts, SaysWhenALayoutCannotBeLoaded) {
    TempFolder other;
    const std::string broken = other.write("broken.layout", "not a library");
    ScopedEnvironment elsewhere("VellumLayout", other.path());
    const auto message = [](const std::string& name) {
        return test::libraryError([&] { LayoutLibrary layout(name); });
    };
    EXPECT_EQ(message("sphere"), "Could not load the library 'sphere.layout' !!!");
    EXPECT_EQ(message("broken"), "Could not load the library '" + broken + "' !!!");
}

TEST_F(Layouts, SpherePlacesEveryVertexOnOneSphereWhateverItHadBefore) {
    const LayoutLibrary sphere("sphere");
    EXPECT_FALSE(sphere.description().empty());
    DirectedGraph graph;
    ring(graph, 40);
    auto vertex = graph.vertices().begin();
    vertex->addAttribute(std::make_unique<StringAttribute>("position", "\"up\""));
    (++vertex)->addAttribute(std::make_unique<VectorAttribute>("position", std::vector{1.0}));
    vertex->addAttribute(std::make_unique<StringAttribute>("name", "\"second\""));

    ASSERT_TRUE(sphere.completeLayout(graph, nullptr));
    const std::vector<Position> first = positions(graph);
    // The vector kept its place before "name"; the string was replaced by a vector.
    EXPECT_EQ(vertex->attributes().begin()->name(), "position");
    const double radius = distance(first[0], {0, 0, 0});
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_NEAR(distance(first[i], {0, 0, 0}), radius, 1e-9);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_GT(distance(first[i], first[j]), 0.5);
    }
    setVertexPosition(*graph.vertices().begin(), {5, 5, 5});
    ASSERT_TRUE(sphere.completeLayout(graph, nullptr));
    EXPECT_EQ(positions(graph), first);
}

TEST_F(Layouts, Force3dKeepsEdgesShortAndIsReproducible) {
    const LayoutLibrary force("force3d");
    DirectedGraph graph;
    ring(graph, 120);
    ASSERT_TRUE(force.completeLayout(graph, nullptr));
    const std::vector<Position> first = positions(graph);
    const double edge = meanEdgeLength(graph);
    EXPECT_GT(edge, 0.5);
    EXPECT_LT(edge, 4.0);  // the default edge length is 2
    // A ring laid out well is a loop, not a ball: neighbours are much closer than the rest.
    EXPECT_LT(edge * 5, meanPairDistance(first));

    DirectedGraph again;
    ring(again, 120);
    ASSERT_TRUE(force.completeLayout(again, nullptr));
    EXPECT_EQ(positions(again), first);
}

TEST_F(Layouts, Force3dPlacesNewVerticesNearTheirNeighboursAndKeepsTheOthers) {
    const LayoutLibrary force("force3d");
    DirectedGraph graph;
    const auto vertices = ring(graph, 200);
    ASSERT_TRUE(force.completeLayout(graph, nullptr));
    const std::vector<Position> before = positions(graph);

    // A rewriting step: two new vertices hang off the ring, one more stands alone, and the
    // graph view has already given one of them the origin.
    auto* leaf = graph.createVertex();
    graph.createEdge(vertices[10], leaf);
    auto* other = graph.createVertex();
    graph.createEdge(other, vertices[100]);
    setVertexPosition(*other, {0, 0, 0});
    graph.createVertex();
    ASSERT_TRUE(force.completeLayout(graph, nullptr));
    const std::vector<Position> after = positions(graph);

    // Only the new vertices' neighbours move, and by less than half an edge (length 2).
    for (std::size_t i = 0; i < before.size(); ++i) {
        const bool neighbour = i == 10 || i == 100;
        EXPECT_LT(distance(before[i], after[i]), neighbour ? 1.0 : 1e-12) << i;
    }
    EXPECT_LT(distance(after[200], after[10]), 2 * 2.0);
    EXPECT_LT(distance(after[201], after[100]), 2 * 2.0);
    for (double c : after[202])
        EXPECT_TRUE(std::isfinite(c));
}

TEST_F(Layouts, Force3dRefusesBadSettingsAndReportsProgress) {
    const LayoutLibrary force("force3d");
    DirectedGraph graph;
    ring(graph, 300);
    {
        ScopedEnvironment bad("VELLUM_FORCE3D", "length=2 bogus=1");
        ConsoleCapture capture;
        EXPECT_FALSE(force.completeLayout(graph, nullptr));
        EXPECT_EQ(capture.text(), "force3d: bad setting 'bogus=1' in VELLUM_FORCE3D\n");
    }
    struct Recorder : KoralFrame {
        void notify(const FrameEvent& event) override {
            const auto* shown = std::get_if<StepIntermediate>(&event);
            graphs.push_back(shown == nullptr ? nullptr : &shown->graph);
        }
        std::vector<const DirectedGraph*> graphs;
    } frame;
    ScopedEnvironment full("VELLUM_FORCE3D", "mode=full, iterations=20");
    ASSERT_TRUE(force.completeLayout(graph, &frame));
    EXPECT_EQ(frame.graphs, (std::vector<const DirectedGraph*>{&graph, &graph}));
}

// Without a toolkit (this program has none) lyConfigure writes the settings on the console; the
// desktop program's dialogs are tested with the GUI.
TEST_F(Layouts, ConfigureWithoutAToolkitWritesTheSettingsOfTheVariable) {
    struct Row {
        const char* layout;
        const char* variable;
        const char* value;
        const char* console;
    };
    const Row rows[] = {
        {"sphere", "VELLUM_SPHERE", "",
         "sphere: spacing=2 radius=2 (set VELLUM_SPHERE to change)\n"},
        {"sphere", "VELLUM_SPHERE", "radius=5.0, spacing=1",
         "sphere: spacing=1 radius=5 (set VELLUM_SPHERE to change)\n"},
        {"sphere", "VELLUM_SPHERE", "radius=-1",
         "sphere: bad setting 'radius=-1' in VELLUM_SPHERE\n"},
        {"force3d", "VELLUM_FORCE3D", "mode=full;length=3",
         "force3d: mode=full length=3 iterations=25 steps=30 theta=1.2 seed=1 (set VELLUM_FORCE3D "
         "to change)\n"},
    };
    for (const Row& row : rows) {
        ScopedEnvironment value(row.variable, row.value);
        ConsoleCapture capture;
        LayoutLibrary(row.layout).configure();
        EXPECT_EQ(capture.text(), row.console) << row.value;
    }
}

TEST_F(Layouts, SphereTakesItsRadiusFromItsVariableAndRefusesABadOne) {
    const LayoutLibrary sphere("sphere");
    DirectedGraph graph;
    ring(graph, 3);
    {
        ScopedEnvironment value("VELLUM_SPHERE", "radius=5.0, spacing=1");
        ASSERT_TRUE(sphere.completeLayout(graph, nullptr));
        for (const Position& p : positions(graph))
            EXPECT_NEAR(distance(p, {0, 0, 0}), 5.0, 1e-9);
    }
    ScopedEnvironment bad("VELLUM_SPHERE", "spacing=0");
    ConsoleCapture capture;
    EXPECT_FALSE(sphere.completeLayout(graph, nullptr));
    EXPECT_EQ(capture.text(), "sphere: bad setting 'spacing=0' in VELLUM_SPHERE\n");
}

TEST_F(Layouts, EmptyGraphsNeedNothing) {
    for (const char* name : {"sphere", "force3d"}) {
        DirectedGraph graph;
        EXPECT_TRUE(LayoutLibrary(name).completeLayout(graph, nullptr)) << name;
    }
}

}  // namespace
}  // namespace vellum
