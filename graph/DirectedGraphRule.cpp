#include "graph/DirectedGraphRule.h"

#include "graph/OccurrenceTests.h"
#include "graph/PreparedRule.h"
#include "graph/RuleObjectData.h"

namespace vellum {

DirectedGraphRule::DirectedGraphRule()
    : left_(std::make_unique<DirectedGraph>()), right_(std::make_unique<DirectedGraph>()) {}

DirectedGraphRule::~DirectedGraphRule() = default;

const std::string& DirectedGraphRule::className() const {
    static const std::string name = "DirectedGraphRule";
    return name;
}

void DirectedGraphRule::invalidate() {
    prepared_.reset();
}

void DirectedGraphRule::setName(std::string name) {
    name_ = std::move(name);
}

DirectedGraph& DirectedGraphRule::editLeftSide() {
    invalidate();
    return *left_;
}

DirectedGraph& DirectedGraphRule::editRightSide() {
    invalidate();
    return *right_;
}

GraphMorphism& DirectedGraphRule::editInterface() {
    invalidate();
    return interface_;
}

void DirectedGraphRule::setCondition(std::string text) {
    invalidate();
    condition_ = std::move(text);
}

bool DirectedGraphRule::hasVariables() const {
    for (const DirectedGraphVertex& vertex : left_->vertices()) {
        if (!variableOf(vertex).empty())
            return true;
    }
    for (const DirectedGraphEdge& edge : left_->edges()) {
        if (!variableOf(edge).empty())
            return true;
    }
    return false;
}

const PreparedRule& DirectedGraphRule::prepared() const {
    if (!prepared_)
        prepared_ = std::make_unique<PreparedRule>(*left_, interface_, *right_, condition_);
    return *prepared_;
}

bool DirectedGraphRule::match(DirectedGraph& host, GraphMorphism& occurrence, int flag) const {
    const PreparedRule& rule = prepared();
    if (flag == 0)
        return rule.matcher().findFirst(host, occurrence,
                                        [](const GraphMorphism&) { return true; });
    OccurrenceTests tests(rule, name_, host);
    return rule.matcher().findFirst(
        host, occurrence, [&tests](const GraphMorphism& found) { return tests.passes(found); });
}

}  // namespace vellum
