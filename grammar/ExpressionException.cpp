#include "grammar/ExpressionException.h"

namespace vellum {

const char* exprException::what() const noexcept {
    switch (code_) {
        case kMalformed:
            return "exprException: not a well-formed expression";
        case kMissing:
            return "exprException: missing operand, argument, function or value";
        case kTypeMismatch:
            return "exprException: operands of different types";
        case kUndefined:
            return "exprException: operator not defined for the operands";
        case kConditionNotBoolean:
            return "exprException: condition is not a boolean";
        case kUnbound:
            return "exprException: variable not bound";
        case kFunctionNotFound:
            return "exprException: library function not found";
        case kLibraryNotLoaded:
            return "exprException: library could not be loaded";
        default:
            return "exprException";
    }
}

}  // namespace vellum
