// The format of an expression: its grammar and token-definition texts, and the token codes the
// building actions tell operators apart by. The order of the token definitions is the scanner's
// try order and part of the format: two-character operators come before their one-character
// prefixes, and the keywords true and false before identifiers (so trueValue reads as true).
#pragma once

#include <string_view>

namespace vellum {

std::string_view expressionGrammarText();
std::string_view expressionTokenText();

// Codes of the operator tokens, as the token text defines them.
constexpr int kTokenEqual = 5;
constexpr int kTokenLessEqual = 7;
constexpr int kTokenGreaterEqual = 8;
constexpr int kTokenLess = 9;
constexpr int kTokenGreater = 10;
constexpr int kTokenPlus = 11;
constexpr int kTokenMinus = 12;
constexpr int kTokenTimes = 13;
constexpr int kTokenTrue = 16;

}  // namespace vellum
