// The Koral module language (.mod files) as the grammar engine reads it: the token definitions
// and the MOD grammar, each one text handed to the engine at run time. The module compiler
// parses with them; a module editor may use them too (for example to colour keywords).
#pragma once

#include <string>

namespace vellum {

// The token definitions, in the order the scanner tries them: keywords first, so that a name
// that begins with a keyword ("doubled", "endpoint") is read as that keyword and fails.
extern const char* const kModuleTokens;
// The grammar, start symbol MOD; actions <1> to <18> build the module.
extern const char* const kModuleGrammar;

// The keyword that `name` is or begins with ("initial" for "initialize"), as the module scanner
// reads it: a module cannot name such a rule or unit. Empty for a name a module can write.
std::string leadingKeyword(const std::string& name);

}  // namespace vellum
