// mylib: two functions for Vellum expressions.
#include "grammar/ExpressionFunction.h"

using vellum::Value;
using vellum::ValueType;

// $(mylib.twice)(n): twice an integer.
VELLUM_EXPRESSION_FUNCTION(twice) {
    if (arguments->size() != 1 || !(*arguments)[0].is(ValueType::Integer))
        return nullptr;  // misuse: the expression reports exprException 1
    return vellum::newResult(Value::integer(2 * (*arguments)[0].asInteger()));
}

// $(mylib.scaled)(x): x times the real bound to "scale" when the expression is evaluated.
VELLUM_EXPRESSION_FUNCTION(scaled) {
    const Value* scale = environment->find("scale");
    if (arguments->size() != 1 || !(*arguments)[0].is(ValueType::Real) || scale == nullptr ||
        !scale->is(ValueType::Real))
        return nullptr;
    return vellum::newResult(Value::real((*arguments)[0].asReal() * scale->asReal()));
}
