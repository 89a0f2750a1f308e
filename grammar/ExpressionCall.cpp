#include "grammar/ExpressionCall.h"

#include "grammar/ExpressionException.h"

namespace vellum {

Value* newResult(Value value) {
    return std::make_unique<Value>(std::move(value)).release();
}

CallName splitCallText(std::string_view text) {
    const auto stop = text.find('.');
    if (stop == std::string_view::npos)
        return {std::string(text), {}};
    return {std::string(text.substr(0, stop)), std::string(text.substr(stop + 1))};
}

std::unique_ptr<CallNode> CallNode::load(const std::string& text) {
    CallName name = splitCallText(text);
    auto library = FunctionLibrary::open(name.library);
    if (!library)
        return nullptr;
    const ExpressionFunction entry = library->function(name.function);
    return std::make_unique<CallNode>(std::move(name), std::move(library), entry);
}

std::unique_ptr<Value> CallNode::evaluate(const Environment& environment) const {
    if (entry_ == nullptr)
        throw exprException(exprException::kMissing, Value::string(name_.function));
    ValueList values;
    values.reserve(arguments_.size());
    for (const NodePtr& argument : arguments_) {
        values.push_back(evaluateOperand(argument.get(), environment));
    }
    return std::unique_ptr<Value>(entry_(&values, &environment));
}

void CallNode::collectCalls(std::vector<const CallNode*>& calls) const {
    calls.push_back(this);
    for (const NodePtr& argument : arguments_) {
        if (argument)
            argument->collectCalls(calls);
    }
}

CallSite CallNode::site() const {
    CallSite site;
    site.text = name_.library + "." + name_.function;
    site.library = name_.library;
    site.function = name_.function;
    if (!site.function.empty() && site.function.back() == ')')
        site.function.pop_back();
    site.found = entry_ != nullptr;
    for (const NodePtr& argument : arguments_) {
        const auto* constant = dynamic_cast<const ConstantNode*>(argument.get());
        site.arguments.push_back(constant != nullptr ? std::optional<Value>(constant->value())
                                                     : std::nullopt);
    }
    return site;
}

}  // namespace vellum
