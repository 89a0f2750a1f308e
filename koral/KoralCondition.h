// A compiled condition of a Koral module (initial, terminal, if and while conditions): made by a
// graph class handler from the condition's text, owned by the module that asked for it, and
// evaluated on the graph the unit runs on. The condition language is the handler's own.
#pragma once

#include <atomic>

namespace vellum {

class DirectedGraph;

class KoralCondition {
  public:
    // The module deletes conditions through this destructor, whichever library made them.
    virtual ~KoralCondition();
    // 1 for true; any other value is false. A long evaluation should give up (with 0) once
    // `abortFlag` is 1, the user's Stop.
    virtual int evaluate(DirectedGraph& graph, const std::atomic<int>& abortFlag) = 0;
};

}  // namespace vellum
