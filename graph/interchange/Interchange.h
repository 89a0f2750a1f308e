// Graphs to and from the formats of other graph tools: GraphML (yEd, Gephi, NetworkX, igraph),
// GXL (graph-transformation tools) and DOT (Graphviz). The format is chosen by the file's
// extension; ".dg" is Vellum's own, so that one call serves every kind of file.
//
// What a foreign file holds but a graph file cannot spell (a label that is no identifier, text
// outside printable ASCII) is refused by default, naming the element; with renaming on, it is
// changed into something a graph file can spell and every change is reported. Nothing is lost
// without a line on the console.
#pragma once

#include <string>
#include <string_view>

#include "graph/DirectedGraph.h"

namespace vellum {

enum class GraphFileFormat { Native, GraphML, GXL, DOT, Unknown };

// By extension, case-insensitive: ".dg", ".graphml", ".gxl", ".dot" / ".gv".
GraphFileFormat graphFileFormat(std::string_view fileName);
// "graph file", "GraphML", "GXL", "DOT".
const char* formatName(GraphFileFormat format);
// The extensions handled, for messages: ".dg, .graphml, .gxl, .dot".
const char* knownGraphExtensions();

struct ImportOptions {
    // Change what a graph file cannot spell (and report it) instead of refusing the file.
    bool rename = false;
};

// Reads the file into `graph` (emptied first). On failure the console says why, `graph` is
// left empty and false is returned, and `renamable` (when given) tells whether renaming would
// have read the file; on success the console lists what was changed or left out.
bool importGraph(const std::string& fileName, DirectedGraph& graph,
                 const ImportOptions& options = {}, bool* renamable = nullptr);
// Writes the graph in the format of the file's extension, replacing the file only when all of
// it was written. Internal attributes ("__*__") are left out, as in graph files.
bool exportGraph(const DirectedGraph& graph, const std::string& fileName);

}  // namespace vellum
