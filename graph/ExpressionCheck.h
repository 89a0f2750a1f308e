// Whether an expression of a rule (an attribute expression or the application condition) will
// build when the rule is applied, whether every variable it reads is one the rule declares, and
// whether its library calls name functions that exist, with calls of the bundled library
// "$(graph" checked in full (argument count, the variables they name, their patterns): found
// without applying the rule, for what `vellum-cli check` and the readers' diagnostics report.
#pragma once

#include <string>
#include <vector>

#include "graph/PatternCache.h"
#include "graph/VariableBinding.h"

namespace vellum {

struct ExpressionProblem {
    // Empty when the expression is fine, else what is wrong, worded to follow a subject ("does
    // not compile: ...", "reads 'y.n', but ...").
    std::string reason;
    long offset = 0;  // where in the text the problem lies
};

// `variables` are those the rule's left-hand side declares. A variable "x.a" is taken as
// declared when "x" is (whether the matched object has the attribute a shows only at
// application). The patterns that "$(graph" calls name are read with `loadPattern` when it is
// given, and not looked at otherwise.
ExpressionProblem checkExpression(const std::string& text,
                                  const std::vector<RuleVariable>& variables,
                                  const PatternLoader* loadPattern = nullptr);

}  // namespace vellum
