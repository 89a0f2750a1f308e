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

}  // namespace vellum
