// Glob matching of names, as the writers use it to skip internal attributes ("__*__"):
// "*" stands for any run of characters, "?" for any one character, everything else for itself.
#pragma once

#include <string_view>

namespace vellum {

bool globMatch(std::string_view pattern, std::string_view text);

// True for the names of internal attributes, which no file receives.
inline bool isInternalName(std::string_view name) {
    return globMatch("__*__", name);
}

}  // namespace vellum
