// The text of a module condition made ready for the expression reader. A condition arrives with
// or without the parentheses of the module's condition token, and with ")" and "(" possibly
// escaped as "\)" and "\(" (the token ends at the first unescaped ")").
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellum {

// The expression text for a condition: escaped parentheses outside string literals unescaped,
// the whole put in one pair of parentheses, so that text after a complete expression ("1 2")
// is a syntax error instead of being ignored. Empty when the parentheses outside string
// literals do not balance (a ")" closing more than was opened would let the reader stop early
// and ignore the rest) or a string literal is not closed.
std::optional<std::string> conditionExpressionText(std::string_view text);

}  // namespace vellum
