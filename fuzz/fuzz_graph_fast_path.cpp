// Fuzz target: arbitrary bytes read as a graph file twice, once by the reader as it is (the fast
// path first, the engine when it gives up) and once by the engine alone. Both must agree on the
// result, the console output, the parser's report and every detail of the graph built, also when
// the graph held something before. Whenever the fast path itself says it read the file, the
// engine must have read it without a word and built the same graph.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphFastPath.h"
#include "graph/GraphReader.h"
#include "tests/support/GraphSnapshot.h"
#include "tests/support/TempFile.h"

using vellum::fuzz::check;

namespace {

struct Reading {
    bool ok = false;
    std::string console;
    std::string syntaxError;
    long errorPosition = 0;
    bool limitReached = false;
    std::string graph;
};

// A graph that is not empty, so that a reading that leaves it alone shows.
void fill(vellum::DirectedGraph& graph) {
    vellum::DirectedGraphVertex* vertex = graph.createVertex();
    vertex->setLabel("before");
    graph.createEdge(vertex, vertex);
}

Reading readWith(const std::string& path, bool fastPath, bool prefilled) {
    vellum::ConsoleCapture capture;
    vellum::DirectedGraph graph;
    if (prefilled)
        fill(graph);
    vellum::GraphReader reader;
    reader.setFastPath(fastPath);
    Reading reading;
    reading.ok = reader.read(path, graph);
    reading.console = capture.text();
    reading.syntaxError = reader.syntaxError();
    reading.errorPosition = reader.errorPosition();
    reading.limitReached = reader.limitReached();
    reading.graph = vellum::test::snapshotOf(graph);
    return reading;
}

void checkSame(const Reading& a, const Reading& b) {
    check(a.ok == b.ok);
    check(a.console == b.console);
    check(a.syntaxError == b.syntaxError);
    check(a.errorPosition == b.errorPosition);
    check(a.limitReached == b.limitReached);
    check(a.graph == b.graph);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vellum::test::TempFile file(std::string(reinterpret_cast<const char*>(data), size));
    if (file.path().empty())
        return 0;
    const bool prefilled = size > 0 && (data[size - 1] & 1) != 0;
    const Reading engine = readWith(file.path(), false, prefilled);
    checkSame(readWith(file.path(), true, prefilled), engine);

    vellum::DirectedGraph graph;
    if (prefilled)
        fill(graph);
    if (vellum::GraphFastPath::read(file.path(), graph) == vellum::GraphFastPath::Outcome::Read) {
        check(engine.ok);
        check(engine.console.empty());
        check(vellum::test::snapshotOf(graph) == engine.graph);
    }
    return 0;
}
