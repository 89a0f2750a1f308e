// vellum-cli eval EXPR [NAME=VALUE ...]: builds the expression, binds the given values and prints
// the result as one line "TYPE VALUE", or "exprException CODE" with exit status 1.
#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "grammar/Expression.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

// A double-quoted string literal as expressions write it: every inner quote escaped.
bool isStringLiteral(std::string_view text) {
    if (text.size() < 2 || text.front() != '"')
        return false;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i;
            continue;
        }
        if (text[i] == '"')
            return i == text.size() - 1;
    }
    return false;
}

// A binding's value: true or false, a string literal (held with its quotes, as a string constant
// is), a number with a full stop (real) or an integer that fits in 32 bits.
std::optional<Value> bindingValue(std::string_view text) {
    if (text == "true" || text == "false")
        return Value::boolean(text == "true");
    if (isStringLiteral(text))
        return Value::string(std::string(text));
    if (text.find('.') != std::string_view::npos) {
        const auto real = wholeNumber<double>(text);
        return real ? std::optional<Value>(Value::real(*real)) : std::nullopt;
    }
    const auto integer = wholeNumber<std::int32_t>(text);
    return integer ? std::optional<Value>(Value::integer(*integer)) : std::nullopt;
}

int printResult(const std::string& text, const Environment& environment) {
    try {
        const Expression expression(text);
        const auto value = expression.evaluate(environment);
        // A library function's "nothing" is what an operand receiving it reports as code 1.
        if (!value)
            throw exprException(exprException::kMissing);
        std::cout << valueTypeName(value->type()) << " " << *value << "\n";
        return kExitOk;
    } catch (const exprException& error) {
        std::cout << "exprException " << error.code() << "\n";
        return kExitFailed;
    }
}

}  // namespace

int runEval(const Arguments& arguments) {
    if (arguments.empty())
        return usageError("eval", "no expression given");
    Environment environment;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string& binding = arguments[i];
        const auto equals = binding.find('=');
        if (equals == std::string::npos || equals == 0)
            return usageError("eval", "'" + binding + "' is not NAME=VALUE");
        auto value = bindingValue(std::string_view(binding).substr(equals + 1));
        if (!value)
            return usageError("eval", "'" + binding.substr(equals + 1) +
                                          "' is not a boolean, integer, real or string literal");
        environment.bind(binding.substr(0, equals), std::move(*value));
    }
    return printResult(arguments[0], environment);
}

}  // namespace vellum::cli
