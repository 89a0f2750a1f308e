#include "koral/KoralUnit.h"

#include "koral/KoralException.h"
#include "koral/KoralRun.h"

namespace vellum {

koralUnit::koralUnit(std::string name, const koralModule& module, koralSourcePosition position)
    : name_(std::move(name)), module_(module), position_(std::move(position)) {}

void koralUnit::setInitialCondition(std::unique_ptr<KoralCondition> condition,
                                    koralSourcePosition position) {
    initial_ = std::move(condition);
    initialPosition_ = std::move(position);
}

void koralUnit::setTerminalCondition(std::unique_ptr<KoralCondition> condition,
                                     koralSourcePosition position) {
    terminal_ = std::move(condition);
    terminalPosition_ = std::move(position);
}

void koralUnit::evaluate(DirectedGraph& graph, KoralFrame* frame, KoralRun& run) const {
    const auto nesting = run.enter(*this);
    run.trace(position_, frame);
    if (initial_ != nullptr) {
        run.trace(initialPosition_, frame);
        if (!run.holds(*initial_, graph, *this)) {
            if (run.aborted())
                return;
            throw koralInitialConditionViolated(this, name_);
        }
    }
    evaluateStatements(body_, graph, *this, frame, run);
    if (run.aborted() || terminal_ == nullptr)
        return;
    run.trace(terminalPosition_, frame);
    if (!run.holds(*terminal_, graph, *this) && !run.aborted())
        throw koralTerminalConditionViolated(this, name_);
}

}  // namespace vellum
