// Fuzz target: arbitrary bytes read by the real graph file reader. A graph that reads must write
// and read back to a graph of the same size, unless the writer refuses it with its reason (a file
// may hold what a save does not write, such as a control byte in a string or a number too large
// for a real).
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "tests/support/TempFile.h"

using vellum::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vellum::test::TempFile file(std::string(reinterpret_cast<const char*>(data), size));
    if (file.path().empty())
        return 0;
    vellum::ConsoleCapture capture;
    vellum::DirectedGraph graph;
    if (!vellum::loadGraph(file.path(), graph))
        return 0;
    vellum::test::TempFile copy("");
    capture.reset();
    if (!vellum::saveGraph(graph, copy.path())) {
        check(capture.text().find(" in a graph file\nCould not write the file '") !=
              std::string::npos);
        return 0;
    }
    vellum::DirectedGraph again;
    check(vellum::loadGraph(copy.path(), again));
    check(again.vertexCount() == graph.vertexCount());
    check(again.edgeCount() == graph.edgeCount());
    return 0;
}
