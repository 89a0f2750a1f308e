// bench_graph_memory [VERTICES [EDGES]]: builds a graph of 10^6 vertices and 2*10^6 edges
// (random endpoints, no labels, no attributes) and prints the bytes each vertex and each edge
// costs, from the allocator's statistics and from the process's resident size.
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"

namespace {

// Bytes in use according to the allocator.
double heapBytes() {
    return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd);
}

// Resident set size in bytes.
double residentBytes() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return static_cast<double>(resident) * 4096.0;
}

void print(const char* what, double heap, double resident, double count) {
    std::printf("%-28s %10.1f bytes/element (heap)  %10.1f bytes/element (resident)\n", what,
                heap / count, resident / count);
}

}  // namespace

int main(int argc, char** argv) {
    const long vertexCount = argc > 1 ? std::atol(argv[1]) : 1000000;
    const long edgeCount = argc > 2 ? std::atol(argv[2]) : 2 * vertexCount;
    if (vertexCount <= 0 || edgeCount < 0) {
        std::fprintf(stderr, "usage: bench_graph_memory [VERTICES [EDGES]]\n");
        return 2;
    }
    std::printf("object sizes: vertex %zu bytes, edge %zu bytes\n",
                sizeof(vellum::DirectedGraphVertex), sizeof(vellum::DirectedGraphEdge));

    // The vertex pointers for picking endpoints live outside the measured span.
    std::vector<vellum::DirectedGraphVertex*> vertices(static_cast<std::size_t>(vertexCount));
    vellum::DirectedGraph graph;

    double heap = heapBytes();
    double resident = residentBytes();
    for (auto& vertex : vertices)
        vertex = graph.createVertex();
    print("vertex (no label, no attr.)", heapBytes() - heap, residentBytes() - resident,
          static_cast<double>(vertexCount));

    std::mt19937 random(42);
    std::uniform_int_distribution<std::size_t> pick(0, vertices.size() - 1);
    heap = heapBytes();
    resident = residentBytes();
    for (long i = 0; i < edgeCount; ++i)
        graph.createEdge(vertices[pick(random)], vertices[pick(random)]);
    if (edgeCount > 0) {
        print("edge (no label, no attr.)", heapBytes() - heap, residentBytes() - resident,
              static_cast<double>(edgeCount));
    }

    // Labels are held once per distinct text: labelling everything costs no memory per element.
    heap = heapBytes();
    const char* labels[] = {"a", "b", "a_rather_long_label_beyond_the_short_string_buffer"};
    long n = 0;
    for (auto& vertex : graph.vertices())
        vertex.setLabel(labels[n++ % 3]);
    std::printf("labelling every vertex: %+.1f bytes/vertex\n",
                (heapBytes() - heap) / static_cast<double>(vertexCount));
    std::printf("graph: %zu vertices, %zu edges\n", graph.vertexCount(), graph.edgeCount());
    return 0;
}
