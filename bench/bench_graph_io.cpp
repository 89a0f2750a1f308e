// bench_graph_io [VERTICES [EDGES]]: writes a graph file of 10^6 vertices and 2*10^6 edges
// (a tenth of them labelled, some attributes), then times loading it and saving it again, and
// prints the figures with the peak memory of the process after the load. The files go to a
// temporary folder that is removed afterwards.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

bool generate(const std::string& file, long vertices, long edges) {
    std::FILE* out = std::fopen(file.c_str(), "w");
    if (out == nullptr)
        return false;
    std::fprintf(out, "directed graph bench\n{\n");
    for (long i = 1; i <= vertices; ++i) {
        if (i % 10 == 0) {
            std::fprintf(out, "\tvertex %ld { label L%ld integer weight = %ld real x = %ld.5 }\n",
                         i, i % 7, i, i % 1000);
        } else {
            std::fprintf(out, "\tvertex %ld\n", i);
        }
    }
    std::mt19937 random(7);
    std::uniform_int_distribution<long> pick(1, vertices);
    for (long i = 1; i <= edges; ++i) {
        const long source = pick(random);
        const long target = pick(random);
        if (i % 10 == 0) {
            std::fprintf(out, "\tedge %ld -> %ld { label E%ld }\n", source, target, i % 5);
        } else {
            std::fprintf(out, "\tedge %ld -> %ld\n", source, target);
        }
    }
    std::fprintf(out, "}\n");
    return std::fclose(out) == 0;
}

// The processor time of the process so far: on a shared machine it says more than the clock.
double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// The largest resident size the process has had so far.
double peakMegabytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

double megabytes(const std::string& file) {
    return static_cast<double>(std::filesystem::file_size(file)) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
    const long vertices = argc > 1 ? std::atol(argv[1]) : 1000000;
    const long edges = argc > 2 ? std::atol(argv[2]) : 2 * vertices;
    if (vertices <= 0 || edges < 0) {
        std::fprintf(stderr, "usage: bench_graph_io [VERTICES [EDGES]]\n");
        return 2;
    }
    const auto folder = std::filesystem::temp_directory_path() /
                        ("vellum_bench_io_" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(folder);
    const std::string input = (folder / "input.dg").string();
    const std::string output = (folder / "output.dg").string();
    int status = 0;

    auto start = Clock::now();
    if (!generate(input, vertices, edges)) {
        std::fprintf(stderr, "cannot write %s\n", input.c_str());
        status = 1;
    } else {
        std::printf("generated %ld vertices, %ld edges: %.1f MB in %.2f s\n", vertices, edges,
                    megabytes(input), secondsSince(start));
        vellum::DirectedGraph graph;
        start = Clock::now();
        double processor = processorSeconds();
        const bool loaded = vellum::loadGraph(input, graph);
        std::printf(
            "load: %.2f s (processor %.2f s) (%s, %zu vertices, %zu edges), peak memory %.0f MB\n",
            secondsSince(start), processorSeconds() - processor, loaded ? "ok" : "FAILED",
            graph.vertexCount(), graph.edgeCount(), peakMegabytes());
        start = Clock::now();
        processor = processorSeconds();
        const bool saved = vellum::saveGraph(graph, output);
        std::printf("save: %.2f s (processor %.2f s) (%s, %.1f MB)\n", secondsSince(start),
                    processorSeconds() - processor, saved ? "ok" : "FAILED",
                    saved ? megabytes(output) : 0.0);
        start = Clock::now();
        graph.clear();
        std::printf("clear: %.2f s\n", secondsSince(start));
        start = Clock::now();
        const bool reloaded = vellum::loadGraph(output, graph);
        std::printf("reload of the saved file: %.2f s (%s, %zu vertices, %zu edges)\n",
                    secondsSince(start), reloaded ? "ok" : "FAILED", graph.vertexCount(),
                    graph.edgeCount());
        status = loaded && saved && reloaded ? 0 : 1;
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return status;
}
