// The writer of graph files (.dg), in the layout that the reader and earlier files share:
// every vertex in a block after an empty line, every edge on its line with a block only when it
// has a label or attributes, internal attributes ("__*__") left out. Vertices are numbered
// 1, 2, 3, ... in list order, so saving an unchanged graph twice gives the same text.
#pragma once

#include <ostream>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/ObjectNumbering.h"

namespace vellum {

class GraphWriter {
  public:
    explicit GraphWriter(std::ostream& out) : out_(out) {}

    // Writes the whole graph; the stream's state tells whether it all went out.
    void write(const DirectedGraph& graph);

    // "KEYWORD NAME = VALUE" for the five attribute types, reals and vector elements in the
    // stream's default format; false, with nothing written, for any other type code. Shared
    // with the rule writer.
    static bool writeAttribute(std::ostream& out, const Attribute& attribute);
    // True for the five type codes that files know.
    static bool hasFileForm(AttributeType type);

  private:
    void writeVertex(const DirectedGraphVertex& vertex);
    void writeEdge(const DirectedGraphEdge& edge);
    // The label line and the lines of the visible attributes, each indented by two tabs.
    void writeContents(const GraphObject& object);

    std::ostream& out_;
    ObjectNumbering numbers_;
};

// Writes `graph` to the file, replacing it only when everything was written. On failure the
// console says "Could not write the file 'NAME' !!!", false is returned and an existing file
// is left as it was.
bool saveGraph(const DirectedGraph& graph, const std::string& fileName);

}  // namespace vellum
