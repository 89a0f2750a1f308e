#include "plugins/DirectedGraph/ConditionText.h"

namespace vellum {
namespace {

bool isEscapedParenthesis(std::string_view text, std::size_t at) {
    return text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '(' || text[at + 1] == ')');
}

// Copies the string literal that starts at `at` (a '"') into `out`, backslash sequences as they
// stand; returns the position after its closing quote, or npos when it is not closed.
std::size_t copyStringLiteral(std::string_view text, std::size_t at, std::string& out) {
    out += text[at++];
    while (at < text.size()) {
        const char c = text[at++];
        out += c;
        if (c == '"')
            return at;
        if (c == '\\' && at < text.size())
            out += text[at++];
    }
    return std::string_view::npos;
}

}  // namespace

std::optional<std::string> conditionExpressionText(std::string_view text) {
    std::string out = "(";
    long depth = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] == '"') {
            at = copyStringLiteral(text, at, out);
            if (at == std::string_view::npos)
                return std::nullopt;
            continue;
        }
        if (isEscapedParenthesis(text, at))
            ++at;
        const char c = text[at++];
        if (c == '(')
            ++depth;
        if (c == ')' && --depth < 0)
            return std::nullopt;
        out += c;
    }
    if (depth != 0)
        return std::nullopt;
    return out + ")";
}

}  // namespace vellum
