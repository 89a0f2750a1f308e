// Everything about a rule that application needs and that does not depend on the host graph,
// worked out once when the rule is first used: which left- and right-hand objects are kept,
// the left-hand partner of each kept right-hand object, the declared variables, the built
// application condition and attribute expressions, the matcher with its search plans, and the
// patterns its expressions name (filled as they are first used).
// A rule drops its prepared form whenever it is changed through its own interface.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "grammar/Expression.h"
#include "graph/AttributeTransfer.h"
#include "graph/GraphMorphism.h"
#include "graph/Matcher.h"
#include "graph/PatternCache.h"
#include "graph/VariableBinding.h"

namespace vellum {

struct RightVertexPlan {
    DirectedGraphVertex* vertex = nullptr;
    bool kept = false;
    // The left-hand vertex whose image is the host counterpart of a kept vertex; null for a
    // new vertex, and for a kept one whose interface pair has no left side.
    DirectedGraphVertex* partner = nullptr;
    std::vector<TransferItem> attributes;
};

struct RightEdgePlan {
    DirectedGraphEdge* edge = nullptr;
    bool kept = false;
    DirectedGraphEdge* partner = nullptr;  // as for vertices
    int source = -1;                       // index of the source among the right-hand vertices
    int target = -1;
    std::vector<TransferItem> attributes;
};

class PreparedRule {
  public:
    PreparedRule(DirectedGraph& left, const GraphMorphism& interface, DirectedGraph& right,
                 const std::string& condition);

    const Matcher& matcher() const { return matcher_; }
    bool leftSideEmpty() const { return matcher_.pattern().vertexCount() == 0; }

    // Left-hand objects that a step deletes, in list order.
    const std::vector<DirectedGraphEdge*>& deletedEdges() const { return deletedEdges_; }
    const std::vector<DirectedGraphVertex*>& deletedVertices() const { return deletedVertices_; }
    bool isDeleted(const GraphObject* leftObject) const { return deleted_.count(leftObject) > 0; }

    const std::vector<RightVertexPlan>& rightVertices() const { return rightVertices_; }
    const std::vector<RightEdgePlan>& rightEdges() const { return rightEdges_; }

    const std::vector<RuleVariable>& variables() const { return variables_; }
    // True when some right-hand attribute expression may read a variable.
    bool needsBindings() const { return needsBindings_; }
    // True when the condition may read a variable: it names one, or calls a library other
    // than "$(graph" (whose functions reach the matched objects through the rule's context),
    // which sees the variables the condition is evaluated with.
    bool conditionNeedsBindings() const { return conditionNeedsBindings_; }

    bool hasCondition() const { return hasCondition_; }
    // The built condition; null when there is none or it did not build (see conditionFailure).
    const Expression* condition() const { return condition_.get(); }
    int conditionFailure() const { return conditionFailure_; }

    // True when the interface keeps a left-hand edge but not its source or target: a step
    // would leave that edge without an endpoint, so such a rule is never applied.
    bool keepsEdgeOfDeletedVertex() const { return keepsEdgeOfDeletedVertex_; }

    // The patterns that the expressions name, read on first use. Like the matcher, for one
    // application of the rule at a time.
    PatternCache& patterns() const { return patterns_; }

  private:
    void classifyLeftSide(DirectedGraph& left, const GraphMorphism& interface,
                          DirectedGraph& right);
    void planRightSide(const GraphMorphism& interface, DirectedGraph& right);
    void collectVariables(DirectedGraph& left);
    void buildCondition(const std::string& condition);

    Matcher matcher_;
    std::vector<DirectedGraphEdge*> deletedEdges_;
    std::vector<DirectedGraphVertex*> deletedVertices_;
    std::unordered_set<const GraphObject*> deleted_;
    std::vector<RightVertexPlan> rightVertices_;
    std::vector<RightEdgePlan> rightEdges_;
    std::vector<RuleVariable> variables_;
    bool needsBindings_ = false;
    bool conditionNeedsBindings_ = false;
    bool hasCondition_ = false;
    std::unique_ptr<Expression> condition_;
    int conditionFailure_ = -1;
    bool keepsEdgeOfDeletedVertex_ = false;
    mutable PatternCache patterns_;
};

}  // namespace vellum
