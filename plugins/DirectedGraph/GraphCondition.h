// A compiled condition of the graph class DirectedGraph: one expression over the names of
// ConditionName.h, the plan that binds just the names the expression reads, and the rules its
// `applicable.R` names test. Evaluating counts through the graph's label index and searches each
// named rule once, for the first occurrence that passes its tests.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "grammar/Expression.h"
#include "graph/DirectedGraphRule.h"
#include "koral/KoralCondition.h"
#include "plugins/DirectedGraph/ConditionName.h"

namespace vellum {

class GraphCondition final : public KoralCondition {
  public:
    // One name the expression reads and how to get its value.
    struct Binding {
        std::string name;
        ConditionName meaning;
        const DirectedGraphRule* rule = nullptr;  // for Applicable: one of the condition's rules
    };

    // `rules` are the rules the bindings point at, owned by the condition from now on (each
    // condition loads its own, when it is compiled).
    GraphCondition(std::string text, std::unique_ptr<Expression> expression,
                   std::vector<Binding> plan,
                   std::vector<std::unique_ptr<DirectedGraphRule>> rules);

    // 1 when the expression yields true, else 0: for false, once `abortFlag` is 1 (checked
    // before each rule search), and when the expression cannot be evaluated or yields no
    // boolean, which the console reports as "Condition 'TEXT' failed: ...". Evaluations of one
    // condition from several threads take turns.
    int evaluate(DirectedGraph& graph, const std::atomic<int>& abortFlag) override;
    // The same, and says in `failure` why the condition could not be evaluated.
    int evaluateReporting(DirectedGraph& graph, const std::atomic<int>& abortFlag,
                          KoralConditionFailure& failure) override;

    const std::string& text() const { return text_; }

  private:
    // The values of the plan's names; false when the run was aborted meanwhile.
    bool bind(DirectedGraph& graph, const std::atomic<int>& abortFlag,
              Environment& environment) const;
    static Value valueOf(const Binding& binding, DirectedGraph& graph);
    static bool isApplicable(const DirectedGraphRule& rule, DirectedGraph& graph);
    int fail(std::string problem, std::string meaning, KoralConditionFailure& failure) const;

    std::string text_;  // as the module wrote it, for messages
    std::unique_ptr<Expression> expression_;
    std::vector<Binding> plan_;
    std::vector<std::unique_ptr<DirectedGraphRule>> rules_;
    std::mutex mutex_;  // a rule's search keeps state of its own, so one evaluation at a time
    // The names' values, bound afresh at each evaluation (under the lock); kept so that a loop
    // testing the condition at every turn does not allocate for them each time.
    Environment environment_;
};

}  // namespace vellum
