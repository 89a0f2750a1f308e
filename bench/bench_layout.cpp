// bench_layout [VERTICES [EDGES]]: the force3d layout on a random graph of 10,000 vertices and
// 20,000 edges, loaded through the real layout loader: the time of a full layout, then of the
// incremental pass after a small rewriting-like step (3 vertices removed, 5 vertices and 10 edges
// added), with how far the old vertices moved. Prints the figures; run it from the build tree
// (bin/bench_layout).
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <unordered_map>
#include <utility>
#include <vector>

#include "graph/DirectedGraph.h"
#include "koral/BundledDefaults.h"
#include "koral/KoralException.h"
#include "koral/LayoutLibrary.h"
#include "koral/VertexPosition.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void randomGraph(vellum::DirectedGraph& graph, long vertices, long edges, std::mt19937& random) {
    std::vector<vellum::DirectedGraphVertex*> all;
    for (long i = 0; i < vertices; ++i)
        all.push_back(graph.createVertex());
    std::uniform_int_distribution<std::size_t> pick(0, all.size() - 1);
    for (long i = 0; i < edges; ++i)
        graph.createEdge(all[pick(random)], all[pick(random)]);
}

using Positions = std::unordered_map<const vellum::DirectedGraphVertex*, vellum::Position>;

// What a rule application might do: a few vertices gone, and new vertices joined to a spot of
// the graph (each to an old vertex and to one of that vertex's neighbours), as a rule's
// right-hand side joins its new vertices to the occurrence.
void smallStep(vellum::DirectedGraph& graph, std::mt19937& random, Positions& before) {
    std::vector<vellum::DirectedGraphVertex*> old;
    for (auto& vertex : graph.vertices())
        old.push_back(&vertex);
    std::uniform_int_distribution<std::size_t> pick(0, old.size() - 1);
    for (int removed = 0; removed < 3;) {
        auto*& victim = old[pick(random)];
        // A new vertex may be given a removed one's address: forget where that one was.
        if (victim != nullptr && before.erase(victim) && graph.removeVertex(victim)) {
            victim = nullptr;
            ++removed;
        }
    }
    for (int added = 0; added < 5;) {
        vellum::DirectedGraphVertex* spot = old[pick(random)];
        if (spot == nullptr || spot->outDegree() == 0)
            continue;
        auto* vertex = graph.createVertex();
        graph.createEdge(spot, vertex);
        graph.createEdge(vertex, spot->outgoing().begin()->target());
        ++added;
    }
}

Positions positionsOf(const vellum::DirectedGraph& graph) {
    Positions positions;
    for (const auto& vertex : graph.vertices()) {
        if (const auto position = vellum::vertexPosition(vertex))
            positions.emplace(&vertex, *position);
    }
    return positions;
}

// How many of the vertices that stayed moved, and the largest distance one moved.
std::pair<std::size_t, double> shifts(const Positions& before, const vellum::DirectedGraph& graph) {
    std::size_t moved = 0;
    double largest = 0.0;
    for (const auto& vertex : graph.vertices()) {
        const auto old = before.find(&vertex);
        const auto now = vellum::vertexPosition(vertex);
        if (old == before.end() || !now)
            continue;
        const double d = std::hypot((*now)[0] - old->second[0], (*now)[1] - old->second[1],
                                    (*now)[2] - old->second[2]);
        moved += d > 0.0 ? 1 : 0;
        largest = std::max(largest, d);
    }
    return {moved, largest};
}

}  // namespace

int main(int argc, char** argv) {
    const long vertices = argc > 1 ? std::atol(argv[1]) : 10000;
    const long edges = argc > 2 ? std::atol(argv[2]) : 2 * vertices;
    if (vertices <= 0 || edges < 0) {
        std::fprintf(stderr, "usage: bench_layout [VERTICES [EDGES]]\n");
        return 2;
    }
    vellum::applyBundledDefaults();
    try {
        const vellum::LayoutLibrary force("force3d");
        std::mt19937 random(11);
        vellum::DirectedGraph graph;
        randomGraph(graph, vertices, edges, random);

        auto start = Clock::now();
        const bool full = force.completeLayout(graph, nullptr);
        const double fullTime = millisecondsSince(start);

        Positions before = positionsOf(graph);
        smallStep(graph, random, before);
        start = Clock::now();
        const bool incremental = force.completeLayout(graph, nullptr);
        const double incrementalTime = millisecondsSince(start);
        const auto [moved, largest] = shifts(before, graph);

        std::printf("force3d full layout, %ld vertices, %ld edges: %.1f ms%s\n", vertices, edges,
                    fullTime, full ? "" : " (failed)");
        std::printf(
            "force3d incremental pass after -3 vertices, +5 vertices, +10 edges: %.2f ms%s\n",
            incrementalTime, incremental ? "" : " (failed)");
        std::printf("  old vertices moved: %zu, the farthest by %.3f (edge length setting 2)\n",
                    moved, largest);
        return full && incremental ? 0 : 1;
    } catch (const vellum::koralException& error) {
        std::fprintf(stderr, "bench_layout: %s\n", error.what());
        return 1;
    }
}
