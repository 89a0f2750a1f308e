#include "graph/OccurrenceTests.h"

#include "base/Console.h"

namespace vellum {
namespace {

// True when every edge in the list is the image of a left-hand edge (lingering self-loop
// entries are no edges of the graph and do not count).
template <typename Edges>
bool allAccountedFor(const Edges& edges, const GraphMorphism& occurrence) {
    for (const DirectedGraphEdge& edge : edges) {
        if (edge.inGraph() && !occurrence.isImage(&edge))
            return false;
    }
    return true;
}

}  // namespace

OccurrenceTests::OccurrenceTests(const PreparedRule& rule, std::string ruleName,
                                 DirectedGraph& host)
    : rule_(rule), ruleName_(std::move(ruleName)), context_(host, rule, ruleName_) {}

bool OccurrenceTests::passes(const GraphMorphism& occurrence) {
    return danglingFree(occurrence) && conditionHolds(occurrence);
}

bool OccurrenceTests::danglingFree(const GraphMorphism& occurrence) const {
    for (const DirectedGraphVertex* left : rule_.deletedVertices()) {
        const DirectedGraphVertex* image = occurrence.imageOf(left);
        if (image == nullptr)
            return false;
        if (!allAccountedFor(image->outgoing(), occurrence) ||
            !allAccountedFor(image->incoming(), occurrence))
            return false;
    }
    return true;
}

bool OccurrenceTests::conditionHolds(const GraphMorphism& occurrence) {
    if (!rule_.hasCondition())
        return true;
    if (rule_.condition() == nullptr)
        return fail("exprException " + std::to_string(rule_.conditionFailure()));
    Environment bindings = rule_.conditionNeedsBindings()
                               ? bindVariables(rule_.variables(), occurrence)
                               : Environment();
    context_.bind(occurrence);
    bindings.setContext(&context_);
    try {
        const std::unique_ptr<Value> value = rule_.condition()->evaluate(bindings);
        if (value == nullptr)
            return fail("no value");
        if (!value->is(ValueType::Boolean))
            return fail(std::string("the value is ") + valueTypeName(value->type()) +
                        ", not boolean");
        return value->asBoolean();
    } catch (const exprException& error) {
        return fail("exprException " + std::to_string(error.code()));
    }
}

bool OccurrenceTests::fail(const std::string& problem) {
    if (!reported_) {
        console() << "Application condition of rule '" << ruleName_ << "' failed: " << problem
                  << "\n";
        reported_ = true;
    }
    return false;
}

}  // namespace vellum
