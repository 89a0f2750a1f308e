// The diagnostics that the graph and the rule reader share, worded once.
#pragma once

#include <cstdint>
#include <string>

namespace vellum {

// An edge endpoint that names no vertex; the console shows it followed by "!!!".
inline std::string missingVertex(std::int32_t number) {
    return "Vertex with number '" + std::to_string(number) + "' not found";
}

// `kind` is "vertex" or "edge".
inline std::string duplicateNumber(const char* kind, std::int32_t number) {
    return std::string("the ") + kind + " number '" + std::to_string(number) +
           "' is used twice here; only the first " + kind + " with it can be named";
}

// The rule reader's refusals of what a rule may not hold where it stands (each a console line).
namespace ruleMessages {
inline constexpr const char* referenceOnLeft =
    "You can't reference a node in the left hand side of the rule!!!";
inline constexpr const char* variableOnRight =
    "Variables are only allowed on the left hand side of the rule!!!";
inline constexpr const char* expressionOnLeft =
    "Expressions are only allowed on the right hand side of the rule!!!";
inline constexpr const char* noVariables = "No variables defined!!!";
}  // namespace ruleMessages

}  // namespace vellum
