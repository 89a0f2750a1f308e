#include "koral/KoralRun.h"

#include <algorithm>

#include "koral/KoralException.h"
#include "koral/KoralUnit.h"

namespace vellum {
namespace {

// Keeps each failure once: a condition inside a loop may fail on every round.
void record(KoralConditionFailure failure, std::vector<KoralConditionFailure>& failures) {
    const auto same = [&failure](const KoralConditionFailure& known) {
        return known.unit == failure.unit && known.condition == failure.condition &&
               known.problem == failure.problem;
    };
    if (std::find_if(failures.begin(), failures.end(), same) == failures.end())
        failures.push_back(std::move(failure));
}

}  // namespace

void KoralRun::trace(const koralSourcePosition& position, KoralFrame* frame) const {
    if (listeners_.trace != nullptr && *listeners_.trace)
        (*listeners_.trace)(position);
    if (frame != nullptr)
        frame->notify(StatementStarted{position});
}

void KoralRun::attempted(const RuleAttempt& attempt) const {
    if (tracesAttempts())
        (*listeners_.attempts)(attempt);
}

bool KoralRun::holds(KoralCondition& condition, DirectedGraph& graph, const koralUnit& unit) {
    KoralStatistics* const statistics = listeners_.statistics;
    const auto start = statistics != nullptr ? KoralStatistics::Clock::now()
                                             : KoralStatistics::Clock::time_point{};
    KoralConditionFailure failure;
    const bool result = condition.evaluateReporting(graph, abortFlag_, failure) == 1;
    if (statistics != nullptr)
        statistics->addCondition(KoralStatistics::Clock::now() - start);
    if (!failure.problem.empty() && listeners_.conditionFailures != nullptr) {
        failure.unit = unit.name();
        record(std::move(failure), *listeners_.conditionFailures);
    }
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
