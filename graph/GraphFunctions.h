// The bundled function library "$(graph" for structural conditions: what rule expressions may
// ask about the host graph around the objects the rule's variables are bound to. Variables and
// patterns are named by strings, since a variable itself stands for its object's label:
//
//     $(graph.outdegree)("p", "request")   edges labelled request leaving p's vertex ("*": any)
//     $(graph.indegree)("p", "*")          edges entering p's vertex
//     $(graph.edge)("r", "p", "held_by")   whether such an edge runs from r's vertex to p's
//     $(graph.absent)("held")              no occurrence of the pattern held (see
//     $(graph.present)("held")             PatternCondition) extends the binding; or one does
//
// A degree test takes constant time, an edge test at most the smaller degree of its two
// vertices (constant when either has no edge of the label), a pattern test a search around the
// bound objects. The plug-in "$(graph.so" exports these functions; `check` validates calls
// against their table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "grammar/ExpressionEnvironment.h"
#include "graph/PatternCache.h"

namespace vellum {

// The library's name as calls write it: "$(graph" in "$(graph.outdegree)".
inline constexpr std::string_view kGraphLibrary = "$(graph";

enum class GraphArgument {
    Vertex,   // the name of a variable declared by a left-hand vertex
    Label,    // a label, or "*" for any
    Pattern,  // the name of a rule, found as the rules a module applies are
};

struct GraphFunction {
    std::string name;
    std::vector<GraphArgument> arguments;
    std::string usage;  // the arguments in words: "VARIABLE, LABEL"
};

// The library's function of that name, or null.
const GraphFunction* findGraphFunction(std::string_view name);

// The text of a string argument: the contents of a double-quoted string (as literals and
// bound labels are held), or the text itself when it is not quoted.
std::string argumentText(const std::string& held);

// Calls the function `name` as the library entry does: a new value made with newResult(), or
// null after a console line that says why (through the rule's context, once per application;
// outside rule application on its own). Never throws.
Value* callGraphFunction(std::string_view name, const ValueList& arguments,
                         const Environment& environment, const PatternLoader& load) noexcept;

}  // namespace vellum
