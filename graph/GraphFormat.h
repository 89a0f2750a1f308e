// The graph file format (.dg) as the grammar engine reads it: the token definitions and the GRAPH
// grammar, each one constant text, and the tokens of rule files (.drl), which share the value
// tokens. The readers parse with them, the writers check names against them, and the engine's
// own tests use the very same texts (this header needs no library).
#pragma once

#include <cstddef>

#include "grammar/CharacterClasses.h"

namespace vellum {

// Codes of the tokens that carry values.
inline constexpr int kNumberToken = 1000;
inline constexpr int kIdentifierToken = 1001;
inline constexpr int kStringToken = 1002;
inline constexpr int kExpressionToken = 23;  // rule files only

// The longest number, quoted string or bracketed expression the readers take, quotes and
// brackets included: a real written in plain decimal runs to some 330 characters, and strings
// and expressions built in the program may be long. Identifiers and keywords keep the engine's
// 127 characters.
inline constexpr std::size_t kMaxLiteralToken = 65536;

// Numbers, identifiers and quoted strings as graph and rule files write them.
inline constexpr char kGraphValueTokens[] =
    R"TOKENS($NUMBER : 1000 = ["\-"] DIGITS09 {DIGITS09} ["." DIGITS09 {DIGITS09}].
$IDENTIFIER : 1001 = CHARS.
$LLSTRING : 1002 = "\"" {(INTERNAL | "#"")} "\"".
)TOKENS";

// The keywords of vertices and attributes, the same codes in graph and rule files.
inline constexpr char kGraphObjectTokens[] = R"TOKENS($LVERTEX : 2 = "vertex".
$LBOOLEAN : 3 = "boolean".
$LTRUE : 4 = "true".
$LFALSE : 5 = "false".
$LINTEGER : 6 = "integer".
$LREAL : 7 = "real".
$LSTRING : 8 = "string".
$LVECTOR : 9 = "vector".
)TOKENS";

// The tokens, in the order the scanner tries them (a keyword before the identifier, so that
// "vertexA" is read as the keyword and the identifier "A").
inline constexpr auto kGraphTokens = joinText(R"TOKENS(
$COMMENT : 0 = "%" {"$CHAR$"}.
$LGRAPH : 1 = "directed graph".
)TOKENS",
                                              kGraphObjectTokens, R"TOKENS($LEDGE : 12 = "edge".
$LARROW : 13 = "\->".
$LLABEL : 14 = "label".
)TOKENS",
                                              kGraphValueTokens, kCharacterClasses, ".");

// The rule file's tokens, in the order the scanner tries them: keywords before the identifier,
// "->" before a negative number.
inline constexpr auto kRuleTokens = joinText(R"TOKENS(
$COMMENT : 0 = "%" {"$CHAR$"}.
$LGRAPHRULE : 16 = "directed graphrule".
)TOKENS",
                                             kGraphObjectTokens, R"TOKENS($LINPUT : 10 = "input".
$LOUTPUT : 11 = "output".
$LEDGE : 12 = "edge".
$LARROW : 13 = "\->".
$LLABEL : 14 = "label".
$LARROW1 : 15 = "<\->".
$LANCHOR : 17 = "interface".
$LLEFTSIDE : 20 = "left\-hand side".
$LRIGHTSIDE : 21 = "right\-hand side".
$LAPPCOND : 22 = "application condition".
$EXPRESSION : 23 = "[" {(INTERNAL | "#]")} "]".
$WILDCARD : 24 = "*".
$LREF : 25 = "@".
)TOKENS",
                                             kGraphValueTokens, kCharacterClasses, ".");

// Start symbol GRAPH; the action numbers are listed with the graph reader's handler.
inline constexpr char kGraphGrammar[] = R"GRAMMAR(
GRAPH = $LGRAPH <0> [$IDENTIFIER <1>] "{" VERTICES EDGES "}".
VERTICES = { VERTEX }.
EDGES = { EDGE }.
VERTEX = $LVERTEX $NUMBER <2> ["{" [LABEL] {ATTRIBUTE} "}"].
ATTRIBUTE = BOOLEAN | INTEGER | REAL | STRING | VECTOR.
LABEL = $LLABEL $IDENTIFIER <11>.
BOOLEAN = $LBOOLEAN $IDENTIFIER "=" ($LTRUE | $LFALSE) <3>.
INTEGER = $LINTEGER $IDENTIFIER "=" $NUMBER <4>.
REAL = $LREAL $IDENTIFIER "=" $NUMBER <5>.
STRING = $LSTRING $IDENTIFIER "=" $LLSTRING <6>.
VECTOR = $LVECTOR $IDENTIFIER <7> "=" "(" $NUMBER <8> { $NUMBER <8>} ")" <9>.
EDGE = $LEDGE $NUMBER $LARROW $NUMBER <10> ["{" [LABEL] {ATTRIBUTE} "}" ].
#GRAPH.
)GRAMMAR";

}  // namespace vellum
