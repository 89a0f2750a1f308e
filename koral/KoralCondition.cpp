#include "koral/KoralCondition.h"

namespace vellum {

// Defined here so that the interface's type information lives in the koral library.
KoralCondition::~KoralCondition() = default;

int KoralCondition::evaluateReporting(DirectedGraph& graph, const std::atomic<int>& abortFlag,
                                      KoralConditionFailure&) {
    return evaluate(graph, abortFlag);
}

}  // namespace vellum
