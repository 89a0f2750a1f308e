#include "graph/GraphReader.h"

#include "grammar/Diagnostics.h"
#include "grammar/ParseReport.h"
#include "graph/GraphFastPath.h"
#include "graph/GraphFormat.h"

namespace vellum {

GraphReader::GraphReader() {
    loadGrammar(kGraphGrammar, kGraphTokens);
    // Long reals and strings: what the graph writer writes reads back.
    for (int code : {kNumberToken, kStringToken})
        scanner().setLengthBound(code, kMaxLiteralToken);
}

bool GraphReader::read(const std::string& fileName, DirectedGraph& graph) {
    // A diagnostics collector wants the positions only the engine records.
    if (fastPath_ && Diagnostics::current() == nullptr &&
        GraphFastPath::read(fileName, graph) == GraphFastPath::Outcome::Read) {
        noteReadElsewhere(fileName);
        return true;
    }
    graph_ = &graph;
    current_ = nullptr;
    vertexByNumber_.clear();
    std::string excerpt;
    long position = 0;
    const bool ok = parseFile(fileName, kExcerptBefore, kExcerptAfter, excerpt, position);
    vertexByNumber_.clear();
    current_ = nullptr;
    graph_ = nullptr;
    if (!ok) {
        reportSyntaxError("File", fileName, position, lineNumber(), excerpt);
        return false;
    }
    for (DirectedGraphVertex& vertex : graph.vertices())
        vertex.removeAttribute(kNumberAttribute);
    return true;
}

int GraphReader::onAction(int number) {
    const auto action = static_cast<GraphAction>(number);
    if (action == GraphAction::GraphName)
        return 1;  // the name in the file is not kept
    return onGraphAction(action);
}

bool GraphReader::addVertex() {
    addNumberedVertex(*graph_, vertexByNumber_);
    return true;
}

bool GraphReader::clearGraph() {
    graph_->clear();
    current_ = nullptr;
    vertexByNumber_.clear();
    return true;
}

bool GraphReader::addEdge() {
    DirectedGraphVertex* source = nullptr;
    DirectedGraphVertex* target = nullptr;
    if (!findEndpoints(vertexByNumber_, source, target))
        return false;
    current_ = graph_->createEdge(source, target);
    return current_ != nullptr;
}

bool loadGraph(const std::string& fileName, DirectedGraph& graph) {
    // Read aside, so that a file that fails halfway costs the caller nothing.
    DirectedGraph loaded;
    GraphReader reader;
    if (!reader.read(fileName, loaded))
        return false;
    graph.swap(loaded);
    return true;
}

std::unique_ptr<DirectedGraph> loadGraph(const std::string& fileName) {
    auto graph = std::make_unique<DirectedGraph>();
    if (!loadGraph(fileName, *graph))
        return nullptr;
    return graph;
}

}  // namespace vellum
