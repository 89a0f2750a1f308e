#include "koral/ModuleLanguage.h"

#include "grammar/Cache.h"
#include "grammar/CharacterClasses.h"
#include "grammar/TokenScanner.h"

namespace vellum {

namespace {

// Codes of the tokens that are not keywords.
constexpr int kCommentCode = 0;
constexpr int kConditionCode = 30;
constexpr int kFirstValueCode = 1000;

constexpr auto kModuleTokenText = joinText(R"TOKENS(
$COMMENT : 0 = "%" {"$CHAR$"}.
$LXMODULE : 1 = "module".
$LXEND : 3 = "end".
$LXUSES : 4 = "uses".
$LXUNIT : 5 = "transformation unit".
$LXCALL : 7 = "call".
$LXAPPLY : 8 = "apply".
$LXEXPORTS : 9 = "exports".
$LXINITIAL : 10 = "initial".
$LXTERMINAL : 11 = "terminal".
$LXONCE : 12 = "once".
$LXALAP : 13 = "as long as possible".
$LXIMPLEMENTATION : 15 = "realized by".
$LXTRANSFORMATION : 23 = "body".
$LXOR : 24 = "|".
$LXTIMES : 27 = "times".
$LXSEQ : 28 = "<".
$LXGRAPHCLASS : 29 = "graph class".
$LXIF : 31 = "if".
$LXTHEN : 32 = "then".
$LXELSE : 33 = "else".
$LXWHILE : 34 = "while".
$LXDO : 35 = "do".
$LXCONDITION : 30 = "(" {(INTERNAL | "#)")} ")".
$NUMBER : 1000 = ["\-"] DIGITS09 {DIGITS09} ["." DIGITS09 {DIGITS09}].
$IDENTIFIER : 1001 = CHARS {"." CHARS}.
$STRING : 1002 = "\"" {(INTERNAL | "#"")} "\"".
)TOKENS",
                                           kCharacterClasses, ".");

}  // namespace

const char* const kModuleTokens = kModuleTokenText.c_str();

const char* const kModuleGrammar = R"GRAMMAR(
MOD = $LXMODULE $IDENTIFIER <1> TYPE [USES] EXPORTS IMPLEMENTATION $LXEND ".".
TYPE = $LXGRAPHCLASS ":" $IDENTIFIER <10>.
USES = $LXUSES $IDENTIFIER <2> {"," $IDENTIFIER <2>} ";".
EXPORTS = $LXEXPORTS EUNIT {";" EUNIT }.
EUNIT = $LXUNIT $IDENTIFIER <3>.
IMPLEMENTATION = $LXIMPLEMENTATION UNIT {";" UNIT }.
UNIT = $LXUNIT $IDENTIFIER <4> INITIAL TRANSFORMATION TERMINAL $LXEND.
TRANSFORMATION = $LXTRANSFORMATION ":" STATEMENTS.
STATEMENTS = STATEMENT {";" STATEMENT }.
STATEMENT = CALL | APPLY | IF | WHILE.
CALL = $LXCALL $IDENTIFIER <5>.
IF = $LXIF $LXCONDITION <11> $LXTHEN STATEMENTS <12> [$LXELSE STATEMENTS <13>] $LXEND <14>.
WHILE = $LXWHILE $LXCONDITION <16> $LXDO STATEMENTS $LXEND <17>.
APPLY = $LXAPPLY ($LXONCE | $LXALAP | ($NUMBER $LXTIMES)) <6> $IDENTIFIER <7> [{($LXOR | $LXSEQ) <18> $IDENTIFIER <7>}].
INITIAL = $LXINITIAL ":" <8> [$LXCONDITION <9>].
TERMINAL = $LXTERMINAL ":" <8> [$LXCONDITION <9>].
#MOD.
)GRAMMAR";

}  // namespace vellum

namespace vellum {

std::string leadingKeyword(const std::string& name) {
    TokenScanner scanner;
    Cache text;
    if (!scanner.loadDefinitions(kModuleTokens) || !text.attach(name.c_str()))
        return {};
    scanner.reset(&text);
    const int code = scanner.nextToken();
    if (code < 0 || code == kCommentCode || code == kConditionCode || code >= kFirstValueCode)
        return {};
    return scanner.text();
}

}  // namespace vellum
