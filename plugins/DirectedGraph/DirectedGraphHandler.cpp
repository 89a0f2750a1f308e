// DirectedGraph.gc: the graph class handler of the class DirectedGraph, opened along
// "koralGraphClasses" by modules of `graph class : DirectedGraph`. It reads and writes graphs
// and rules in Vellum's own file formats and compiles module conditions in the language of
// docs/conditions.md. Every entry catches what it could throw: failure is its return value.
#include <exception>

#include "base/Console.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/RuleReader.h"
#include "koral/PluginApi.h"
#include "plugins/DirectedGraph/ConditionCompiler.h"

namespace {

// Runs an entry's work; on an exception writes one line naming the entry and gives `failure`.
template <typename Result, typename Work>
Result guarded(const char* entry, Result failure, Work work) {
    try {
        return work();
    } catch (const std::exception& error) {
        vellum::console() << "DirectedGraph.gc: " << entry << " failed: " << error.what() << "\n";
    } catch (...) {
        vellum::console() << "DirectedGraph.gc: " << entry << " failed\n";
    }
    return failure;
}

}  // namespace

vellum::DirectedGraph* gcLoadGraph(const char* path) {
    if (path == nullptr)
        return nullptr;
    return guarded<vellum::DirectedGraph*>("gcLoadGraph", nullptr,
                                           [path] { return vellum::loadGraph(path).release(); });
}

int gcSaveGraph(vellum::DirectedGraph* graph, const char* path) {
    if (graph == nullptr || path == nullptr)
        return 0;
    return guarded("gcSaveGraph", 0,
                   [graph, path] { return vellum::saveGraph(*graph, path) ? 1 : 0; });
}

vellum::DirectedGraphRule* gcLoadGraphRule(const char* path) {
    if (path == nullptr)
        return nullptr;
    return guarded<vellum::DirectedGraphRule*>("gcLoadGraphRule", nullptr,
                                               [path] { return vellum::loadRule(path).release(); });
}

vellum::KoralCondition* gcGraphClassExpression(void* /*compiler*/, const char* text) {
    if (text == nullptr)
        return nullptr;
    return guarded<vellum::KoralCondition*>("gcGraphClassExpression", nullptr, [text] {
        return vellum::compileCondition(text).release();
    });
}
