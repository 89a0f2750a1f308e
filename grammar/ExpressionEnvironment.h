// The variable bindings an expression is evaluated in: a list of (name, value) pairs searched in
// order, so that the first binding of a name wins. Rule application binds the matched objects'
// attributes here; an expression object also keeps a list of its own.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

    void clear() { bindings_.clear(); }
    std::size_t size() const { return bindings_.size(); }
    bool empty() const { return bindings_.empty(); }

  private:
    std::vector<std::pair<std::string, Value>> bindings_;
};

}  // namespace vellum
