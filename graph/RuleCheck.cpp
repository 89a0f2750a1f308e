#include "graph/RuleCheck.h"

#include "graph/AttributeExpression.h"
#include "graph/ReaderMessages.h"
#include "graph/RuleObjectData.h"

namespace vellum {
namespace {

bool hasExpression(const GraphObject& element) {
    for (const Attribute& attribute : element.attributes())
        if (expressionOf(attribute) != nullptr)
            return true;
    return false;
}

// Whether some vertex or edge of `side` passes `test`.
template <typename Test>
bool anyElement(const DirectedGraph& side, Test test) {
    for (const DirectedGraphVertex& vertex : side.vertices())
        if (test(vertex))
            return true;
    for (const DirectedGraphEdge& edge : side.edges())
        if (test(edge))
            return true;
    return false;
}

}  // namespace

std::string readerRefusal(const DirectedGraphRule& rule) {
    for (const DirectedGraphVertex& vertex : rule.leftSide().vertices())
        if (referenceOf(vertex) != nullptr)
            return ruleMessages::referenceOnLeft;
    if (anyElement(rule.rightSide(), [](const GraphObject& e) { return !variableOf(e).empty(); }))
        return ruleMessages::variableOnRight;
    if (anyElement(rule.leftSide(), hasExpression))
        return ruleMessages::expressionOnLeft;
    if (!rule.hasVariables() && anyElement(rule.rightSide(), hasExpression))
        return ruleMessages::noVariables;
    return {};
}

}  // namespace vellum
