#include "graph/PreparedRule.h"

#include <algorithm>
#include <unordered_map>

#include "graph/GraphFunctions.h"
#include "graph/RuleObjectData.h"

namespace vellum {
namespace {

bool anyExpression(const std::vector<TransferItem>& items) {
    return std::any_of(items.begin(), items.end(), [](const TransferItem& item) {
        return item.expression != nullptr || item.buildFailure >= 0;
    });
}

// Whether the condition may read a variable (one that did not build counts as reading).
bool readsVariables(const std::unique_ptr<Expression>& condition) {
    if (!condition)
        return true;
    if (!condition->variableNames().empty())
        return true;
    const std::vector<CallSite> calls = condition->calls();
    return std::any_of(calls.begin(), calls.end(),
                       [](const CallSite& call) { return call.library != kGraphLibrary; });
}

}  // namespace

PreparedRule::PreparedRule(DirectedGraph& left, const GraphMorphism& interface,
                           DirectedGraph& right, const std::string& condition)
    : matcher_(left) {
    classifyLeftSide(left, interface, right);
    planRightSide(interface, right);
    collectVariables(left);
    buildCondition(condition);
    bool expressions = false;
    for (const RightVertexPlan& plan : rightVertices_)
        expressions = expressions || anyExpression(plan.attributes);
    for (const RightEdgePlan& plan : rightEdges_)
        expressions = expressions || anyExpression(plan.attributes);
    needsBindings_ = !variables_.empty() && expressions;
    conditionNeedsBindings_ = !variables_.empty() && hasCondition_ && readsVariables(condition_);
}

void PreparedRule::classifyLeftSide(DirectedGraph& left, const GraphMorphism& interface,
                                    DirectedGraph& right) {
    // A left-hand vertex that a right-hand vertex refers to stays, as if paired with it.
    std::unordered_set<const DirectedGraphVertex*> referenced;
    for (const DirectedGraphVertex& vertex : right.vertices()) {
        if (DirectedGraphVertex* reference = referenceOf(vertex))
            referenced.insert(reference);
    }
    for (DirectedGraphVertex& vertex : left.vertices()) {
        if (interface.hasPair(&vertex) || referenced.count(&vertex) > 0)
            continue;
        deletedVertices_.push_back(&vertex);
        deleted_.insert(&vertex);
    }
    for (DirectedGraphEdge& edge : left.edges()) {
        if (!interface.hasPair(&edge)) {
            deletedEdges_.push_back(&edge);
            deleted_.insert(&edge);
        } else if (isDeleted(edge.source()) || isDeleted(edge.target())) {
            keepsEdgeOfDeletedVertex_ = true;
        }
    }
}

void PreparedRule::planRightSide(const GraphMorphism& interface, DirectedGraph& right) {
    std::unordered_map<const DirectedGraphVertex*, int> index;
    for (DirectedGraphVertex& vertex : right.vertices()) {
        RightVertexPlan plan;
        plan.vertex = &vertex;
        if (interface.isImage(&vertex)) {
            plan.kept = true;
            plan.partner = interface.partnerOf(&vertex);
        } else if (DirectedGraphVertex* reference = referenceOf(vertex)) {
            plan.kept = true;
            plan.partner = reference;
        }
        plan.attributes = transferItemsOf(vertex);
        index.emplace(&vertex, static_cast<int>(rightVertices_.size()));
        rightVertices_.push_back(std::move(plan));
    }
    auto indexOf = [&index](const DirectedGraphVertex* vertex) {
        const auto at = index.find(vertex);
        return at == index.end() ? -1 : at->second;
    };
    for (DirectedGraphEdge& edge : right.edges()) {
        RightEdgePlan plan;
        plan.edge = &edge;
        plan.kept = interface.isImage(&edge);
        plan.partner = plan.kept ? interface.partnerOf(&edge) : nullptr;
        plan.source = indexOf(edge.source());
        plan.target = indexOf(edge.target());
        plan.attributes = transferItemsOf(edge);
        rightEdges_.push_back(std::move(plan));
    }
}

void PreparedRule::collectVariables(DirectedGraph& left) {
    variables_ = declaredVariables(left);
}

void PreparedRule::buildCondition(const std::string& condition) {
    hasCondition_ = !condition.empty();
    if (!hasCondition_)
        return;
    try {
        condition_ = std::make_unique<Expression>(condition);
    } catch (const exprException& error) {
        conditionFailure_ = error.code();
    }
}

}  // namespace vellum
