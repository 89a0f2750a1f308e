#include "grammar/ExpressionEnvironment.h"

namespace vellum {

EvaluationContext::~EvaluationContext() = default;

void Environment::bind(std::string name, Value value) {
    bindings_.emplace_back(std::move(name), std::move(value));
}

const Value* Environment::find(std::string_view name) const {
    for (const auto& [bound, value] : bindings_) {
        if (bound == name)
            return &value;
    }
    return nullptr;
}

std::unique_ptr<Value> Environment::lookup(std::string_view name) const {
    const Value* value = find(name);
    return value == nullptr ? nullptr : std::make_unique<Value>(*value);
}

}  // namespace vellum
