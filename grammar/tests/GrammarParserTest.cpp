// The grammar interpreter: the walk (alternatives chosen by their first element, no backtracking,
// the shared result, aborting actions), the load failures, the token history across parses, the
// reported position and excerpt, and the limits that keep bad grammars and deep input safe.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "base/Console.h"
#include "grammar/GrammarParser.h"
#include "grammar/ParseReport.h"
#include "grammar/SourceLines.h"
#include "tests/support/TempFile.h"

namespace vellum {
namespace {

using test::TempFile;

constexpr const char* kTokens = R"TOKENS(
$COMMENT : 0 = "%" {"$CHAR$"}.
$NUMBER : 1000 = ["\-"] DIGIT {DIGIT} ["." DIGIT {DIGIT}].
$STRING : 1002 = "\"" {"#""} "\"".
$LXTRUE : 4 = "true".
$LXFALSE : 5 = "false".
$DLL : 6 = "$(" {"#)"} ")".
$IDENTIFIER : 1001 = LETTER {LETTER | DIGIT}.
LETTER = "a-z" | "A-Z". DIGIT = "0-9".
..)TOKENS";

constexpr const char* kLiteral =
    "LITERAL = $NUMBER <9> | $STRING <10> | BOOLEAN <11> | CALL.\n"
    "BOOLEAN = $LXTRUE | $LXFALSE.\nCALL = $DLL <13>.\n#LITERAL.";

// Logs the actions it is called with; the action `abortOn` returns 0.
class Recorder : public GrammarParser {
  public:
    explicit Recorder(const std::string& grammar, int abortOn = -1000) : abortOn_(abortOn) {
        loaded_ = loadGrammar(grammar, kTokens);
    }
    int onAction(int number) override {
        log_ += (log_.empty() ? "" : " ") + std::to_string(number);
        return number == abortOn_ ? 0 : 1;
    }
    bool loaded() const { return loaded_; }
    std::string takeLog() { return std::exchange(log_, ""); }

