#include "koral/KoralWhile.h"

#include "koral/KoralRun.h"

namespace vellum {

koralWhile::koralWhile(std::unique_ptr<KoralCondition> condition, koralSourcePosition position)
    : koralStatement(std::move(position)), condition_(std::move(condition)) {}

void koralWhile::evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                          KoralRun& run) const {
    const auto nesting = run.enter(unit);
    run.trace(position(), frame);
    while (!run.aborted() && run.holds(*condition_, graph, unit))
        evaluateStatements(body_, graph, unit, frame, run);
}

}  // namespace vellum
