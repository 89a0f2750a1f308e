// One rewriting step: replaces an occurrence of a rule's left-hand side in the host graph by the
// right-hand side. Its cost depends on the size of the rule and the degrees of the matched
// vertices, not on the size of the host.
#pragma once

#include <string>

#include "graph/InlineVector.h"

#include "graph/DirectedGraphRule.h"
#include "graph/PreparedRule.h"
#include "graph/RuleContext.h"
#include "graph/RuleEvents.h"

namespace vellum {

// The phases run in this order, and the step stops at the first operation that fails:
// preparation (bindings of the variables), deleting the left-hand edges and then the vertices
// that the rule does not keep, the intermediate event, creating or updating the right-hand
// vertices and then edges (labels, attributes, expressions), completion. Library functions in
// the expressions see the objects the step keeps (RuleContext).
class RewritingStep {
  public:
    RewritingStep(const DirectedGraphRule& rule, DirectedGraph& host, const RuleCallback& callback);

    // Rewrites at `occurrence` (empty for an empty left-hand side). True on success. On
    // failure the host keeps the changes made before it and no object the step deleted remains
    // referenced by the host; a failure the rule itself causes (an expression, an interface
    // that keeps an edge of a deleted vertex or pairs a right-hand object with nothing) is
    // explained by one console line, a failing graph operation only by the result.
    // `intermediateEvent` says whether event 2002 is sent between deletion and creation.
    bool run(const GraphMorphism& occurrence, bool intermediateEvent);

    // After a successful run: the occurrence restricted to the pairs whose host objects the
    // step kept. Worked out only when the step has a callback, the one that is told of it.
    const GraphMorphism& survivors() const { return survivors_; }

  private:
    bool prepare(const GraphMorphism& occurrence);
    bool deleteEdges(const GraphMorphism& occurrence);
    bool deleteVertices(const GraphMorphism& occurrence);
    bool updateVertices(const GraphMorphism& occurrence);
    bool updateEdges(const GraphMorphism& occurrence);
    void complete(const GraphMorphism& occurrence);
    // The pairs of the occurrence whose host objects the deletions left in the graph.
    GraphMorphism keptPart(const GraphMorphism& occurrence) const;
    DirectedGraphVertex* hostVertexFor(int rightIndex) const;
    bool fail(const std::string& problem) const;

    const DirectedGraphRule& rule_;
    const PreparedRule& prepared_;
    DirectedGraph& host_;
    const RuleCallback& callback_;
    Environment bindings_;
    RuleContext context_;
    // Inline while the rule is small (see InlineVector).
    InlineVector<DirectedGraphEdge*, 8> removedEdges_;  // host edges destroyed by this step
    // By right-hand vertex: its host counterpart or the vertex created for it.
    InlineVector<DirectedGraphVertex*, 8> hostVertices_;
    InlineVector<DirectedGraphVertex*, 8> created_;
    GraphMorphism survivors_;
};

}  // namespace vellum
