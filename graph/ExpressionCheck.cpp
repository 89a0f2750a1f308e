#include "graph/ExpressionCheck.h"

#include <algorithm>

#include "grammar/Expression.h"
#include "graph/GraphFunctions.h"

namespace vellum {
namespace {

const RuleVariable* findVariable(const std::vector<RuleVariable>& variables,
                                 const std::string& name) {
    const auto at = std::find_if(variables.begin(), variables.end(),
                                 [&name](const RuleVariable& v) { return v.name == name; });
    return at == variables.end() ? nullptr : &*at;
}

// The calls of one expression checked against the library "$(graph" and the rule's variables.
class GraphCallCheck {
  public:
    GraphCallCheck(const std::string& text, const std::vector<RuleVariable>& variables,
                   const PatternLoader* loadPattern)
        : text_(text), variables_(variables), loadPattern_(loadPattern) {}

    ExpressionProblem check(const CallSite& call) const;

  private:
    ExpressionProblem argumentProblem(const CallSite& call, std::size_t index,
                                      GraphArgument kind) const;
    std::string variableProblem(const CallSite& call, const std::string& name) const;
    std::string patternProblem(const CallSite& call, const std::string& name) const;
    // The place of `part` in the text, searched from the call's own place.
    long offsetOf(const CallSite& call, const std::string& part) const {
        const std::size_t from = text_.find(call.text);
        const std::size_t at = text_.find(part, from == std::string::npos ? 0 : from);
        return at == std::string::npos ? 0L : static_cast<long>(at);
    }

    const std::string& text_;
    const std::vector<RuleVariable>& variables_;
    const PatternLoader* loadPattern_;
};

ExpressionProblem GraphCallCheck::check(const CallSite& call) const {
    const GraphFunction* function = findGraphFunction(call.function);
    if (function == nullptr)
        return {};  // reported as a function the library does not have
    const std::size_t wanted = function->arguments.size();
    if (call.arguments.size() != wanted) {
        return {"calls '" + call.text + "' with " + std::to_string(call.arguments.size()) +
                    " argument" + (call.arguments.size() == 1 ? "" : "s") + ", but it takes " +
                    std::to_string(wanted) + " (" + function->usage + ")",
                offsetOf(call, call.text)};
    }
    for (std::size_t i = 0; i < wanted; ++i) {
        ExpressionProblem problem = argumentProblem(call, i, function->arguments[i]);
        if (!problem.reason.empty())
            return problem;
    }
    return {};
}

ExpressionProblem GraphCallCheck::argumentProblem(const CallSite& call, std::size_t index,
                                                  GraphArgument kind) const {
    const std::optional<Value>& argument = call.arguments[index];
    if (!argument)
        return {};  // computed: known only when the rule is applied
    if (!argument->is(ValueType::String)) {
        return {"calls '" + call.text + "' with " + valueTypeName(argument->type()) +
                    " as argument " + std::to_string(index + 1) + ", which must be a string",
                offsetOf(call, call.text)};
    }
    const std::string name = argumentText(argument->asString());
    std::string reason;
    if (kind == GraphArgument::Vertex)
        reason = variableProblem(call, name);
    else if (kind == GraphArgument::Pattern)
        reason = patternProblem(call, name);
    return {reason, reason.empty() ? 0L : offsetOf(call, argument->asString())};
}

std::string GraphCallCheck::variableProblem(const CallSite& call, const std::string& name) const {
    const std::string start = "calls '" + call.text + "' for the variable '" + name + "', but ";
    const RuleVariable* variable = findVariable(variables_, name);
    if (variable == nullptr)
        return start + "the left-hand side declares no variable '" + name + "'";
    if (variable->vertex == nullptr)
        return start + "that is an edge, and '" + call.text + "' needs a vertex";
    return {};
}

std::string GraphCallCheck::patternProblem(const CallSite& call, const std::string& name) const {
    if (loadPattern_ == nullptr)
        return {};
    std::string problem;
    std::unique_ptr<DirectedGraphRule> rule = (*loadPattern_)(name, problem);
    if (rule)
        problem = PatternCondition::problemOf(rule->leftSide(), variables_);
    if (problem.empty())
        return {};
    return "calls '" + call.text + "' for the pattern '" + name + "', but that " + problem;
}

}  // namespace

ExpressionProblem checkExpression(const std::string& text,
                                  const std::vector<RuleVariable>& variables,
                                  const PatternLoader* loadPattern) {
    Expression expression;
    try {
        expression.setText(text);
    } catch (const exprException& e) {
        if (e.code() == exprException::kLibraryNotLoaded) {
            const Value* library = e.first();
            const std::string name = library != nullptr && library->is(ValueType::String)
                                         ? library->asString()
                                         : std::string();
            return {"calls the library '" + name + "', which cannot be loaded", 0};
        }
        const std::string& reason = expression.syntaxError();
        return {"does not compile" + (reason.empty() ? "" : ": " + reason),
                std::max(0L, expression.errorPosition())};
    }
    for (const std::string& name : expression.variableNames()) {
        const std::string base = name.substr(0, name.find('.'));
        if (findVariable(variables, base) != nullptr)
            continue;
        const std::size_t at = text.find(name);
        return {"reads '" + name + "', but the left-hand side declares no variable '" + base + "'",
                at == std::string::npos ? 0L : static_cast<long>(at)};
    }
    const GraphCallCheck graphCalls(text, variables, loadPattern);
    for (const CallSite& call : expression.calls()) {
        const std::size_t at = text.find(call.text);
        const long offset = at == std::string::npos ? 0L : static_cast<long>(at);
        if (!call.found) {
            return {"calls '" + call.text + "', but the library '" + call.library +
                        "' has no function '" + call.function + "'",
                    offset};
        }
        if (call.library != kGraphLibrary)
            continue;
        ExpressionProblem problem = graphCalls.check(call);
        if (!problem.reason.empty())
            return problem;
    }
    return {};
}

}  // namespace vellum
