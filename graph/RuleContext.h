// The context that rule application lends the library functions of a rule's expressions (see
// EvaluationContext): the host graph, the host objects the rule's variables are bound to, the
// patterns the rule's expressions name, and a console report that speaks once. The application
// condition sees every variable bound to its image in the occurrence; a right-hand side
// expression sees only the objects the step keeps, in the graph as the step has changed it so
// far.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "grammar/EvaluationContext.h"
#include "graph/PatternCache.h"

namespace vellum {

class PreparedRule;

class RuleContext : public EvaluationContext {
  public:
    // `host`, `rule` and `ruleName` must outlive the context.
    RuleContext(DirectedGraph& host, const PreparedRule& rule, const std::string& ruleName);

    // Binds each variable to its image in `occurrence`; one without an image is unbound.
    void bind(const GraphMorphism& occurrence);

    DirectedGraph& host() const { return host_; }
    const std::string& ruleName() const { return ruleName_; }
    const std::vector<RuleVariable>& variables() const;
    // The index of the variable of that name (its first declaration), or -1.
    int variableIndex(std::string_view name) const;
    // The host objects by variable index; null for an unbound one.
    const std::vector<GraphObject*>& bound() const { return bound_; }
    // The patterns of the rule's expressions.
    PatternCache& patterns() const;

    // Writes "Rule 'NAME': " and the problem as a console line, the first time only: the same
    // expression fails the same way at every occurrence.
    void report(const std::string& problem) const;

  private:
    DirectedGraph& host_;
    const PreparedRule& rule_;
    const std::string& ruleName_;
    std::vector<GraphObject*> bound_;
    mutable bool reported_ = false;
};

}  // namespace vellum
