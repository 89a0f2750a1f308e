// The statements of a transformation unit's body (call, apply, if, while): a tree built by the
// module compiler and walked by the interpreter. Each statement knows where it stands in the
// module text, which the interpreter reports to the frame as it starts the statement.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "graph/DirectedGraph.h"
#include "koral/KoralFrame.h"
#include "koral/KoralSourcePosition.h"

namespace vellum {

class KoralRun;
class koralUnit;

class koralStatement {
  public:
    explicit koralStatement(koralSourcePosition position) : position_(std::move(position)) {}
    virtual ~koralStatement();
    koralStatement(const koralStatement&) = delete;
    koralStatement& operator=(const koralStatement&) = delete;

    const koralSourcePosition& position() const { return position_; }

    // Runs the statement on the graph as part of `unit`; `frame` (may be null) hears of each
    // step. Returns early once the run's abort flag is 1. Failures throw koralRuntimeException
    // (or one of the condition kinds); the graph keeps the changes made so far. A statement kind
    // without code of its own throws "No code given" (class "koralEvaluate").
    virtual void evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                          KoralRun& run) const;

  private:
    koralSourcePosition position_;
};

using StatementList = std::vector<std::unique_ptr<koralStatement>>;

// Evaluates the statements in order; returns at once after a statement that ended with the
// abort flag set.
void evaluateStatements(const StatementList& statements, DirectedGraph& graph,
                        const koralUnit& unit, KoralFrame* frame, KoralRun& run);

}  // namespace vellum
