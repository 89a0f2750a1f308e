// A transformation unit of a Koral module: an optional initial condition, a body of statements
// and an optional terminal condition. The interpreter runs a unit on a graph; an apply
// statement may run a unit as one of its alternatives, in the same way.
#pragma once

#include <memory>
#include <string>

#include "koral/KoralCondition.h"
#include "koral/KoralSourcePosition.h"
#include "koral/KoralStatement.h"

namespace vellum {

class koralModule;

class koralUnit {
  public:
    koralUnit(std::string name, const koralModule& module, koralSourcePosition position);
    koralUnit(const koralUnit&) = delete;
    koralUnit& operator=(const koralUnit&) = delete;

    const std::string& name() const { return name_; }
    const koralModule& module() const { return module_; }
    const koralSourcePosition& position() const { return position_; }

    void setInitialCondition(std::unique_ptr<KoralCondition> condition,
                             koralSourcePosition position);
    void setTerminalCondition(std::unique_ptr<KoralCondition> condition,
                              koralSourcePosition position);
    bool hasInitialCondition() const { return initial_ != nullptr; }
    bool hasTerminalCondition() const { return terminal_ != nullptr; }
    // Where the conditions stand in the module file ("initial : (...)"); null without one.
    const koralSourcePosition* initialPosition() const {
        return initial_ ? &initialPosition_ : nullptr;
    }
    const koralSourcePosition* terminalPosition() const {
        return terminal_ ? &terminalPosition_ : nullptr;
    }

    StatementList& body() { return body_; }
    const StatementList& body() const { return body_; }

    // Checks the initial condition, runs the body and checks the terminal condition. A false
    // condition throws koralInitialConditionViolated or koralTerminalConditionViolated for this
    // unit, unless the run was stopped meanwhile; returns early once the abort flag is 1.
    void evaluate(DirectedGraph& graph, KoralFrame* frame, KoralRun& run) const;

  private:
    std::string name_;
    const koralModule& module_;
    koralSourcePosition position_;
    std::unique_ptr<KoralCondition> initial_;
    koralSourcePosition initialPosition_;
    std::unique_ptr<KoralCondition> terminal_;
    koralSourcePosition terminalPosition_;
    StatementList body_;
};

}  // namespace vellum
