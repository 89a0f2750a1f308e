#include "plugins/DirectedGraph/GraphCondition.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/Console.h"
#include "graph/PreparedRule.h"

namespace vellum {
namespace {

// Counts beyond the integers of the language are shown as the largest one.
Value countValue(std::size_t count) {
    constexpr auto kLargest = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
    return Value::integer(static_cast<std::int32_t>(std::min(count, kLargest)));
}

bool isAborted(const std::atomic<int>& abortFlag) {
    return abortFlag.load() == 1;
}

// The exception's own short text without its "exprException: " prefix.
std::string meaningOf(const exprException& error) {
    constexpr std::string_view kPrefix = "exprException: ";
    std::string_view text = error.what();
    if (text.substr(0, kPrefix.size()) == kPrefix)
        text.remove_prefix(kPrefix.size());
    return std::string(text);
}

}  // namespace

GraphCondition::GraphCondition(std::string text, std::unique_ptr<Expression> expression,
                               std::vector<Binding> plan,
                               std::vector<std::unique_ptr<DirectedGraphRule>> rules)
    : text_(std::move(text)),
      expression_(std::move(expression)),
      plan_(std::move(plan)),
      rules_(std::move(rules)) {}

int GraphCondition::evaluate(DirectedGraph& graph, const std::atomic<int>& abortFlag) {
    KoralConditionFailure unheard;
    return evaluateReporting(graph, abortFlag, unheard);
}

int GraphCondition::evaluateReporting(DirectedGraph& graph, const std::atomic<int>& abortFlag,
                                      KoralConditionFailure& failure) {
    std::lock_guard<std::mutex> lock(mutex_);
    environment_.clear();
    if (!bind(graph, abortFlag, environment_))
        return 0;
    try {
        const std::unique_ptr<Value> value = expression_->evaluate(environment_);
        if (value == nullptr)
            return fail("no value", {}, failure);
        if (!value->is(ValueType::Boolean))
            return fail(
                std::string("the value is ") + valueTypeName(value->type()) + ", not boolean", {},
                failure);
        return value->asBoolean() ? 1 : 0;
    } catch (const exprException& error) {
        return fail("exprException " + std::to_string(error.code()), meaningOf(error), failure);
    }
}

bool GraphCondition::bind(DirectedGraph& graph, const std::atomic<int>& abortFlag,
                          Environment& environment) const {
    if (isAborted(abortFlag))
        return false;
    for (const Binding& binding : plan_) {
        const bool search = binding.meaning.kind == ConditionNameKind::Applicable;
        if (search && isAborted(abortFlag))
            return false;
        environment.bind(binding.name, valueOf(binding, graph));
    }
    return true;
}

Value GraphCondition::valueOf(const Binding& binding, DirectedGraph& graph) {
    const std::string& argument = binding.meaning.argument;
    switch (binding.meaning.kind) {
        case ConditionNameKind::VertexCount:
            return countValue(graph.vertexCount());
        case ConditionNameKind::EdgeCount:
            return countValue(graph.edgeCount());
        case ConditionNameKind::VertexLabelCount:
            return countValue(graph.vertexCount(argument));
        case ConditionNameKind::EdgeLabelCount:
            return countValue(graph.edgeCount(argument));
        case ConditionNameKind::Applicable:
            return Value::boolean(isApplicable(*binding.rule, graph));
    }
    return Value::boolean(false);
}

bool GraphCondition::isApplicable(const DirectedGraphRule& rule, DirectedGraph& graph) {
    // Application applies a rule without left-hand vertices once, without any test.
    if (rule.prepared().leftSideEmpty())
        return true;
    GraphMorphism occurrence;
    return rule.match(graph, occurrence, 1);
}

int GraphCondition::fail(std::string problem, std::string meaning,
                         KoralConditionFailure& failure) const {
    console() << "Condition '" << text_ << "' failed: " << problem << "\n";
    failure.condition = text_;
    failure.problem = std::move(problem);
    failure.meaning = std::move(meaning);
    return 0;
}

}  // namespace vellum
