// A compiled condition of a Koral module (initial, terminal, if and while conditions): made by a
// graph class handler from the condition's text, owned by the module that asked for it, and
// evaluated on the graph the unit runs on. The condition language is the handler's own.
#pragma once

#include <atomic>
#include <string>

namespace vellum {

class DirectedGraph;

// A condition that could not be evaluated, so that its false is an error rather than its answer.
struct KoralConditionFailure {
    std::string unit;       // the unit whose statement or clause holds the condition
    std::string condition;  // the condition's text
    std::string problem;    // as the console showed it: "exprException 2", "no value", ...
    std::string meaning;    // what an exprException's code means; may be empty
};

class KoralCondition {
  public:
    // The module deletes conditions through this destructor, whichever library made them.
    virtual ~KoralCondition();
    // 1 for true; any other value is false. A long evaluation should give up (with 0) once
    // `abortFlag` is 1, the user's Stop.
    virtual int evaluate(DirectedGraph& graph, const std::atomic<int>& abortFlag) = 0;
    // The same, and fills `failure` (all but its unit) when the condition could not be
    // evaluated. The default evaluates and reports nothing.
    virtual int evaluateReporting(DirectedGraph& graph, const std::atomic<int>& abortFlag,
                                  KoralConditionFailure& failure);
};

}  // namespace vellum
