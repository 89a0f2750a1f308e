// Where the rule named in a condition lives: the same lookup that modules use for the rules
// they apply, so that `applicable.R` tests the very rule `apply ... R` would apply.
#pragma once

#include <string>

namespace vellum {

// The rule's file name: the name with every "." made a "/" (a dotted name denotes a
// subfolder), then "." and the value of DirectedGraphEXTRULE ("grow" -> "grow.drl").
std::string ruleFileName(const std::string& ruleName);

// The file found for the rule along "koralGraphRules" (see findFile); empty when none exists.
std::string findRuleFile(const std::string& ruleName);

}  // namespace vellum
