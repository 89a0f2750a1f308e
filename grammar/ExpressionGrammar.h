// The format of an expression: its grammar and token-definition texts, the token codes the
// building actions tell operators apart by, and the numbers of those actions. The order of the
// token definitions is the scanner's try order and part of the format: two-character operators
// come before their one-character prefixes, and the keywords true and false before identifiers
// (so trueValue reads as true).
#pragma once

#include "grammar/CharacterClasses.h"

namespace vellum {

// Start symbol EXPRESSION; the numbers in angle brackets are the ExpressionAction values.
inline constexpr char kExpressionGrammar[] = R"text(
EXPRESSION = CONDITIONAL.
CONDITIONAL = OR [$LXIF <12> EXPRESSION $LXELSE CONDITIONAL <20>].
OR = AND { $LXOR <1> AND <20>}.
AND = EQUAL { $LXAND <2> EQUAL <20>}.
EQUAL = RELATION { ($LXEQU | $LXNEQ) <3> RELATION <20>}.
RELATION = ADD { ($LXLSS | $LXGTR | $LXLEQ | $LXGEQ) <4> ADD <20>}.
ADD = MULT { ($LXADD | $LXSUB) <5> MULT <20>}.
MULT = UNARY { ($LXMLT | $LXDIV) <6> UNARY <20>}.
UNARY = [($LXSUB | $LXNOT) <7>] PRIMARY <21>.
PRIMARY = LITERAL | $IDENTIFIER <8> | "(" EXPRESSION ")".
LITERAL = $NUMBER <9> | $STRING <10> | BOOLEAN <11> | CALL.
CALL = $DLL <13> ["(" EXPRESSION <14> {
    "," EXPRESSION<14>} ")"].
BOOLEAN = $LXTRUE | $LXFALSE.
#EXPRESSION..
)text";

inline constexpr auto kExpressionTokens = joinText(R"text(
$LXIF : 1 = "?".
$LXELSE : 2 = ":".
$LXOR : 3 = "||".
$LXAND : 4 = "&&".
$LXEQU : 5 = "==".
$LXNEQ : 6 = "!=".
$LXLEQ : 7 = "<=".
$LXGEQ : 8 = ">=".
$LXLSS : 9 = "<".
$LXGTR : 10 = ">".
$LXADD : 11 = "+".
$LXSUB : 12 = "\-".
$LXMLT : 13 = "*".
$LXDIV : 14 = "/".
$LXNOT : 15 = "!".
$LXTRUE : 16 = "true".
$LXFALSE : 17 = "false".
$DLL : 18 = "$(" CHARS "." CHARS ")".
$NUMBER : 1000 = DIGITS09 {DIGITS09} ["." DIGITS09 {DIGITS09}].
$IDENTIFIER : 1001 = CHARS {"." CHARS}.
$STRING : 1002 = "\"" {(INTERNAL | "#"")} "\"".
)text",
                                                   kCharacterClasses, "..");

// Codes of the operator tokens, as the token text defines them.
inline constexpr int kTokenEqual = 5;
inline constexpr int kTokenLessEqual = 7;
inline constexpr int kTokenGreaterEqual = 8;
inline constexpr int kTokenLess = 9;
inline constexpr int kTokenGreater = 10;
inline constexpr int kTokenPlus = 11;
inline constexpr int kTokenMinus = 12;
inline constexpr int kTokenTimes = 13;
inline constexpr int kTokenTrue = 16;

enum class ExpressionAction : int {
    Or = 1,
    And = 2,
    Equality = 3,        // == or !=
    Relation = 4,        // <, >, <= or >=
    Additive = 5,        // + or -
    Multiplicative = 6,  // * or /
    Unary = 7,           // - or !
    Variable = 8,
    Number = 9,
    String = 10,
    Boolean = 11,
    Conditional = 12,
    Call = 13,
    Argument = 14,
    // 15 to 19 are reserved: accepted, with no effect.
    Reduce = 20,
    ReduceUnary = 21,
};

}  // namespace vellum
