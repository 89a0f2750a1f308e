// graphstats: the example method library for Koral modules.
//   call graphstats.counts  writes the numbers of vertices and edges by label; always succeeds.
//   call graphstats.check   succeeds when no edge dangles (every edge joins two vertices of the
//                           graph); otherwise it fails and Error names the first dangling edge.
//   call graphstats.fail    always fails, so that a module can show the error path.
// Error describes the last failure of this thread's calls.
#include <map>
#include <string>

#include "base/Console.h"
#include "koral/PluginApi.h"

namespace {

// The message Error returns: set by the method that failed on the same worker thread.
thread_local std::string lastError;

int failWith(std::string message) {
    lastError = std::move(message);
    return 0;
}

// Labels sorted; the empty label is shown as "(none)".
template <typename Elements>
std::map<std::string, std::size_t> countByLabel(const Elements& elements) {
    std::map<std::string, std::size_t> counts;
    for (const auto& element : elements)
        ++counts[element.label()];
    return counts;
}

void writeCounts(const char* kind, const std::map<std::string, std::size_t>& counts) {
    for (const auto& [label, count] : counts) {
        vellum::console() << "  " << kind << " '" << (label.empty() ? "(none)" : label)
                          << "': " << count << "\n";
    }
}

bool dangles(const vellum::DirectedGraph& graph, const vellum::DirectedGraphEdge& edge) {
    return edge.source() == nullptr || edge.target() == nullptr ||
           !graph.contains(*edge.source()) || !graph.contains(*edge.target());
}

}  // namespace

VELLUM_KORAL_METHOD(counts) {
    vellum::console() << "graphstats: " << graph->vertexCount() << " vertices, "
                      << graph->edgeCount() << " edges\n";
    writeCounts("vertices", countByLabel(graph->vertices()));
    writeCounts("edges", countByLabel(graph->edges()));
    return 1;
}

VELLUM_KORAL_METHOD(check) {
    std::size_t position = 0;
    for (const auto& edge : graph->edges()) {
        ++position;
        if (dangles(*graph, edge)) {
            return failWith("graphstats: method 'check' failed: edge " + std::to_string(position) +
                            " dangles");
        }
    }
    return 1;
}

VELLUM_KORAL_METHOD(fail) {
    return failWith("graphstats: method 'fail' failed on purpose");
}

const char* Error(const vellum::koralUnit* /*unit*/) {
    return lastError.c_str();
}
