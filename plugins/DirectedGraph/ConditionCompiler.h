// Compiling the text of a module condition (initial, terminal, if, while) into a GraphCondition,
// once, when the module is read: the expression is built, every name it reads is checked, and
// the rules named by `applicable.R` are loaded.
#pragma once

#include <memory>
#include <string>

#include "plugins/DirectedGraph/GraphCondition.h"

namespace vellum {

// The compiled condition, or null when the text is no well-formed expression (nothing is
// written: the module compiler reports "Expression '...' contains errors!!!"), calls a library
// that does not load, uses a name the language does not know, or names a rule that cannot be
// found or read; each of these writes one console line naming the culprit and the text.
std::unique_ptr<GraphCondition> compileCondition(const std::string& text);

}  // namespace vellum
