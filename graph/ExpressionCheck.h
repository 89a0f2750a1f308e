// Whether an expression of a rule (an attribute expression or the application condition) will
// build when the rule is applied, and whether every variable it reads is one the rule declares,
// found without applying the rule: what `vellum-cli check` and the readers' diagnostics report.
#pragma once

#include <string>
#include <vector>

namespace vellum {

struct ExpressionProblem {
    // Empty when the expression is fine, else what is wrong, worded to follow a subject ("does
    // not compile: ...", "reads 'y.n', but ...").
    std::string reason;
    long offset = 0;  // where in the text the problem lies
};

// `variables` are the names the rule's left-hand side declares. A variable "x.a" is taken as
// declared when "x" is (whether the matched object has the attribute a shows only at
// application).
ExpressionProblem checkExpression(const std::string& text,
                                  const std::vector<std::string>& variables);

}  // namespace vellum
