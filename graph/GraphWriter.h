// The writer of graph files (.dg), in the layout that the reader and earlier files share:
// every vertex in a block after an empty line, every edge on its line with a block only when it
// has a label or attributes, internal attributes ("__*__") left out. Vertices are numbered
// 1, 2, 3, ... in list order, so saving an unchanged graph twice gives the same text. What the
// format cannot spell (see FileSpelling) is refused, never written.
#pragma once

#include <ostream>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/FileSpelling.h"
#include "graph/ObjectNumbering.h"

namespace vellum {

class GraphWriter {
  public:
    explicit GraphWriter(std::ostream& out) : out_(out) {}

    // Writes the whole graph and returns true; the stream's state tells whether it all went
    // out. False when the graph holds something a graph file cannot spell: the text stops
    // before it, so the caller discards what was written (saveGraph does), and refusal() says
    // "vertex 3 (label 'a'), attribute 's': REASON".
    bool write(const DirectedGraph& graph);
    const std::string& refusal() const { return refusal_; }

    // "KEYWORD NAME = VALUE" for the five attribute types, reals and vector elements as
    // realText() writes them; false, with nothing written, for any other type code. The value
    // is written as it is: the caller has asked FileSpelling. Shared with the rule writer.
    static bool writeAttribute(std::ostream& out, const Attribute& attribute);
    // The same appended to a text.
    static bool appendAttribute(std::string& out, const Attribute& attribute);
    // True for the five type codes that files know.
    static bool hasFileForm(AttributeType type);

  private:
    // How a refusal names a vertex ("vertex 3") or an edge ("edge 1 -> 2"); the text is made
    // only when something is refused.
    struct Element {
        long source = 0;
        long target = -1;  // -1 for a vertex
        std::string text() const;
    };

    bool writeVertex(const DirectedGraphVertex& vertex);
    bool writeEdge(const DirectedGraphEdge& edge);
    // The label line and the lines of the visible attributes, each indented by two tabs; false
    // after refusing one of them.
    bool writeContents(const GraphObject& object, const Element& element);
    bool refuse(const std::string& element, const std::string& problem);
    void appendNumber(long value);
    // Hands the text gathered so far to the stream.
    void flush();

    std::ostream& out_;
    // The text not yet handed to the stream: a large graph is written in large pieces.
    std::string pending_;
    ObjectNumbering numbers_;
    FileSpelling spelling_{FileSpelling::Format::Graph};
    // The label whose spelling was found fine last: labels are shared strings, and most
    // elements repeat a few of them.
    const std::string* acceptedLabel_ = nullptr;
    std::string refusal_;
};

// "vertex 3" or "edge 1 -> 2", and " (label 'a')" when the object has a label: how a refusal
// names the object. Shared with the rule writer.
std::string elementName(const std::string& kindAndNumbers, const GraphObject& object);

// Writes `graph` to the file, replacing it only when everything was written. On failure the
// console says why the graph was refused, if it was, then "Could not write the file 'NAME' !!!";
// false is returned and an existing file is left as it was.
bool saveGraph(const DirectedGraph& graph, const std::string& fileName);

}  // namespace vellum
