// The operators of the expression language and the table of what each does to each value type.
// There is no conversion between types, not even from integer to real. Integer arithmetic wraps
// in 32 bits; integer division truncates towards zero and rejects a divisor of 0.
#pragma once

#include "grammar/Value.h"

namespace vellum {

// The numbers are the operator codes of the language.
enum class Operator {
    Add = 0,
    Subtract = 1,
    Divide = 2,
    Multiply = 3,
    Negate = 4,
    And = 5,
    Or = 6,
    Not = 7,
    Equal = 8,
    NotEqual = 9,
    Less = 10,
    LessEqual = 11,
    Greater = 12,
    GreaterEqual = 13,
};

// Negation and logical not take one operand; every other operator two.
bool isUnary(Operator op);

// A binary operator applied to two values. Throws exprException code 2 when the types differ and
// code 3 when the operator is not defined for their type, or for their values (an integer
// divisor of 0); the exception carries both values.
Value applyBinary(Operator op, const Value& left, const Value& right);

// Negation or logical not applied to one value. Throws exprException code 3 (carrying the value)
// when the operator is not defined for its type.
Value applyUnary(Operator op, const Value& operand);

}  // namespace vellum
