#include "koral/KoralIf.h"

#include "koral/KoralException.h"
#include "koral/KoralRun.h"
#include "koral/KoralUnit.h"

namespace vellum {

koralIf::koralIf(std::unique_ptr<KoralCondition> condition, koralSourcePosition position)
    : koralStatement(std::move(position)), condition_(std::move(condition)) {}

void koralIf::evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                       KoralRun& run) const {
    const auto nesting = run.enter(unit);
    run.trace(position(), frame);
    const bool holds = run.holds(*condition_, graph, unit);
    if (run.aborted())
        return;
    if (!holds) {
        evaluateStatements(else_, graph, unit, frame, run);
        return;
    }
    if (then_.empty())
        throw koralRuntimeException("Then part missing!!!", "koralEvalIf", &unit, unit.name());
    evaluateStatements(then_, graph, unit, frame, run);
}

}  // namespace vellum
