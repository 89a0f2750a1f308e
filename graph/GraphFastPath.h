// A reader of graph files for the common, well-formed case that runs without the grammar engine:
// it mirrors the scanner (first match in written order) and the GRAPH grammar for the shapes
// written files have, and builds exactly what GraphReader builds, several times faster. At the
// first thing it does not handle (a comment, an escape in a string, a duplicate vertex number,
// an unknown endpoint, any syntax error) it gives up without a word, and GraphReader reads the
// file again with the engine, so that every message and position stays the engine's.
#pragma once

#include <string>

#include "graph/DirectedGraph.h"

namespace vellum {

class GraphFastPath {
  public:
    enum class Outcome {
        Read,    // `graph` holds the file's graph, no "__ID__" left, as after a successful read
        GaveUp,  // `graph` was left untouched or emptied and partly built: read it again
    };

    // Reads `fileName` into `graph`. The graph is emptied only once the file is known to begin
    // with its header, as the engine's first action does. Says nothing on the console.
    static Outcome read(const std::string& fileName, DirectedGraph& graph);
};

}  // namespace vellum
