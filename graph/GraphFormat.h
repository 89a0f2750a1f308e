// The graph file format (.dg) as the grammar engine reads it: the token definitions and the GRAPH
// grammar, each one constant text, with the codes of its tokens and the numbers of its actions.
// The value and object tokens are shared with rule files (graph/RuleFormat.h). The readers parse
// with these texts and the writers check names against them (this header needs no library).
#pragma once

#include <cstddef>

#include "grammar/CharacterClasses.h"

namespace vellum {

// Codes of the tokens that carry values.
inline constexpr int kNumberToken = 1000;
inline constexpr int kIdentifierToken = 1001;
inline constexpr int kStringToken = 1002;
// Codes of the keywords the actions tell apart, the same in graph and rule files.
inline constexpr int kVertexToken = 2;
inline constexpr int kTrueToken = 4;
inline constexpr int kFalseToken = 5;

// The integer attribute that holds an object's number while a file is read (and a created
// vertex's origin while a rewriting step runs); none is left behind.
inline constexpr char kNumberAttribute[] = "__ID__";

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

// Start symbol GRAPH; the numbers in angle brackets are the GraphAction values.
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

enum class GraphAction : int {
    ClearGraph = 0,
    GraphName = 1,
    Vertex = 2,
    Boolean = 3,
    Integer = 4,
    Real = 5,
    String = 6,
    VectorStart = 7,
    VectorElement = 8,
    VectorEnd = 9,
    Edge = 10,
    Label = 11,
};

}  // namespace vellum
