#include "koral/KoralStatement.h"

#include "koral/KoralException.h"
#include "koral/KoralRun.h"
#include "koral/KoralUnit.h"

namespace vellum {

koralStatement::~koralStatement() = default;

void koralStatement::evaluate(DirectedGraph& /*graph*/, const koralUnit& unit,
                              KoralFrame* /*frame*/, KoralRun& /*run*/) const {
    throw koralRuntimeException("No code given", "koralEvaluate", &unit, unit.name());
}

void evaluateStatements(const StatementList& statements, DirectedGraph& graph,
                        const koralUnit& unit, KoralFrame* frame, KoralRun& run) {
    for (const auto& statement : statements) {
        statement->evaluate(graph, unit, frame, run);
        if (run.aborted())
            return;
    }
}

}  // namespace vellum
