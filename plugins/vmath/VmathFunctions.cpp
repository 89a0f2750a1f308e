// The example function library for expressions: small numeric and string helpers. Every function
// checks the number and types of its arguments and returns nothing on misuse, which the calling
// expression reports as exprException code 1.
#include <cmath>
#include <cstdint>

#include "grammar/ExpressionFunction.h"

namespace {

using vellum::Value;
using vellum::ValueList;
using vellum::ValueType;

bool hasTypes(const ValueList& arguments, std::size_t count, ValueType type) {
    if (arguments.size() != count)
        return false;
    for (const Value& argument : arguments) {
        if (!argument.is(type))
            return false;
    }
    return true;
}

bool isNumber(ValueType type) {
    return type == ValueType::Integer || type == ValueType::Real;
}

// Two numbers of one type: max and min do not convert either.
bool isNumberPair(const ValueList& arguments) {
    return arguments.size() == 2 && isNumber(arguments[0].type()) &&
           hasTypes(arguments, 2, arguments[0].type());
}

Value absolute(const Value& number) {
    if (number.is(ValueType::Real))
        return Value::real(std::fabs(number.asReal()));
    // Through the unsigned representation, so that the lowest integer wraps to itself like
    // negation does instead of overflowing.
    const auto bits = static_cast<std::uint32_t>(number.asInteger());
    return Value::integer(static_cast<std::int32_t>(number.asInteger() < 0 ? 0u - bits : bits));
}

bool greater(const Value& a, const Value& b) {
    return a.is(ValueType::Real) ? a.asReal() > b.asReal() : a.asInteger() > b.asInteger();
}

}  // namespace

// abs(x): the absolute value of an integer or a real, of the same type.
VELLUM_EXPRESSION_FUNCTION(abs) {
    if (arguments->size() != 1 || !isNumber((*arguments)[0].type()))
        return nullptr;
    return vellum::newResult(absolute((*arguments)[0]));
}

// max(a, b), min(a, b): the larger or smaller of two integers or two reals.
VELLUM_EXPRESSION_FUNCTION(max) {
    if (!isNumberPair(*arguments))
        return nullptr;
    const Value& a = (*arguments)[0];
    const Value& b = (*arguments)[1];
    return vellum::newResult(greater(b, a) ? b : a);
}

VELLUM_EXPRESSION_FUNCTION(min) {
    if (!isNumberPair(*arguments))
        return nullptr;
    const Value& a = (*arguments)[0];
    const Value& b = (*arguments)[1];
    return vellum::newResult(greater(a, b) ? b : a);
}

// sqrt(x): the square root of a real (NaN below zero).
VELLUM_EXPRESSION_FUNCTION(sqrt) {
    if (!hasTypes(*arguments, 1, ValueType::Real))
        return nullptr;
    return vellum::newResult(Value::real(std::sqrt((*arguments)[0].asReal())));
}

// length(s): the number of characters a string holds; a string constant's quotes count.
VELLUM_EXPRESSION_FUNCTION(length) {
    if (!hasTypes(*arguments, 1, ValueType::String))
        return nullptr;
    const auto size = (*arguments)[0].asString().size();
    if (size > static_cast<std::size_t>(INT32_MAX))
        return nullptr;
    return vellum::newResult(Value::integer(static_cast<std::int32_t>(size)));
}
