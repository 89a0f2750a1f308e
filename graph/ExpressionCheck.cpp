#include "graph/ExpressionCheck.h"

#include <algorithm>

#include "grammar/Expression.h"

namespace vellum {

ExpressionProblem checkExpression(const std::string& text,
                                  const std::vector<std::string>& variables) {
    Expression expression;
    try {
        expression.setText(text);
    } catch (const exprException& e) {
        if (e.code() == exprException::kLibraryNotLoaded) {
            const Value* library = e.first();
            const std::string name = library != nullptr && library->is(ValueType::String)
                                         ? library->asString()
                                         : std::string();
            return {"calls the library '" + name + "', which cannot be loaded", 0};
        }
        const std::string& reason = expression.syntaxError();
        return {"does not compile" + (reason.empty() ? "" : ": " + reason),
                std::max(0L, expression.errorPosition())};
    }
    for (const std::string& name : expression.variableNames()) {
        const std::string base = name.substr(0, name.find('.'));
        if (std::find(variables.begin(), variables.end(), base) != variables.end())
            continue;
        const std::size_t at = text.find(name);
        return {"reads '" + name + "', but the left-hand side declares no variable '" + base + "'",
                at == std::string::npos ? 0L : static_cast<long>(at)};
    }
    return {};
}

}  // namespace vellum
