// The one error of the expression language: a code from 0 to 7 and up to two values (the
// offending operands, the condition's value, the unbound variable's or unloadable library's name
// as a string). It carries no message of its own beyond what(): the code that catches it
// composes what the user reads.
#pragma once

#include <exception>
#include <optional>

#include "grammar/Value.h"

namespace vellum {

class exprException : public std::exception {
  public:
    // The codes; they are part of the interface (messages and callers switch on them).
    static constexpr int kMalformed = 0;            // not a well-formed expression
    static constexpr int kMissing = 1;              // operand, argument, entry or value missing
    static constexpr int kTypeMismatch = 2;         // binary operands of different types
    static constexpr int kUndefined = 3;            // operator undefined for the type or value
    static constexpr int kConditionNotBoolean = 4;  // the condition of ? : is not a boolean
    static constexpr int kUnbound = 5;              // variable not bound (first(): its name)
    static constexpr int kFunctionNotFound = 6;     // not raised: a missing function is code 1
    static constexpr int kLibraryNotLoaded = 7;     // library not loadable (first(): its name)

    explicit exprException(int code, std::optional<Value> first = std::nullopt,
                           std::optional<Value> second = std::nullopt)
        : code_(code), first_(std::move(first)), second_(std::move(second)) {}

    int code() const noexcept { return code_; }
    // The values carried, or null.
    const Value* first() const noexcept { return first_ ? &*first_ : nullptr; }
    const Value* second() const noexcept { return second_ ? &*second_ : nullptr; }

    // A short fixed text naming the code's meaning.
    const char* what() const noexcept override;

  private:
    int code_;
    std::optional<Value> first_;
    std::optional<Value> second_;
};

}  // namespace vellum
