#include "koral/KoralRun.h"

#include "koral/KoralException.h"
#include "koral/KoralUnit.h"

namespace vellum {

void KoralRun::trace(const koralSourcePosition& position, KoralFrame* frame) const {
    if (hook_ != nullptr && *hook_)
        (*hook_)(position);
    if (frame != nullptr)
        frame->notify(KoralFrame::kStatementStarted, &position, 0, 0, 0);
}

bool KoralRun::holds(KoralCondition& condition, DirectedGraph& graph) {
    if (statistics_ == nullptr)
        return condition.evaluate(graph, abortFlag_) == 1;
    const auto start = KoralStatistics::Clock::now();
    const bool result = condition.evaluate(graph, abortFlag_) == 1;
    statistics_->addCondition(KoralStatistics::Clock::now() - start);
    return result;
}

KoralRun::Nesting KoralRun::enter(const koralUnit& unit) {
    if (depth_ >= kMaxNesting) {
        throw koralRuntimeException("Units and statements nested too deeply!!!", "koralEvaluate",
                                    &unit, unit.name());
    }
    return Nesting(depth_);
}

}  // namespace vellum
