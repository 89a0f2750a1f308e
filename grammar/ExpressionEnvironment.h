// The variable bindings an expression is evaluated in: a list of (name, value) pairs searched in
// order, so that the first binding of a name wins. Rule application binds the matched objects'
// attributes here; an expression object also keeps a list of its own. An environment may also
// carry a context for library functions (see EvaluationContext), which it does not own.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grammar/EvaluationContext.h"
#include "grammar/Value.h"

namespace vellum {

class Environment {
  public:
    // Appends a binding; an earlier binding of the same name keeps hiding it.
    void bind(std::string name, Value value);
    // The value first bound to `name` (names compare exactly), or null. Valid until the
    // environment changes.
    const Value* find(std::string_view name) const;
    // A copy of that value for the caller to own, or null when the name is not bound.
    std::unique_ptr<Value> lookup(std::string_view name) const;

    // The context lent to library functions; null when there is none. It must outlive every
    // evaluation in this environment (and in copies of it). clear() keeps it.
    void setContext(const EvaluationContext* context) { context_ = context; }
    const EvaluationContext* context() const { return context_; }

    void clear() { bindings_.clear(); }
    std::size_t size() const { return bindings_.size(); }
    bool empty() const { return bindings_.empty(); }

  private:
    std::vector<std::pair<std::string, Value>> bindings_;
    const EvaluationContext* context_ = nullptr;
};

}  // namespace vellum
