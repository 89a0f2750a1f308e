// The rule file format (.drl) as the grammar engine reads it: the token definitions and the
// GRAPHRULE grammar, each one constant text, with the codes of its tokens and the numbers of its
// actions. Values, vertices and attributes are written as in graph files (graph/GraphFormat.h).
#pragma once

#include "grammar/CharacterClasses.h"
#include "graph/GraphFormat.h"

namespace vellum {

// Codes of the tokens only rule files have and the actions tell apart.
inline constexpr int kExpressionToken = 23;
inline constexpr int kReferenceToken = 25;

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

// Start symbol GRAPHRULE; the numbers in angle brackets are RuleAction and GraphAction values.
inline constexpr char kRuleGrammar[] = R"GRAMMAR(
GRAPHRULE = $LGRAPHRULE $IDENTIFIER <50> "{" RULE "}".
RULE = <51> <0> $LLEFTSIDE GRAPH ANCHOR <52> <0> $LRIGHTSIDE GRAPH <53> [APPCOND].
ANCHOR = $LANCHOR "{" { ASSIGN } "}".
ASSIGN = ($LVERTEX | $LEDGE) $NUMBER $LARROW1 $NUMBER <54>.
GRAPH = "{" VERTICES EDGES "}".
VERTICES = { VERTEX }.
EDGES = { EDGE }.
VERTEX = $LVERTEX [$LREF] $NUMBER <2> [$LREF $NUMBER <14>] ["=" $IDENTIFIER <12>] ["{" [LABEL] {ATTRIBUTE} "}"] .
ATTRIBUTE = BOOLEAN | INTEGER | REAL | STRING | VECTOR.
LABEL = $LLABEL ($IDENTIFIER | $WILDCARD) <11>.
BOOLEAN = $LBOOLEAN $IDENTIFIER "=" ($LTRUE | $LFALSE | $EXPRESSION) <3>.
INTEGER = $LINTEGER $IDENTIFIER "=" ($NUMBER | $EXPRESSION) <4>.
REAL = $LREAL $IDENTIFIER "=" ($NUMBER | $EXPRESSION)<5>.
STRING = $LSTRING $IDENTIFIER "=" ($LLSTRING | $EXPRESSION) <6>.
VECTOR = $LVECTOR $IDENTIFIER <7> "=" "(" { $NUMBER <8>} ")" <9>.
EDGE = $LEDGE $NUMBER ":" $NUMBER $LARROW $NUMBER <10> ["=" $IDENTIFIER <12>] ["{" [LABEL] {ATTRIBUTE} "}"] .
APPCOND = $LAPPCOND "=" $EXPRESSION <13>.
#GRAPHRULE.
)GRAMMAR";

// The actions only rule files have. Vertices, edges, labels and attributes use the graph file's
// actions (GraphAction), all but GraphName.
enum class RuleAction : int {
    Variable = 12,
    Condition = 13,
    Reference = 14,
    RuleName = 50,
    LeftSide = 51,
    RightSide = 52,
    InterfaceEnd = 53,
    InterfacePair = 54,
};

}  // namespace vellum
