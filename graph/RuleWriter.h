// The writer of rule files (.drl), in the layout the reader and earlier files share: the name,
// the left-hand side, the interface and the right-hand side as tab-indented sections, and the
// application condition. Variables and expressions are written; forced-reference marks and
// references are not. What the format cannot spell, or the reader would refuse, is refused.
#pragma once

#include <ostream>
#include <string>

#include "graph/DirectedGraphRule.h"
#include "graph/FileSpelling.h"
#include "graph/ObjectNumbering.h"

namespace vellum {

// Vertices and edges are numbered 1, 2, 3, ... in the order they are first written, the same
// numbers serving the interface and the edge endpoints; an interface pair with an empty side
// writes 0 there, which names no object when read back.
class RuleWriter {
  public:
    explicit RuleWriter(std::ostream& out) : out_(out) {}

    // Writes the whole rule and returns true; the stream's state tells whether it all went
    // out. False when the rule holds something a rule file cannot spell or the reader would
    // refuse (a variable on the right-hand side, an expression on the left or without any
    // variable): the text stops before it, so the caller discards what was written (saveRule
    // does), and refusal() says "rule 'r', right-hand side, vertex 4, attribute 's': REASON".
    bool write(const DirectedGraphRule& rule);
    const std::string& refusal() const { return refusal_; }

  private:
    enum class Side { Left, Right };

    bool writeSection(const char* title, const DirectedGraph& side);
    bool writeVertex(const DirectedGraphVertex& vertex);
    bool writeEdge(const DirectedGraph& side, const DirectedGraphEdge& edge);
    bool writeInterface(const DirectedGraphRule& rule);
    bool writeVariable(const GraphObject& object, const std::string& element);
    bool writeContents(const GraphObject& object, const std::string& element);
    bool writeAttribute(const Attribute& attribute, const std::string& element);
    std::string expressionProblem(const Attribute& attribute, const std::string& expression);
    bool refuse(const std::string& element, const std::string& problem);
    long number(const GraphObject* object);

    std::ostream& out_;
    ObjectNumbering numbers_;
    FileSpelling spelling_{FileSpelling::Format::Rule};
    Side side_ = Side::Left;
    bool hasVariables_ = false;  // of the rule being written: expressions need one
    std::string where_;          // "rule 'r', left-hand side, ", before the element's name
    std::string refusal_;
};

// Writes `rule` to the file, replacing it only when everything was written. On failure the
// console says why the rule was refused, if it was, then "Could not write the file 'NAME' !!!";
// false is returned and an existing file is left as it was.
bool saveRule(const DirectedGraphRule& rule, const std::string& fileName);

}  // namespace vellum
