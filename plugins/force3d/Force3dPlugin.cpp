// force3d.layout: a 3D force-directed layout (springs on edges, Barnes-Hut repulsion, multilevel)
// that also works incrementally: when nearly every vertex has a position already, as after a
// rewriting step of a live run, only the vertices without one and their neighbours move.
// A vertex at exactly (0, 0, 0) counts as having none: that is where the graph view puts a vertex
// it shows before any layout (so does one whose position is not finite). Settings come from
// VELLUM_FORCE3D (see ForceSettings.h), which lyConfigure edits in a dialog.
#include <cmath>
#include <exception>
#include <unordered_map>
#include <vector>

#include "base/Console.h"
#include "koral/PluginApi.h"
#include "koral/VertexPosition.h"
#include "plugins/force3d/ForceLayout.h"
#include "plugins/force3d/IncrementalLayout.h"

namespace {

using vellum::DirectedGraph;
using vellum::DirectedGraphVertex;
using vellum::KoralFrame;
using namespace vellum::force3d;

constexpr std::size_t kSmallChange = 4;  // this many newcomers are always placed incrementally

// The graph's vertices numbered in list order, its edges between them, and what positions the
// vertices have.
struct Snapshot {
    std::vector<DirectedGraphVertex*> vertices;
    LayoutGraph graph;
    std::vector<Vec3> positions;
    std::vector<bool> placed;
    std::size_t placedCount = 0;
};

bool isPlaced(const vellum::Position& p) {
    const bool finite = std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
    return finite && (p[0] != 0.0 || p[1] != 0.0 || p[2] != 0.0);
}

Snapshot snapshot(DirectedGraph& graph) {
    Snapshot s;
    std::unordered_map<const DirectedGraphVertex*, int> number;
    number.reserve(graph.vertexCount());
    for (auto& vertex : graph.vertices()) {
        number.emplace(&vertex, static_cast<int>(s.vertices.size()));
        s.vertices.push_back(&vertex);
        const auto position = vellum::vertexPosition(vertex);
        const bool placed = position && isPlaced(*position);
        s.positions.push_back(placed ? Vec3{(*position)[0], (*position)[1], (*position)[2]}
                                     : Vec3{});
        s.placed.push_back(placed);
        s.placedCount += placed ? 1 : 0;
    }
    std::vector<std::pair<int, int>> edges;
    edges.reserve(graph.edgeCount());
    for (const auto& edge : graph.edges()) {
        const auto source = number.find(edge.source());
        const auto target = number.find(edge.target());
        if (source != number.end() && target != number.end())
            edges.emplace_back(source->second, target->second);
    }
    s.graph = LayoutGraph(static_cast<int>(s.vertices.size()), edges);
    return s;
}

// Incremental work pays when at most a tenth of the vertices (or a handful) are new and the
// placed ones are spread out, not all piled on one point.
bool suitsIncremental(const Snapshot& s) {
    const std::size_t newcomers = s.vertices.size() - s.placedCount;
    if (s.placedCount == 0 || (newcomers > kSmallChange && newcomers * 10 > s.vertices.size()))
        return false;
    const Vec3* first = nullptr;
    for (std::size_t v = 0; v < s.positions.size(); ++v) {
        if (!s.placed[v])
            continue;
        if (first == nullptr)
            first = &s.positions[v];
        else if ((s.positions[v] - *first).lengthSquared() > 0.0)
            return true;
    }
    return s.placedCount == 1;
}

void write(const Snapshot& s, const std::vector<Vec3>& positions, int v) {
    const Vec3& p = positions[v];
    // The origin means "no position yet": a vertex laid out exactly there is nudged off it.
    const bool origin = p.x == 0.0 && p.y == 0.0 && p.z == 0.0;
    vellum::setVertexPosition(*s.vertices[v], {p.x, p.y, origin ? 1e-9 : p.z});
}

int layout(DirectedGraph& graph, KoralFrame* notifier, const ForceSettings& settings) {
    const Snapshot s = snapshot(graph);
    if (settings.mode == LayoutMode::Automatic && suitsIncremental(s)) {
        std::vector<Vec3> positions = s.positions;
        for (int v : IncrementalLayout(settings).update(s.graph, positions, s.placed))
            write(s, positions, v);
        return 1;
    }
    ForceLayout::Progress progress;
    if (notifier != nullptr) {
        progress = [&](const std::vector<Vec3>& positions) {
            for (int v = 0; v < s.graph.size(); ++v)
                write(s, positions, v);
            notifier->notify(KoralFrame::kIntermediate, &graph, 0, 0, 0);
        };
    }
    const std::vector<Vec3> positions = ForceLayout(settings).layout(s.graph, progress);
    for (int v = 0; v < s.graph.size(); ++v)
        write(s, positions, v);
    return 1;
}

}  // namespace

const char* lyDescription() {
    return "Force-directed 3D layout (Barnes-Hut, multilevel); incremental after small changes";
}

// The settings dialog in the desktop program, the settings on the console elsewhere.
void lyConfigure() {
    ForceSettings::variable().configure();
}

int lyCompleteLayout(vellum::DirectedGraph* graph, vellum::KoralFrame* notifier) {
    if (graph == nullptr)
        return 0;
    const auto values = ForceSettings::variable().readOrReport();
    if (!values)
        return 0;
    try {
        return layout(*graph, notifier, ForceSettings::from(*values));
    } catch (const std::exception& error) {
        // Nothing may escape into the program; what was written so far stays.
        vellum::console() << "force3d: layout failed: " << error.what() << "\n";
        return 0;
    }
}
