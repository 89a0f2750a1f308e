// The graph file format (.dg) as the grammar engine reads it: the token definitions and the GRAPH
// grammar, each one constant text. The graph reader parses with them; the rule reader shares the
// value tokens, and the engine's own tests use the very same texts (this header needs no library).
#pragma once

#include "grammar/CharacterClasses.h"

namespace vellum {

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
