#include "koral/KoralCall.h"

#include "koral/KoralException.h"
#include "koral/KoralRun.h"
#include "koral/KoralUnit.h"

namespace vellum {

koralCall::koralCall(const std::string& identifier, koralSourcePosition position)
    : koralStatement(std::move(position)), binding_(identifier) {}

void koralCall::evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                         KoralRun& run) const {
    run.trace(position(), frame);
    const auto start = KoralStatistics::Clock::now();
    const bool succeeded = binding_.call(graph, frame);
    if (KoralStatistics* statistics = run.statistics())
        statistics->addCall(KoralStatistics::Clock::now() - start);
    if (!succeeded)
        throw koralRuntimeException(binding_.error(&unit), "koralEvalCall", &unit, unit.name());
}

}  // namespace vellum
