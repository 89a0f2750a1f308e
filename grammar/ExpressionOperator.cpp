#include "grammar/ExpressionOperator.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "grammar/ExpressionException.h"

namespace vellum {
namespace {

// An empty result means: not defined for these operands.
using Result = std::optional<Value>;

// Integer arithmetic runs on the unsigned representation, where overflow wraps by definition; the
// conversion back keeps the low 32 bits.
std::int32_t wrapped(std::uint32_t bits) {
    return static_cast<std::int32_t>(bits);
}

template <typename T>
Result compare(Operator op, const T& a, const T& b) {
    switch (op) {
        case Operator::Equal:
            return Value::boolean(a == b);
        case Operator::NotEqual:
            return Value::boolean(a != b);
        case Operator::Less:
            return Value::boolean(a < b);
        case Operator::LessEqual:
            return Value::boolean(a <= b);
        case Operator::Greater:
            return Value::boolean(a > b);
        case Operator::GreaterEqual:
            return Value::boolean(a >= b);
        default:
            return std::nullopt;
    }
}

Result integerQuotient(std::int32_t a, std::int32_t b) {
    if (b == 0)
        return std::nullopt;
    // The one quotient that does not fit in 32 bits wraps like every other overflow.
    if (a == std::numeric_limits<std::int32_t>::min() && b == -1)
        return Value::integer(a);
    return Value::integer(a / b);
}

Result integerBinary(Operator op, std::int32_t a, std::int32_t b) {
    const auto ua = static_cast<std::uint32_t>(a);
    const auto ub = static_cast<std::uint32_t>(b);
    switch (op) {
        case Operator::Add:
            return Value::integer(wrapped(ua + ub));
        case Operator::Subtract:
            return Value::integer(wrapped(ua - ub));
        case Operator::Multiply:
            return Value::integer(wrapped(ua * ub));
        case Operator::Divide:
            return integerQuotient(a, b);
        default:
            return compare(op, a, b);
    }
}

Result realBinary(Operator op, double a, double b) {
    switch (op) {
        case Operator::Add:
            return Value::real(a + b);
        case Operator::Subtract:
            return Value::real(a - b);
        case Operator::Multiply:
            return Value::real(a * b);
        case Operator::Divide:
            return Value::real(a / b);  // IEEE: a zero divisor gives an infinity or NaN
        default:
            return compare(op, a, b);
    }
}

Result booleanBinary(Operator op, bool a, bool b) {
    switch (op) {
        case Operator::And:
            return Value::boolean(a && b);
        case Operator::Or:
            return Value::boolean(a || b);
        case Operator::Equal:
        case Operator::NotEqual:
            return compare(op, a, b);
        default:
            return std::nullopt;
    }
}

// Strings are ordered by < and > but deliberately not by <= and >=.
Result stringBinary(Operator op, const std::string& a, const std::string& b) {
    switch (op) {
        case Operator::Add:
            return Value::string(a + b);
        case Operator::Equal:
        case Operator::NotEqual:
        case Operator::Less:
        case Operator::Greater:
            return compare(op, a, b);
        default:
            return std::nullopt;
    }
}

Result binaryResult(Operator op, const Value& left, const Value& right) {
    switch (left.type()) {
        case ValueType::Integer:
            return integerBinary(op, left.asInteger(), right.asInteger());
        case ValueType::Real:
            return realBinary(op, left.asReal(), right.asReal());
        case ValueType::Boolean:
            return booleanBinary(op, left.asBoolean(), right.asBoolean());
        case ValueType::String:
            return stringBinary(op, left.asString(), right.asString());
    }
    return std::nullopt;
}

Result unaryResult(Operator op, const Value& operand) {
    if (op == Operator::Negate && operand.is(ValueType::Integer))
        return Value::integer(wrapped(0u - static_cast<std::uint32_t>(operand.asInteger())));
    if (op == Operator::Negate && operand.is(ValueType::Real))
        return Value::real(-operand.asReal());
    if (op == Operator::Not && operand.is(ValueType::Boolean))
        return Value::boolean(!operand.asBoolean());
    return std::nullopt;
}

}  // namespace

bool isUnary(Operator op) {
    return op == Operator::Negate || op == Operator::Not;
}

Value applyBinary(Operator op, const Value& left, const Value& right) {
    if (left.type() != right.type())
        throw exprException(exprException::kTypeMismatch, left, right);
    Result result = isUnary(op) ? std::nullopt : binaryResult(op, left, right);
    if (!result)
        throw exprException(exprException::kUndefined, left, right);
    return std::move(*result);
}

Value applyUnary(Operator op, const Value& operand) {
    Result result = unaryResult(op, operand);
    if (!result)
        throw exprException(exprException::kUndefined, operand);
    return std::move(*result);
}

}  // namespace vellum
