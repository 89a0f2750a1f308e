// The statement `if (CONDITION) then STATEMENTS [else STATEMENTS] end`. The condition is the
// graph class handler's; the module compiler fills both branches in place while it reads them.
#pragma once

#include <memory>

#include "koral/KoralCondition.h"
#include "koral/KoralStatement.h"

namespace vellum {

class koralIf : public koralStatement {
  public:
    koralIf(std::unique_ptr<KoralCondition> condition, koralSourcePosition position);

    StatementList& thenStatements() { return then_; }
    StatementList& elseStatements() { return else_; }
    const StatementList& thenStatements() const { return then_; }
    const StatementList& elseStatements() const { return else_; }

    // When the condition holds, an empty then-branch throws koralRuntimeException "Then part
    // missing!!!" (class "koralEvalIf"): it is empty when every call in it failed to bind.
    void evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                  KoralRun& run) const override;

  private:
    std::unique_ptr<KoralCondition> condition_;
    StatementList then_;
    StatementList else_;  // empty also when the statement has no else
};

}  // namespace vellum
