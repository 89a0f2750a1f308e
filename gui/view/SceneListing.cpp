#include "gui/view/SceneListing.h"

#include <unordered_map>

#include "gui/view/ElementLook.h"

namespace vellum {

namespace {

void writeLabel(std::ostream& out, const std::string& label, double size) {
    if (!label.empty())
        out << "  label '" << label << "' size " << size << "\n";
}

void writeColour(std::ostream& out, const TPXrgb& colour) {
    out << " color " << colour.r << " " << colour.g << " " << colour.b << "\n";
}

}  // namespace

void writeSceneListing(std::ostream& out, DirectedGraph& graph, const GraphScene& scene) {
    std::unordered_map<std::uint64_t, std::size_t> position;
    std::size_t vertices = 0;
    for (DirectedGraphVertex& vertex : graph.vertices()) {
        position[vertex.serial()] = ++vertices;
        const TPXnode* object = scene.objectOf(vertex);
        if (!object)
            continue;
        const auto [nv, nf] = ShapeLibrary::counts(*object);
        const TPXp3& p = object->placement().position;
        out << "vertex " << vertices << " " << ShapeLibrary::geometryName(*object) << " " << nv
            << " " << nf << " at " << p.x() << " " << p.y() << " " << p.z();
        writeColour(out, readVertexLook(vertex).colour);
        writeLabel(out, vertex.label(), GraphScene::vertexLabelSize);
    }
    std::size_t edges = 0;
    for (const DirectedGraphEdge& edge : graph.edges()) {
        ++edges;
        const GraphEdgeObject* object = scene.objectOf(edge);
        if (!object)
            continue;
        const TPXp3& bend = object->bend();
        out << "edge " << edges << " " << position[edge.source()->serial()] << " -> "
            << position[edge.target()->serial()] << " bend " << bend.x() << " " << bend.y() << " "
            << bend.z();
        writeColour(out, readEdgeLook(edge).colour);
        writeLabel(out, edge.label(), GraphScene::edgeLabelSize);
    }
    out << scene.vertexCount() << " vertices, " << scene.edgeCount() << " edges\n";
}

}  // namespace vellum
