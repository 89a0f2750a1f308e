// The Koral module language (.mod files) as the grammar engine reads it: the token definitions
// and the MOD grammar, each one constant text, with the codes of its tokens and the numbers of its
// actions. The module compiler parses with them; a module editor may use them too (for example
// to colour keywords).
#pragma once

#include <string>

#include "grammar/CharacterClasses.h"

namespace vellum {

// Codes of the tokens the actions and the keyword check tell apart.
inline constexpr int kModuleCommentToken = 0;
inline constexpr int kModuleInitialToken = 10;
inline constexpr int kModuleOnceToken = 12;
inline constexpr int kModuleAlapToken = 13;
inline constexpr int kModuleTimesToken = 27;
inline constexpr int kModuleSequenceToken = 28;
inline constexpr int kModuleConditionToken = 30;
inline constexpr int kModuleFirstValueToken = 1000;  // numbers, identifiers and strings

// The keywords that the module reader and the module editor's highlighter both know by these
// codes, and the values' tokens, which come last in both.
inline constexpr char kModuleKeywordTokens[] = R"TOKENS(
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
)TOKENS";
inline constexpr char kModuleValueTokens[] =
    R"TOKENS($NUMBER : 1000 = ["\-"] DIGITS09 {DIGITS09} ["." DIGITS09 {DIGITS09}].
$IDENTIFIER : 1001 = CHARS {"." CHARS}.
$STRING : 1002 = "\"" {(INTERNAL | "#"")} "\"".
)TOKENS";

// The token definitions, in the order the scanner tries them: keywords first, so that a name
// that begins with a keyword ("doubled", "endpoint") is read as that keyword and fails.
inline constexpr auto kModuleTokens =
    joinText(kModuleKeywordTokens, R"TOKENS($LXGRAPHCLASS : 29 = "graph class".
$LXIF : 31 = "if".
$LXTHEN : 32 = "then".
$LXELSE : 33 = "else".
$LXWHILE : 34 = "while".
$LXDO : 35 = "do".
$LXCONDITION : 30 = "(" {(INTERNAL | "#)")} ")".
)TOKENS",
             kModuleValueTokens, kCharacterClasses, ".");

// Start symbol MOD; the numbers in angle brackets are the ModuleAction values.
inline constexpr char kModuleGrammar[] = R"GRAMMAR(
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

enum class ModuleAction : int {
    ModuleName = 1,
    Uses = 2,
    Export = 3,
    UnitHeading = 4,
    Call = 5,
    ApplyMode = 6,
    Alternative = 7,
    ConditionKind = 8,
    UnitCondition = 9,
    GraphClass = 10,
    IfCondition = 11,
    ThenEnd = 12,
    ElseEnd = 13,
    IfEnd = 14,
    WhileCondition = 16,
    WhileEnd = 17,
    Separator = 18,
};

// The keyword that `name` is or begins with ("initial" for "initialize"), as the module scanner
// reads it: a module cannot name such a rule or unit. Empty for a name a module can write.
std::string leadingKeyword(const std::string& name);

}  // namespace vellum
