// The writer of rule files (.drl), in the layout the reader and earlier files share: the name,
// the left-hand side, the interface and the right-hand side as tab-indented sections, and the
// application condition. Variables and expressions are written; forced-reference marks and
// references are not.
#pragma once

#include <ostream>
#include <string>

#include "graph/DirectedGraphRule.h"
#include "graph/ObjectNumbering.h"

namespace vellum {

// Vertices and edges are numbered 1, 2, 3, ... in the order they are first written, the same
// numbers serving the interface and the edge endpoints; an interface pair with an empty side
// writes 0 there, which names no object when read back.
class RuleWriter {
  public:
    explicit RuleWriter(std::ostream& out) : out_(out) {}

    // Writes the whole rule; the stream's state tells whether it all went out.
    void write(const DirectedGraphRule& rule);

  private:
    void writeSection(const char* title, const DirectedGraph& side);
    void writeVertex(const DirectedGraphVertex& vertex);
    void writeEdge(const DirectedGraphEdge& edge);
    void writeInterface(const GraphMorphism& interface);
    void writeContents(const GraphObject& object);
    void writeAttribute(const Attribute& attribute);
    long number(const GraphObject* object);

    std::ostream& out_;
    ObjectNumbering numbers_;
};

// Writes `rule` to the file, replacing it only when everything was written. On failure the
// console says "Could not write the file 'NAME' !!!", false is returned and an existing file
// is left as it was.
bool saveRule(const DirectedGraphRule& rule, const std::string& fileName);

}  // namespace vellum
