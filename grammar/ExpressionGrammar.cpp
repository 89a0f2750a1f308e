#include "grammar/ExpressionGrammar.h"

#include "grammar/CharacterClasses.h"

namespace vellum {
namespace {

// The numbers in angle brackets are the building actions of Expression::onAction.
constexpr std::string_view kGrammar = R"text(
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

constexpr auto kTokens = joinText(R"text(
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

}  // namespace

std::string_view expressionGrammarText() {
    return kGrammar;
}

std::string_view expressionTokenText() {
    return kTokens;
}

}  // namespace vellum
