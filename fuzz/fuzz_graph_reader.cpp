// Fuzz target: arbitrary bytes read by the real graph file reader. A file that reads must write
// and read back to a graph of the same size (a written graph is always readable unless it holds
// a value the format cannot carry, such as an exponent or an empty vector).
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "grammar/Console.h"
#include "grammar/tests/TempFile.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"

using vellum::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vellum::testing::TempFile file(std::string(reinterpret_cast<const char*>(data), size));
    if (file.path().empty())
        return 0;
    vellum::ConsoleCapture capture;
    vellum::DirectedGraph graph;
    if (!vellum::loadGraph(file.path(), graph))
        return 0;
    vellum::testing::TempFile copy("");
    check(vellum::saveGraph(graph, copy.path()));
    vellum::DirectedGraph again;
    if (vellum::loadGraph(copy.path(), again)) {
        check(again.vertexCount() == graph.vertexCount());
        check(again.edgeCount() == graph.edgeCount());
    }
    return 0;
}
