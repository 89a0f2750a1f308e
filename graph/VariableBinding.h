// How a rule's variables reach its expressions: for a left-hand vertex or edge that declares
// the variable x and is matched to the host object h, "x" is bound to h's label as a string
// value (held with its double quotes, as string constants are: label red gives "red"), and
// "x.a" to each attribute a of h (a string also in double quotes; vectors and internal
// attributes are not bound). So x.name == "red" holds when h's attribute name holds red.
#pragma once

#include <string>
#include <vector>

#include "grammar/ExpressionEnvironment.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphMorphism.h"

namespace vellum {

struct RuleVariable {
    std::string name;
    // The left-hand object that declares it: a vertex or an edge.
    const DirectedGraphVertex* vertex = nullptr;
    const DirectedGraphEdge* edge = nullptr;
};

// The variables that the vertices (first) and edges of a left-hand side declare, in list order.
std::vector<RuleVariable> declaredVariables(const DirectedGraph& left);

// The bindings of the variables for an occurrence, in the order of `variables` (a name
// declared twice is bound by its first declaration). Objects without an image bind nothing.
Environment bindVariables(const std::vector<RuleVariable>& variables,
                          const GraphMorphism& occurrence);

// A text as the expression language holds a string: enclosed in double quotes.
Value quotedString(const std::string& text);

}  // namespace vellum