  private:
    int abortOn_;
    bool loaded_ = false;
    std::string log_;
};

struct Outcome {
    bool ok = false;
    long position = 0;
    std::string actions;
};

// Parses `input` from a file (with the readers' excerpt sizes) and from memory; both entry points
// must agree on the result and the actions.
Outcome parseBoth(Recorder& parser, const std::string& input) {
    TempFile file(input);
    Outcome outcome;
    std::string excerpt;
    outcome.ok = parser.parseFile(file.path(), 6, 16, excerpt, outcome.position);
    outcome.actions = parser.takeLog();
    EXPECT_EQ(parser.parseString(input), outcome.ok) << input;
    EXPECT_EQ(parser.takeLog(), outcome.actions) << input;
    return outcome;
}

struct WalkCase {
    const char* what;
    const char* grammar;
    const char* input;
    bool ok;
    long position;
    const char* actions;
    int abortOn = -1000;
};

TEST(GrammarParser, WalksTheGrammarAsWritten) {
    const WalkCase cases[] = {
        {"true is tried as number and string first", kLiteral, "true", true, -1, "11"},
        {"first alternative", kLiteral, "-1.5", true, -1, "9"},
        {"second alternative", kLiteral, "\"s\"", true, -1, "10"},
        {"nonterminal as the last alternative", kLiteral, "$(lib.f)", true, -1, "13"},
        {"no alternative fits", kLiteral, " x", false, 1, ""},
        {"no return to another alternative", "S = \"a\" \"b\" <1> | \"a\" \"c\" <2>. #S.", "ac",
         false, 1, ""},
        {"actions already called stay called", "S = \"a\" <1> \"b\" <2> | \"a\" <3>. #S.", "ac",
         false, 1, "1"},
        {"failed nonterminal keeps its input, the caller goes on",
         "S = A <1> | \"q\" <2>. A = \"q\" \"r\". #S.", "qq", true, -1, "2"},
        {"repetition left at a failed body, error at the next element",
         "S = \"(\" {X} \")\" <2>. X = \"x\" \"y\" <1>. #S.", "(xyxz)", false, 4, "1"},
        {"repetition of nothing", "S = \"(\" {X} \")\" <2>. X = \"x\" \"y\" <1>. #S.", "( )", true,
         -1, "2"},
        {"text after the start production is ignored", "S = \"a\" <1>. #S.", "a b c", true, -1,
         "1"},
        {"literal matches as a prefix", "S = \"ab\" <1>. #S.", "abc", true, -1, "1"},
        {"literal cut off", "S = \"ab\" <1>. #S.", "a", false, 0, ""},
        {"position is after the skipped blanks", "S = \"a\" \"b\". #S.", "a \t\r\n c", false, 6,
         ""},
        {"comments are skipped before tokens", "S = $NUMBER <1> $NUMBER <2>. #S.", "1 % c\n 2",
         true, -1, "1 2"},
        {"comments are not skipped before literals", "S = $NUMBER <1> \",\" $NUMBER <2>. #S.",
         "1 % c\n, 2", false, 2, "1"},
        {"token the definitions lack never matches", "S = $NOPE <1> | \"x\" <2>. #S.", "x", true,
         -1, "2"},
        {"result carries into a production that begins with an action",
         "S = \"{\" R \"}\". R = <1> \"x\" <2>. #S.", "{x}", true, -1, "1 2"},
        {"an action leaves the result as it was: not matched at the start",
         "S = <1> \"x\" <2>. #S.", "x", false, 0, "1"},
        {"without #, the production named last starts", "A = \"a\" <1>. B = \"b\" <2>..", "b", true,
         -1, "2"},
        {"# names the start", "A = \"a\" <1>. B = \"b\" <2>. #A", "a", true, -1, "1"},
        {"doubled quote inside a literal", "S = \"a\"\"b\" <1>. #S.", "a\"b", true, -1, "1"},
        {"empty literal matches without reading", "S = \"\" <1> \"x\". #S.", "x", true, -1, "1"},
        {"negative action number", "S = \"a\" <-5>. #S.", "a", true, -1, "-5"},
        {"action returning 0 aborts at once", "S = \"a\" <1> \"b\" <2>. #S.", "ab", false, -1, "1",
         1},
    };
    for (const WalkCase& c : cases) {
        Recorder parser(c.grammar, c.abortOn);
        ASSERT_TRUE(parser.loaded()) << c.what;
        const Outcome outcome = parseBoth(parser, c.input);
        EXPECT_EQ(outcome.ok, c.ok) << c.what;
        EXPECT_EQ(outcome.position, c.position) << c.what;
        EXPECT_EQ(outcome.actions, c.actions) << c.what;
    }
}

TEST(GrammarParser, MalformedGrammarsFailToLoad) {
    const struct {
        const char* grammar;
        bool ok;
    } cases[] = {
        {"S \"a\". #S", false},                   // '=' missing
        {"S = \"a\"", false},                     // not ended by '.'
        {"S = (\"a\". #S", false},                // ')' missing
        {"S = [\"a\". #S", false},                // ']' missing
        {"S = {\"a\". #S", false},                // '}' missing
        {"S = \"a\" | . #S", false},              // element starts with '.'
        {"S = \"a\" ; . #S", false},              // ';' is no element
        {"S = A..", false},                       // A is never defined
        {"S = \"a\". #T", false},                 // the start is never defined
        {"S = <1 \"a\". #S", false},              // '>' missing
        {"S = \"abc. #S", false},                 // quote never closed
        {"S = $ \"a\". #S", false},               // token without a name
        {"S = \"a\" 9X. 9X = \"b\". #S", false},  // a digit cannot start a further element
        {"9X = \"b\". S = 9X \"c\". #S", true},   // but it can start a sequence
        {"S = $UNDEFINED. #S", true},
        {"S = \"a\". #S this is never read", true},
    };
    for (const auto& c : cases) {
        Recorder parser(c.grammar);
        EXPECT_EQ(parser.loaded(), c.ok) << c.grammar;
    }
    const std::string deep =
        "S = " + std::string(100000, '{') + "\"a\"" + std::string(100000, '}') + ". #S";
    EXPECT_FALSE(Recorder(deep).loaded());
}

TEST(GrammarParser, MalformedTokenTextDoesNotFailTheLoadButNothingMatches) {
    class Parser : public GrammarParser {
      public:
        bool load() { return loadGrammar("S = $A | \"a\". #S.", "$A : 1 = \"a\""); }
    } parser;
    EXPECT_TRUE(parser.load());
    EXPECT_TRUE(parser.parseString("a"));
    EXPECT_EQ(parser.tokenAt(0), nullptr);
    // A failing parse names what it expected without the token definitions it never had.
    EXPECT_FALSE(parser.parseString("b"));
    const TempFile file("b");
    std::string excerpt;
    long position = -2;
    EXPECT_FALSE(parser.parseFile(file.path(), 6, 16, excerpt, position));
    EXPECT_EQ(position, 0);
}

// Logs the latest token's text at each action.
class TokenEcho : public GrammarParser {
  public:
    TokenEcho() { loadGrammar("S = $IDENTIFIER <1> \"=\" $NUMBER <2>. #S.", kTokens); }
    int onAction(int) override {
        log += tokenAt(0)->text + ";";
        return 1;
    }
    std::string log;
};

TEST(GrammarParser, HistoryHoldsTheLatestTokensOfTheCurrentParseOnly) {
    TokenEcho parser;
    ASSERT_TRUE(parser.parseString("abc = 12"));
    EXPECT_EQ(parser.log, "abc;12;");
    ASSERT_NE(parser.tokenAt(1), nullptr);
    EXPECT_EQ(parser.tokenAt(0)->text, "12");
    EXPECT_EQ(parser.tokenAt(1)->text, "abc");  // the literal "=" is no token
    EXPECT_EQ(parser.tokenAt(2), nullptr);

    ASSERT_FALSE(parser.parseString("xyz"));
    ASSERT_NE(parser.tokenAt(0), nullptr);
    EXPECT_EQ(parser.tokenAt(0)->text, "xyz");
    EXPECT_EQ(parser.tokenAt(1), nullptr);

    TempFile file("abc = 12");
    ASSERT_TRUE(parser.parseFile(file.path()));
    EXPECT_EQ(parser.tokenAt(0), nullptr);
}

TEST(GrammarParser, ReportsPositionAndClampedExcerptOfASyntaxError) {
    const std::string content = "0123456789abcdefghijklmnopqrstuvwxyz";
    TempFile file(content);
    const struct {
        const char* grammar;
        long position;
        std::string excerpt;
    } cases[] = {
        {"S = \"0123456789\" \"X\". #S", 10, content.substr(4, 22)},
        {"S = \"01\" \"X\". #S", 2, content.substr(0, 18)},
        {"S = \"0123456789abcdefghijklmnopqrstuvwxy\" \"X\". #S", 35, content.substr(29)},
    };
    for (const auto& c : cases) {
        Recorder parser(c.grammar);
        std::string excerpt;
        long position = 0;
        EXPECT_FALSE(parser.parseFile(file.path(), 6, 16, excerpt, position));
        EXPECT_EQ(position, c.position);
        EXPECT_EQ(excerpt, c.excerpt);
        EXPECT_EQ(parser.lineNumber(), 1);
    }
}

TEST(GrammarParser, FileThatCannotBeOpenedIsPositionZeroWithoutExcerpt) {
    Recorder parser("S = \"a\". #S");
    std::string excerpt = "stale";
    long position = 99;
    EXPECT_FALSE(parser.parseFile("/nonexistent/folder/g.dg", 6, 16, excerpt, position));
    EXPECT_EQ(position, 0);
    EXPECT_EQ(excerpt, "");
    EXPECT_FALSE(parser.parseFile("/nonexistent/folder/g.dg"));
}

TEST(GrammarParser, LongTokensAndOpenStringsFailCleanly) {
    Recorder identifier("S = $IDENTIFIER <1>. #S");
    EXPECT_TRUE(identifier.parseString(std::string(127, 'a')));
    EXPECT_EQ(identifier.tokenAt(0)->text.size(), 127u);
    EXPECT_FALSE(identifier.parseString(std::string(128, 'a')));
    EXPECT_FALSE(identifier.parseString(std::string(200, 'a')));
    Recorder string("S = $STRING <1>. #S");
    EXPECT_FALSE(string.parseString("\"never closed"));
    EXPECT_EQ(identifier.takeLog() + string.takeLog(), "1");
}

TEST(GrammarParser, DeepNestingInTheInputParses) {
    Recorder parser("E = \"(\" E \")\" | \"x\" <1>. #E.");
    const std::string open(100000, '(');
    const std::string close(100000, ')');
    EXPECT_TRUE(parser.parseString(open + "x" + close));
    EXPECT_FALSE(parser.limitReached());
    EXPECT_FALSE(parser.parseString(open + "x" + close.substr(1)));
    EXPECT_EQ(parser.takeLog(), "1 1");
}

TEST(GrammarParser, GrammarsThatLoopWithoutReadingFailInsteadOfHanging) {
    for (const char* grammar : {"E = E \"+\" \"x\" | \"x\". #E.", "S = {[\"a\"]} \"b\". #S."}) {
        Recorder parser(grammar);
        ASSERT_TRUE(parser.loaded()) << grammar;
        EXPECT_FALSE(parser.parseString("x+b")) << grammar;
        EXPECT_TRUE(parser.limitReached()) << grammar;
    }
}

// What a syntax error says: what stood there, what was expected, a keyword glued to a name, the
// end of the input; recorded with its offset in the collector in scope, and the spans of the
// tokens accepted.
TEST(GrammarParser, SyntaxErrorsSayWhatWasFoundAndExpected) {
    const std::string grammar = "LIST = \"(\" $NUMBER { \",\" $NUMBER } \")\" <1>.\n#LIST.";
    const struct {
        std::string input;
        long position;
        std::string reason;
    } rows[] = {
        {"(1, x)", 4, "syntax error near 'x)': expected a number"},
        {"(1 2)", 3, "syntax error near '2)': expected ',' or ')'"},
        {"(1, truex)", 4, "'truex' begins with the keyword 'true': expected a number"},
        {"(1,\n", 4, "unexpected end of input: expected a number"},
    };
    for (const auto& row : rows) {
        Recorder parser(grammar);
        TempFile file(row.input);
        Diagnostics found;
        const DiagnosticsScope scope(found);
        std::string excerpt;
        long position = 0;
        EXPECT_FALSE(parser.parseFile(file.path(), 6, 16, excerpt, position)) << row.input;
        EXPECT_EQ(parser.syntaxError(), row.reason) << row.input;
        ASSERT_EQ(found.size(), 1u) << row.input;
        EXPECT_EQ(found.all()[0].offset, row.position) << row.input;
        EXPECT_EQ(found.all()[0].message, row.reason) << row.input;
        EXPECT_EQ(found.all()[0].file, file.path()) << row.input;
    }
    Recorder parser(grammar);
    ASSERT_TRUE(parser.parseString("( 12 ,  7 )"));
    EXPECT_EQ(parser.tokenSpan(0), (std::pair<long, long>{8, 9}));
    EXPECT_EQ(parser.tokenSpan(1), (std::pair<long, long>{2, 4}));
    EXPECT_EQ(parser.tokenSpan(2), (std::pair<long, long>{0, 0}));
}

// Lines and columns count from 1, columns in bytes with a tab as 1; the caret line repeats the
// tabs so that the caret stands under the column.
TEST(SourceLines, RendersTheLineAndACaretUnderTheColumn) {
    TempFile file("first\r\n\tx = 1;\nlast");
    const struct {
        long offset;
        Severity severity;
        std::string text;
    } rows[] = {
        {3, Severity::Error, ":1:4: error: WHAT\nfirst\n   ^\n"},
        {8, Severity::Warning, ":2:2: warning: WHAT\n\tx = 1;\n\t^\n"},
        {12, Severity::Error, ":2:6: error: WHAT\n\tx = 1;\n\t    ^\n"},
        {0, Severity::Error, ":1:1: error: WHAT\nfirst\n^\n"},
        {99, Severity::Error, ":3:5: error: WHAT\nlast\n    ^\n"},
    };
    LineCursor cursor(file.path());
    for (const auto& row : rows) {
        EXPECT_EQ(renderDiagnostic({file.path(), row.offset, row.severity, "WHAT"}, cursor),
                  file.path() + row.text)
            << row.offset;
    }
}

TEST(ParseReport, ReportsTheTwoLinesWithControlCharactersMadeVisible) {
    const struct {
        const char* kind;
        long position;
        const char* excerpt;
        const char* expected;
    } cases[] = {
        {"File", 55, "  edgecount\tvector\r\nx",
         "File 'n.dg' contains errors near position 55 in line 1\n"
         "Dump '  edgecount\\tvector\\r\\nx' !!!\n"},
        {"Module", 0, "", "Module 'n.dg' contains errors near position 0 in line 1\nDump '' !!!\n"},
        {"File", -1, "a\\nb",
         "File 'n.dg' contains errors near position -1 in line 1\n"
         "Dump 'a\\nb' !!!\n"},
    };
    for (const auto& c : cases) {
        ConsoleCapture capture;
        reportSyntaxError(c.kind, "n.dg", c.position, 1, c.excerpt);
        EXPECT_EQ(capture.text(), c.expected);
    }
}

}  // namespace
}  // namespace vellum
