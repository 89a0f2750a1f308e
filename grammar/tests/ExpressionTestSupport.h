// Test support for the expression tests: an expression's outcome as one comparable line.
#pragma once

#include <sstream>
#include <string>

#include "grammar/Expression.h"

namespace vellum::testing {

// "TYPE VALUE", "nothing" or "exprException CODE".
inline std::string outcome(const std::string& text, const Environment& environment = {}) {
    try {
        const Expression expression(text);
        const auto value = expression.evaluate(environment);
        if (!value)
            return "nothing";
        std::ostringstream out;
        out << valueTypeName(value->type()) << " " << *value;
        return out.str();
    } catch (const exprException& error) {
        return "exprException " + std::to_string(error.code());
    }
}

}  // namespace vellum::testing
