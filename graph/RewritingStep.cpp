#include "graph/RewritingStep.h"

#include <algorithm>

#include "base/Console.h"
#include "graph/GraphFormat.h"
#include "graph/IntegerAttribute.h"

namespace vellum {

RewritingStep::RewritingStep(const DirectedGraphRule& rule, DirectedGraph& host,
                             const RuleCallback& callback)
    : rule_(rule),
      prepared_(rule.prepared()),
      host_(host),
      callback_(callback),
      context_(host, rule.prepared(), rule.name()) {}

bool RewritingStep::fail(const std::string& problem) const {
    console() << "Rule '" << rule_.name() << "': " << problem << "\n";
    return false;
}

bool RewritingStep::run(const GraphMorphism& occurrence, bool intermediateEvent) {
    if (!prepare(occurrence) || !deleteEdges(occurrence) || !deleteVertices(occurrence))
        return false;
    if (prepared_.needsBindings()) {
        context_.bind(keptPart(occurrence));
        bindings_.setContext(&context_);
    }
    // Clean-up: no rule leaves edges without endpoints (see prepare), so none to remove.
    if (intermediateEvent && callback_)
        callback_(kEventIntermediate, nullptr, nullptr);
    if (!updateVertices(occurrence) || !updateEdges(occurrence))
        return false;
    complete(occurrence);
    return true;
}

bool RewritingStep::prepare(const GraphMorphism& occurrence) {
    if (prepared_.keepsEdgeOfDeletedVertex())
        return fail("the interface keeps an edge whose source or target the rule deletes");
    if (prepared_.needsBindings())
        bindings_ = bindVariables(prepared_.variables(), occurrence);
    return true;
}

bool RewritingStep::deleteEdges(const GraphMorphism& occurrence) {
    for (const DirectedGraphEdge* left : prepared_.deletedEdges()) {
        DirectedGraphEdge* image = occurrence.imageOf(left);
        // Parallel left-hand edges may share one host edge: the second removal must not touch
        // the destroyed edge, and fails as removing an edge that is gone does.
        const bool gone =
            std::find(removedEdges_.begin(), removedEdges_.end(), image) != removedEdges_.end();
        if (image == nullptr || gone || !host_.removeEdge(image))
            return false;
        removedEdges_.push_back(image);
    }
    return true;
}

bool RewritingStep::deleteVertices(const GraphMorphism& occurrence) {
    for (const DirectedGraphVertex* left : prepared_.deletedVertices()) {
        if (!host_.removeVertexOnly(occurrence.imageOf(left)))
            return false;
    }
    return true;
}

bool RewritingStep::updateVertices(const GraphMorphism& occurrence) {
    const auto& plans = prepared_.rightVertices();
    hostVertices_.assign(plans.size(), nullptr);
    for (std::size_t i = 0; i < plans.size(); ++i) {
        const RightVertexPlan& plan = plans[i];
        DirectedGraphVertex* vertex = nullptr;
        if (plan.kept) {
            // The partner is kept, so its image is alive.
            vertex = plan.partner != nullptr ? occurrence.imageOf(plan.partner) : nullptr;
            if (vertex == nullptr || !host_.contains(*vertex))
                return fail("a kept right-hand vertex has no counterpart in the host graph");
            if (!isWildcard(plan.vertex->label()))
                vertex->setLabel(plan.vertex->label());
        } else {
            vertex = host_.createVertex(plan.vertex->label());
            // Marks the vertex with the right-hand vertex it was made from, until complete().
            vertex->addAttribute(
                std::make_unique<IntegerAttribute>(kNumberAttribute, static_cast<int>(i) + 1));
            created_.push_back(vertex);
        }
        hostVertices_[i] = vertex;
        if (!transferAttributes(plan.attributes, *vertex, bindings_, rule_.name()))
            return false;
    }
    return true;
}

DirectedGraphVertex* RewritingStep::hostVertexFor(int rightIndex) const {
    if (rightIndex < 0 || static_cast<std::size_t>(rightIndex) >= hostVertices_.size())
        return nullptr;
    return hostVertices_[static_cast<std::size_t>(rightIndex)];
}

bool RewritingStep::updateEdges(const GraphMorphism& occurrence) {
    for (const RightEdgePlan& plan : prepared_.rightEdges()) {
        DirectedGraphEdge* edge = nullptr;
        if (plan.kept) {
            // A deleted parallel edge may have shared the partner's image.
            edge = plan.partner != nullptr ? occurrence.imageOf(plan.partner) : nullptr;
            const bool gone =
                std::find(removedEdges_.begin(), removedEdges_.end(), edge) != removedEdges_.end();
            if (edge == nullptr || gone)
                return fail("a kept right-hand edge has no counterpart in the host graph");
            if (!isWildcard(plan.edge->label()))
                edge->setLabel(plan.edge->label());
        } else {
            edge = host_.createEdge(hostVertexFor(plan.source), hostVertexFor(plan.target),
                                    plan.edge->label());
            if (edge == nullptr)
                return false;
        }
        if (!transferAttributes(plan.attributes, *edge, bindings_, rule_.name()))
            return false;
    }
    return true;
}

void RewritingStep::complete(const GraphMorphism& occurrence) {
    // Only this step's vertices carry the mark: every earlier load or step removed its own.
    for (DirectedGraphVertex* vertex : created_)
        vertex->removeAttribute(kNumberAttribute);
    survivors_.clear();
    if (callback_)
        survivors_ = keptPart(occurrence);
}

GraphMorphism RewritingStep::keptPart(const GraphMorphism& occurrence) const {
    GraphMorphism kept;
    kept.vertexPairs().reserve(occurrence.vertexPairs().size());
    kept.edgePairs().reserve(occurrence.edgePairs().size());
    for (const VertexPair& pair : occurrence.vertexPairs()) {
        if (!prepared_.isDeleted(pair.left))
            kept.addVertexPair(pair.left, pair.right);
    }
    for (const EdgePair& pair : occurrence.edgePairs()) {
        const bool gone = std::find(removedEdges_.begin(), removedEdges_.end(), pair.right) !=
                          removedEdges_.end();
        if (!prepared_.isDeleted(pair.left) && !gone)
            kept.addEdgePair(pair.left, pair.right);
    }
    return kept;
}

}  // namespace vellum
