// What the rule reader would refuse in a rule made in memory (by an editor), told with the
// reader's own message before the rule is written: a file written from such a rule would not
// read back.
#pragma once

#include <string>

#include "graph/DirectedGraphRule.h"

namespace vellum {

// The reader's message for the first thing in `rule` it would refuse, empty when there is
// none. Looked at, in this order: references on the left-hand side, variables on the
// right-hand side, expressions on the left-hand side, expressions on the right-hand side of a
// rule without variables.
std::string readerRefusal(const DirectedGraphRule& rule);

}  // namespace vellum
