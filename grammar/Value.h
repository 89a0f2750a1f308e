// The values of the expression language: integers (signed 32-bit), reals (IEEE double), booleans
// and strings, each carrying its type code (1 to 4). There are no implicit conversions between
// the types; every operation checks the type first. Values are plain copyable objects; evaluation
// hands out new ones as std::unique_ptr, owned by the caller.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vellum {

// The type codes are part of the language's interface (library functions see them).
enum class ValueType { Integer = 1, Real = 2, Boolean = 3, String = 4 };

// "integer", "real", "boolean" or "string".
const char* valueTypeName(ValueType type);

class Value {
  public:
    static Value integer(std::int32_t value) {
        return Value(std::in_place_type<std::int32_t>, value);
    }
    static Value real(double value) { return Value(std::in_place_type<double>, value); }
    static Value boolean(bool value) { return Value(std::in_place_type<bool>, value); }
    static Value string(std::string value) {
        return Value(std::in_place_type<std::string>, std::move(value));
    }

    ValueType type() const { return static_cast<ValueType>(value_.index() + 1); }
    int typeCode() const { return static_cast<int>(type()); }
    bool is(ValueType type) const { return this->type() == type; }

    // The held value. Asking for another type than type() is a programmer error and throws
    // std::bad_variant_access.
    std::int32_t asInteger() const { return std::get<std::int32_t>(value_); }
    double asReal() const { return std::get<double>(value_); }
    bool asBoolean() const { return std::get<bool>(value_); }
    const std::string& asString() const { return std::get<std::string>(value_); }

    // Same type and same value (reals compare as doubles, so NaN differs from itself).
    bool operator==(const Value& other) const { return value_ == other.value_; }
    bool operator!=(const Value& other) const { return !(*this == other); }

  private:
    // The alternatives' order follows the type codes: index + 1 is the code.
    using Storage = std::variant<std::int32_t, double, bool, std::string>;
    template <typename T, typename Argument>
    Value(std::in_place_type_t<T> type, Argument&& value)
        : value_(type, std::forward<Argument>(value)) {}

    Storage value_;
};

// The argument values of a library function call, in written order.
using ValueList = std::vector<Value>;

// The value alone: integers in decimal, reals in the stream's current format, booleans as "true"
// or "false", strings as held (a string constant keeps its double quotes).
std::ostream& operator<<(std::ostream& out, const Value& value);

}  // namespace vellum
