// The graphs the scene and editor benchmarks measure: N vertices on a 3D grid and 2N edges
// between random ends (or grid neighbours), every element labelled, each vertex placed by its
// "position" attribute; and the small helpers both programs print their figures with.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/VectorAttribute.h"
#include "tpx/TPXp3.h"

namespace vellum::bench {

using Clock = std::chrono::steady_clock;

constexpr double kSpacing = 2.0;  // grid step between vertices, world units

inline double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Another process loading the machine shows in the figures; the first line says how busy it was.
inline void printLoadAverage() {
    std::string load;
    std::getline(std::ifstream("/proc/loadavg"), load);
    std::printf("load average at the start: %s\n", load.c_str());
}

// The graph under test with the vertices in creation order and the shown edges, so that steps
// can pick random elements in constant time.
struct TestGraph {
    DirectedGraph graph;
    std::vector<DirectedGraphVertex*> vertices;
    std::vector<DirectedGraphEdge*> edges;
};

inline TPXp3 gridPoint(std::size_t i, std::size_t side) {
    return TPXp3(static_cast<double>(i % side), static_cast<double>(i / side % side),
                 static_cast<double>(i / side / side)) *
           kSpacing;
}

// The vertex next to `i` on the grid along a random axis and direction (back when the grid ends).
inline std::size_t neighbour(std::size_t i, std::size_t side, std::size_t count,
                             std::mt19937& random) {
    const std::size_t steps[3] = {1, side, side * side};
    const std::size_t step = steps[random() % 3];
    const bool up = random() % 2 == 0;
    if ((up && i + step < count) || i < step)
        return std::min(i + step, count - 1);
    return i - step;
}

// Vertices "v0", "v1", ... on the grid, then edges "e0", "e1", ... from random vertices to
// random ones (`near`: to a grid neighbour).
inline void makeGraph(TestGraph& g, std::size_t vertexCount, std::mt19937& random, bool near) {
    const auto side = static_cast<std::size_t>(std::ceil(std::cbrt(double(vertexCount)) - 1e-9));
    for (std::size_t i = 0; i < vertexCount; ++i) {
        DirectedGraphVertex* v = g.graph.createVertex();
        v->setLabel("v" + std::to_string(i));
        const TPXp3 p = gridPoint(i, side);
        v->addAttribute(std::make_unique<VectorAttribute>(
            "position", std::vector<double>{p.x(), p.y(), p.z()}));
        g.vertices.push_back(v);
    }
    std::uniform_int_distribution<std::size_t> pick(0, vertexCount - 1);
    for (std::size_t i = 0; i < 2 * vertexCount; ++i) {
        const std::size_t from = pick(random);
        const std::size_t to = near ? neighbour(from, side, vertexCount, random) : pick(random);
        DirectedGraphEdge* e = g.graph.createEdge(g.vertices[from], g.vertices[to]);
        e->setLabel("e" + std::to_string(i));
        g.edges.push_back(e);
    }
}

}  // namespace vellum::bench
