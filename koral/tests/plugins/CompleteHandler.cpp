// A graph class handler for the tests ("Complete.gc"): every entry, with behaviour a test can
// observe. gcLoadGraph gives a graph of one vertex labelled with the path; gcSaveGraph writes the
// vertex count to the path; gcLoadGraphRule finds no rule; gcGraphClassExpression compiles a
// whole number N into "the graph has N vertices" and rejects anything else.
#include <cstdlib>
#include <fstream>
#include <string>

#include "koral/PluginApi.h"

namespace {

class VertexCountIs : public vellum::KoralCondition {
  public:
    explicit VertexCountIs(std::size_t count) : count_(count) {}
    int evaluate(vellum::DirectedGraph& graph, const std::atomic<int>& abortFlag) override {
        return abortFlag.load() == 0 && graph.vertexCount() == count_ ? 1 : 0;
    }

  private:
    std::size_t count_;
};

}  // namespace

vellum::DirectedGraph* gcLoadGraph(const char* path) {
    auto* graph = new vellum::DirectedGraph;
    graph->createVertex()->setLabel(path);
    return graph;
}

int gcSaveGraph(vellum::DirectedGraph* graph, const char* path) {
    std::ofstream out(path);
    out << graph->vertexCount();
    return out ? 1 : 0;
}

vellum::DirectedGraphRule* gcLoadGraphRule(const char* /*path*/) {
    return nullptr;
}

vellum::KoralCondition* gcGraphClassExpression(void* /*compiler*/, const char* text) {
    char* end = nullptr;
    const long count = std::strtol(text, &end, 10);
    if (end == text || *end != '\0' || count < 0)
        return nullptr;
    return new VertexCountIs(static_cast<std::size_t>(count));
}
