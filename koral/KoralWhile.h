// The statement `while (CONDITION) do STATEMENTS end`: repeats its body as long as the graph
// class handler's condition holds. There is no limit on the number of rounds; the user's Stop
// ends the loop.
#pragma once

#include <memory>

#include "koral/KoralCondition.h"
#include "koral/KoralStatement.h"

namespace vellum {

class koralWhile : public koralStatement {
  public:
    koralWhile(std::unique_ptr<KoralCondition> condition, koralSourcePosition position);

    StatementList& body() { return body_; }
    const StatementList& body() const { return body_; }

    void evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                  KoralRun& run) const override;

  private:
    std::unique_ptr<KoralCondition> condition_;
    StatementList body_;
};

}  // namespace vellum
