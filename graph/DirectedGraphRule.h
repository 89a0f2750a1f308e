// A graph rule: a left-hand side to be found in a host graph, a right-hand side that replaces
// it, an interface that pairs the left-hand objects that survive with their right-hand
// counterparts, and an optional application condition (an expression over the variables that
// left-hand objects declare). The rule owns its three parts.
#pragma once

#include <memory>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/GraphMorphism.h"

namespace vellum {

class PreparedRule;

// The rule is prepared for application on first use (see PreparedRule) and keeps that form
// until it is changed through one of its own non-const accessors or setters, which drop it.
// Changes made later through a reference obtained before are not seen: get the reference anew.
class DirectedGraphRule {
  public:
    DirectedGraphRule();
    virtual ~DirectedGraphRule();
    DirectedGraphRule(const DirectedGraphRule&) = delete;
    DirectedGraphRule& operator=(const DirectedGraphRule&) = delete;

    // "DirectedGraphRule"; rule classes of extension libraries name themselves.
    virtual const std::string& className() const;

    const std::string& name() const { return name_; }
    void setName(std::string name);

    const DirectedGraph& leftSide() const { return *left_; }
    const DirectedGraph& rightSide() const { return *right_; }
    const GraphMorphism& interface() const { return interface_; }
    // Mutable access; each call drops the prepared form.
    DirectedGraph& editLeftSide();
    DirectedGraph& editRightSide();
    GraphMorphism& editInterface();

    // The expression text, without brackets; empty when the rule has none.
    const std::string& condition() const { return condition_; }
    void setCondition(std::string text);

    // True when some left-hand vertex or edge declares a variable.
    bool hasVariables() const;

    // The rule's own match operation. With `flag` 1 it finds an occurrence of the left-hand
    // side that passes the dangling test and the application condition; with 0 any
    // occurrence. Deterministic: the first such occurrence along the search plan. False, with
    // `occurrence` unspecified, when there is none. Condition errors go to the console once per
    // call.
    virtual bool match(DirectedGraph& host, GraphMorphism& occurrence, int flag) const;

    // The prepared form, made now if needed. Valid until the rule is next changed.
    const PreparedRule& prepared() const;

  private:
    void invalidate();

    std::string name_;
    std::unique_ptr<DirectedGraph> left_;
    GraphMorphism interface_;
    std::unique_ptr<DirectedGraph> right_;
    std::string condition_;
    // Null until first use after a change. Declared last: it refers to the sides, so it is
    // destroyed before them.
    mutable std::unique_ptr<PreparedRule> prepared_;
};

}  // namespace vellum
