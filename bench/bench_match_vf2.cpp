// bench_match_vf2 [VERTICES [PATTERNS]]: enumerates every occurrence of small patterns (3, 4
// and 5 vertices, taken as connected pieces of the host so that each occurs at least once) in a
// random labelled directed graph (2,000 vertices, average degree 4, 4 labels, no loops or
// parallel edges), once with Vellum's matcher (the full ordered list of occurrences) and once
// with Boost's VF2 subgraph monomorphism (counting them), checks that both find as many, and
// prints the times and the ratio VF2 time / Vellum time per pattern size.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/vf2_sub_graph_iso.hpp>

#include "graph/DirectedGraph.h"
#include "graph/Matcher.h"

namespace {

using Clock = std::chrono::steady_clock;
using BoostGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::bidirectionalS,
                                         boost::property<boost::vertex_name_t, int>>;

const char* const kLabels[] = {"A", "B", "C", "D"};
constexpr int kLabelCount = 4;
constexpr int kRepetitions = 3;

// A graph given as labels and an edge list, built both ways.
struct Shape {
    std::vector<int> labels;
    std::vector<std::pair<int, int>> edges;
};

Shape randomHost(int vertices, int edges, std::mt19937& random) {
    Shape host;
    std::uniform_int_distribution<int> label(0, kLabelCount - 1);
    std::uniform_int_distribution<int> vertex(0, vertices - 1);
    for (int i = 0; i < vertices; ++i)
        host.labels.push_back(label(random));
    std::set<std::pair<int, int>> seen;
    while (static_cast<int>(host.edges.size()) < edges) {
        const std::pair<int, int> edge{vertex(random), vertex(random)};
        if (edge.first != edge.second && seen.insert(edge).second)
            host.edges.push_back(edge);
    }
    return host;
}

// A connected piece of the host: grown from a random vertex along random edges, with the
// edges among the chosen vertices, each kept with probability 3/4 as long as it stays connected
// (a spanning tree is always kept).
Shape randomPattern(const Shape& host, int size, std::mt19937& random) {
    std::vector<std::vector<int>> around(host.labels.size());
    for (const auto& [s, t] : host.edges) {
        around[static_cast<std::size_t>(s)].push_back(t);
        around[static_cast<std::size_t>(t)].push_back(s);
    }
    for (;;) {
        std::vector<int> chosen{std::uniform_int_distribution<int>(
            0, static_cast<int>(host.labels.size()) - 1)(random)};
        for (int attempt = 0; attempt < 100 && static_cast<int>(chosen.size()) < size; ++attempt) {
            const int from = chosen[random() % chosen.size()];
            const auto& next = around[static_cast<std::size_t>(from)];
            if (next.empty())
                break;
            const int to = next[random() % next.size()];
            if (std::find(chosen.begin(), chosen.end(), to) == chosen.end())
                chosen.push_back(to);
        }
        if (static_cast<int>(chosen.size()) != size)
            continue;
        Shape pattern;
        auto indexOf = [&](int v) {
            return static_cast<int>(std::find(chosen.begin(), chosen.end(), v) - chosen.begin());
        };
        for (int v : chosen)
            pattern.labels.push_back(host.labels[static_cast<std::size_t>(v)]);
        std::vector<int> component(chosen.size());
        for (std::size_t i = 0; i < component.size(); ++i)
            component[i] = static_cast<int>(i);
        std::vector<std::pair<int, int>> extra;
        for (const auto& [s, t] : host.edges) {
            const int a = indexOf(s);
            const int b = indexOf(t);
            if (a == size || b == size)
                continue;
            // The edges that join two parts form a spanning tree; the others are optional.
            const int ca = component[static_cast<std::size_t>(a)];
            const int cb = component[static_cast<std::size_t>(b)];
            if (ca != cb) {
                for (int& c : component)
                    c = c == cb ? ca : c;
                pattern.edges.emplace_back(a, b);
            } else {
                extra.emplace_back(a, b);
            }
        }
        for (const auto& edge : extra) {
            if (random() % 4 != 0)
                pattern.edges.push_back(edge);
        }
        return pattern;
    }
}

void build(const Shape& shape, vellum::DirectedGraph& graph) {
    std::vector<vellum::DirectedGraphVertex*> vertices;
    for (int label : shape.labels) {
        vertices.push_back(graph.createVertex());
        vertices.back()->setLabel(kLabels[label]);
    }
    for (const auto& [s, t] : shape.edges)
        graph.createEdge(vertices[static_cast<std::size_t>(s)],
                         vertices[static_cast<std::size_t>(t)]);
}

BoostGraph build(const Shape& shape) {
    BoostGraph graph(shape.labels.size());
    for (std::size_t i = 0; i < shape.labels.size(); ++i)
        boost::put(boost::vertex_name, graph, i, shape.labels[i]);
    for (const auto& [s, t] : shape.edges)
        boost::add_edge(static_cast<std::size_t>(s), static_cast<std::size_t>(t), graph);
    return graph;
}

struct CountingCallback {
    long* count;
    template <typename Map1, typename Map2>
    bool operator()(const Map1&, const Map2&) const {
        ++*count;
        return true;
    }
};

template <typename Work>
double fastest(Work work) {
    double best = 1e100;
    for (int i = 0; i < kRepetitions; ++i) {
        const auto start = Clock::now();
        work();
        best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    const int vertexCount = argc > 1 ? std::atoi(argv[1]) : 2000;
    const int patternsPerSize = argc > 2 ? std::atoi(argv[2]) : 30;
    if (vertexCount < 5 || patternsPerSize < 1) {
        std::fprintf(stderr, "usage: bench_match_vf2 [VERTICES [PATTERNS]]\n");
        return 2;
    }
    std::mt19937 random(7);
    const Shape hostShape = randomHost(vertexCount, 2 * vertexCount, random);
    vellum::DirectedGraph host;
    build(hostShape, host);
    const BoostGraph boostHost = build(hostShape);
    std::printf("host: %d vertices, %d edges, %d labels; %d patterns per size, best of %d runs\n",
                vertexCount, 2 * vertexCount, kLabelCount, patternsPerSize, kRepetitions);
    bool allEqual = true;
    for (int size = 3; size <= 5; ++size) {
        double ours = 0;
        double theirs = 0;
        long found = 0;
        long counted = 0;
        for (int p = 0; p < patternsPerSize; ++p) {
            const Shape shape = randomPattern(hostShape, size, random);
            vellum::DirectedGraph pattern;
            build(shape, pattern);
            const vellum::Matcher matcher(pattern);
            const BoostGraph boostPattern = build(shape);
            std::size_t list = 0;
            ours += fastest([&] { list = matcher.findAll(host).size(); });
            long count = 0;
            theirs += fastest([&] {
                count = 0;
                boost::vf2_subgraph_mono(
                    boostPattern, boostHost, CountingCallback{&count},
                    boost::vertex_order_by_mult(boostPattern),
                    boost::vertices_equivalent(boost::make_property_map_equivalent(
                        boost::get(boost::vertex_name, boostPattern),
                        boost::get(boost::vertex_name, boostHost))));
            });
            allEqual = allEqual && static_cast<long>(list) == count;
            found += static_cast<long>(list);
            counted += count;
        }
        std::printf(
            "%d vertices: Vellum %9.3f ms (%ld occurrences), VF2 %9.3f ms (%ld), "
            "ratio VF2/Vellum %.2f\n",
            size, ours * 1e3, found, theirs * 1e3, counted, theirs / ours);
    }
    std::printf("same counts: %s\n", allEqual ? "yes" : "NO");
    return allEqual ? 0 : 1;
}
