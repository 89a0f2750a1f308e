// A function library loaded for the library calls of expressions: an open dlopen handle, closed
// when the last expression that calls into it is destroyed. Libraries are shared by name between
// expressions (reference-counted, thread-safe), so building many expressions that call one
// library loads it once.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/SharedLibrary.h"
#include "grammar/ExpressionFunction.h"

namespace vellum {

class FunctionLibrary {
  public:
    // The library of that name, shared with every other expression that holds it, or null when it
    // cannot be loaded. Found as SharedLibrary::open() finds it: the name as given, then with
    // ".so" appended, first through the system loader's own search (LD_LIBRARY_PATH, the system
    // folders), then in the bundled plug-in folder. No message is written; the caller reports.
    static std::shared_ptr<FunctionLibrary> open(const std::string& name);

    // The file names open() tries for `name`, in order.
    static std::vector<std::string> candidates(const std::string& name);

    // Only open() makes libraries; the key keeps others from doing so.
    class Key {
        friend class FunctionLibrary;
        explicit Key() = default;
    };
    FunctionLibrary(Key, SharedLibrary library) : library_(std::move(library)) {}
    FunctionLibrary(const FunctionLibrary&) = delete;
    FunctionLibrary& operator=(const FunctionLibrary&) = delete;

    // The entry exported under exactly that name, or null.
    ExpressionFunction function(const std::string& name) const;

  private:
    SharedLibrary library_;  // always loaded: a library that did not load is never constructed
};

}  // namespace vellum
