// The names a condition may use, and what each stands for: the numbers of vertices and edges of
// the graph, in total or with one label, and whether a rule is applicable. Any other name is an
// error in the condition.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellum {

enum class ConditionNameKind {
    VertexCount,       // vertices
    EdgeCount,         // edges
    VertexLabelCount,  // vertices.LABEL
    EdgeLabelCount,    // edges.LABEL
    Applicable,        // applicable.RULE
};

struct ConditionName {
    ConditionNameKind kind;
    std::string argument;  // the label or the rule name; empty for the totals
};

// What the identifier stands for; none for a name the language does not know ("vertex",
// "applicable" without a rule, "foo.bar"). The part after the first "." is the label or rule
// name as written, dots included ("applicable.lib.grow" names the rule "lib.grow").
std::optional<ConditionName> parseConditionName(std::string_view identifier);

}  // namespace vellum
