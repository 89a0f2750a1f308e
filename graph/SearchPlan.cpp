#include "graph/SearchPlan.h"

#include <algorithm>
#include <tuple>

namespace vellum {
namespace {

// How attractive an unplaced vertex is as the next step: more ties to placed vertices, then a
// label rather than the wildcard, then more edges, then the earlier vertex.
using Preference = std::tuple<int, bool, std::size_t, int>;

Preference preference(const PatternStructure& pattern, int vertex,
                      const std::vector<bool>& placed) {
    int ties = 0;
    for (const PatternEdge& edge : pattern.edges()) {
        const bool out = edge.source == vertex && edge.target != vertex && placed[edge.target];
        const bool in = edge.target == vertex && edge.source != vertex && placed[edge.source];
        if (out || in)
            ++ties;
    }
    const DirectedGraphVertex& v = *pattern.vertices()[vertex];
    return {ties, !isWildcard(v.label()), v.outDegree() + v.inDegree(), -vertex};
}

}  // namespace

SearchPlan::SearchPlan(const PatternStructure& pattern, int start)
    : SearchPlan(pattern, std::vector<int>{start}) {}

SearchPlan::SearchPlan(const PatternStructure& pattern, const std::vector<int>& starts) {
    const std::vector<int> order = placementOrder(pattern, starts);
    std::vector<int> stepOf(pattern.vertexCount(), -1);
    for (int vertex : order) {
        addStep(pattern, vertex, stepOf);
        stepOf[vertex] = static_cast<int>(steps_.size()) - 1;
    }
}

SearchPlan SearchPlan::anchoredAtEdge(const PatternStructure& pattern, int anchorEdge) {
    const PatternEdge& edge = pattern.edges()[static_cast<std::size_t>(anchorEdge)];
    SearchPlan plan(pattern, edge.source);
    plan.anchorLabel_ = &edge.edge->label();
    return plan;
}

SearchPlan SearchPlan::seeded(const PatternStructure& pattern, const std::vector<int>& seeded) {
    SearchPlan plan(pattern, seeded);
    for (PlanStep& step : plan.steps_)
        step.seeded = std::find(seeded.begin(), seeded.end(), step.vertex) != seeded.end();
    return plan;
}

std::vector<int> SearchPlan::placementOrder(const PatternStructure& pattern,
                                            const std::vector<int>& starts) const {
    const int count = static_cast<int>(pattern.vertexCount());
    std::vector<int> order;
    if (count == 0)
        return order;
    std::vector<bool> placed(pattern.vertexCount(), false);
    for (int start : starts) {
        if (!placed[start])
            order.push_back(start);
        placed[start] = true;
    }
    while (static_cast<int>(order.size()) < count) {
        int best = -1;
        Preference bestPreference{};
        for (int vertex = 0; vertex < count; ++vertex) {
            if (placed[vertex])
                continue;
            const Preference candidate = preference(pattern, vertex, placed);
            if (best < 0 || candidate > bestPreference) {
                best = vertex;
                bestPreference = candidate;
            }
        }
        order.push_back(best);
        placed[best] = true;
    }
    return order;
}

void SearchPlan::addStep(const PatternStructure& pattern, int vertex,
                         const std::vector<int>& stepOf) {
    const DirectedGraphVertex& v = *pattern.vertices()[vertex];
    PlanStep step;
    step.vertex = vertex;
    step.label = isWildcard(v.label()) ? nullptr : &v.label();
    step.outDegree = v.outDegree();
    step.inDegree = v.inDegree();
    auto tie = [&step](int earlier, Tie direction) {
        const bool known = std::any_of(step.links.begin(), step.links.end(), [&](const auto& l) {
            return l.step == earlier && l.tie == direction;
        });
        if (!known)
            step.links.push_back({earlier, direction});
    };
    for (const PatternEdge& edge : pattern.edges()) {
        if (edge.source == vertex && edge.target == vertex)
            step.hasLoop = true;
        else if (edge.source == vertex && stepOf[edge.target] >= 0)
            tie(stepOf[edge.target], Tie::ToEarlier);
        else if (edge.target == vertex && stepOf[edge.source] >= 0)
            tie(stepOf[edge.source], Tie::FromEarlier);
    }
    steps_.push_back(std::move(step));
}

}  // namespace vellum
