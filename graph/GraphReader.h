// The reader of graph files (.dg): the grammar engine runs the GRAPH grammar and tokens, and
// the semantic actions build a DirectedGraph. Vertex numbers of the file are held in the
// integer attribute "__ID__" while reading; edge endpoints are resolved by them in constant
// time, with the result of the search in vertex-list order (the first vertex with the number).
// Well-formed files are read by a fast path that builds the same graph without the engine
// (graph/GraphFastPath.h); anything else goes through the engine.
#pragma once

#include <memory>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/GraphTextReader.h"

namespace vellum {

class GraphReader : public GraphTextReader {
  public:
    GraphReader();

    // Reads the file into `graph`, which the first action empties. True on success, and then
    // no vertex keeps an "__ID__" attribute. On failure the console shows the failing
    // action's message, if any, then the two-line report ("File '...' contains errors near
    // position ..." and "Dump '...' !!!"); the graph holds what was built up to the error.
    bool read(const std::string& fileName, DirectedGraph& graph);

    // Whether read() tries the fast path first (the default). Off, every file goes through the
    // engine: the result is the same, only slower.
    void setFastPath(bool enabled) { fastPath_ = enabled; }

    int onAction(int number) override;

  private:
    bool clearGraph() override;
    bool addVertex() override;
    bool addEdge() override;

    bool fastPath_ = true;
    DirectedGraph* graph_ = nullptr;
    // The first vertex read with each number: what a search by "__ID__" in list order finds.
    VertexNumbers vertexByNumber_;
};

// Reads a graph file and, only when that succeeds, replaces the contents of `graph` with what
// was read (pointers into the old contents then become invalid). On failure the console shows
// what GraphReader::read reports and `graph` is left exactly as it was.
bool loadGraph(const std::string& fileName, DirectedGraph& graph);
// Reads a graph file into a new graph; null when reading fails.
std::unique_ptr<DirectedGraph> loadGraph(const std::string& fileName);

}  // namespace vellum
