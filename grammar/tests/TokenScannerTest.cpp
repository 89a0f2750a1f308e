// Token definitions and the scanner: first match in written order (not the longest), the quoted
// element marks, the load failures, expect-token with its comment skipping and code comparison,
// and the token history.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "grammar/Cache.h"
#include "grammar/TokenScanner.h"

namespace vellum {
namespace {

constexpr const char* kIdentifier = "$IDENTIFIER : 1001 = LETTER {LETTER | DIGIT}.\n";
constexpr const char* kLetters = "LETTER = \"a-z\" | \"A-Z\". DIGIT = \"0-9\".\n";

// Scans the whole input: "code:text" per token, blank-separated; "@P" where scanning stopped
// before the end (no definition matched, or a match that read nothing).
// `bounds` raises the length bound of some codes.
std::string scanAll(const std::string& definitions, const std::string& input,
                    const std::vector<std::pair<int, std::size_t>>& bounds = {}) {
    TokenScanner scanner;
    if (!scanner.loadDefinitions(definitions))
        return "malformed";
    for (const auto& [code, bound] : bounds)
        scanner.setLengthBound(code, bound);
    Cache cache;
    cache.attach(input.c_str());
    scanner.reset(&cache);
    std::string out;
    for (;;) {
        const long before = cache.tell();
        const int code = scanner.nextToken();
        if (code != -1)
            out += (out.empty() ? "" : " ") + std::to_string(code) + ":" + scanner.text();
        if (code == -1 || cache.tell() == before) {
            if (!cache.atEnd())
                out += (out.empty() ? "@" : " @") + std::to_string(cache.tell());
            return out;
        }
    }
}

struct ScanCase {
    const char* what;
    std::string definitions;
    const char* input;
    const char* tokens;
};

TEST(TokenScanner, ScansByFirstMatchInWrittenOrder) {
    const std::string number = "$NUMBER : 1000 = [\"\\-\"] DIGIT {DIGIT} [\".\" DIGIT {DIGIT}].\n";
    const ScanCase cases[] = {
        {"keyword written first splits an identifier",
         "$IF : 1 = \"if\".\n" + std::string(kIdentifier), "iffy", "1:if 1001:fy"},
        {"keyword prefix in an expression", "$LXTRUE : 4 = \"true\".\n" + std::string(kIdentifier),
         "trueValue", "4:true 1001:Value"},
        {"identifier written first takes it all", kIdentifier + std::string("$IF : 1 = \"if\".\n"),
         "iffy", "1001:iffy"},
        {"both spellings, one code",
         "$LVERTICES : 2 = \"VERTICES\" | \"vertices\".\n" + std::string(kIdentifier),
         "VERTICES vertices Vertices", "2:VERTICES 2:vertices 1001:Vertices"},
        {"negative real", number, "-12.5", "1000:-12.5"},
        {"started fraction fails the whole number",
         number + "$INT : 7 = DIGIT {DIGIT}.\n$DOT : 5 = \".\".\n", "12. 3", "7:12 5:. 1000:3"},
        {"lone minus", number, "- 1", "@0"},
        {"blanks of all four kinds are skipped", kIdentifier, " \t\r\n x \n", "1001:x"},
        {"comment runs to the end of the line",
         "$COMMENT : 0 = \"%\" {\"$CHAR$\"}.\n" + std::string(kIdentifier), "% a note\nx",
         "0:% a note 1001:x"},
        {"byte above 127 ends a comment, an except element takes it",
         "$COMMENT : 0 = \"%\" {\"$CHAR$\"}.\n" + std::string(kIdentifier) +
             "$OTHER : 9 = \"#%\".\n",
         "% caf\xe9 x", "0:% caf 9:\xe9 1001:x"},
        {"any-character takes DEL but no control character",
         "$COMMENT : 0 = \"%\" {\"$CHAR$\"}.\n$OTHER : 9 = \"#%\".\n", "%a\x7f\x01",
         "0:%a\x7f 9:\x01"},
        {"escapes in quotes",
         "$Q : 1 = \"\\\"\". $B : 2 = \"\\\\\". $M : 3 = \"\\-\". $H : 4 = \"\\#\".\n", "\"\\-#",
         "1:\" 2:\\ 3:- 4:#"},
        {"range bounds compare as signed bytes", "$R : 1 = \"\x80-z\".\n", "a\xe9{",
         "1:a 1:\xe9 @2"},
        {"tried in the order of the headers, not of first mention",
         "AUX = B.\n$A : 1 = \"b\".\n$B : 2 = \"b\".\n", "b", "1:b"},
        {"range wins over except", "$R : 1 = \"#0-9\".\n", "5x", "1:5 @1"},
        {"unescaped minus makes a one-bound range", "$ARROW : 13 = \"->\".\n", "->", "@0"},
        {"quoted string with an except quote",
         "$S : 1002 = \"\\\"\" {\"#\"\"} \"\\\"\".\n" + std::string(kIdentifier), "\"a b\" c",
         "1002:\"a b\" 1001:c"},
        {"unterminated string at the end", "$S : 1002 = \"\\\"\" {\"#\"\"} \"\\\"\".\n", "\"abc",
         "@0"},
        {"except loop stops at the end", "$P : 1 = \"(\" {\"#)\"} \")\".\n", "(abc", "@0"},
        {"literal cut off by the end", "$KW : 1 = \"vertex\".\n", "vert", "@0"},
        {"name of a token used without its dollar",
         "$S : 5 = \"<\" INTERNAL \">\".\n$INTERNAL : 9 = \"x\".\n", "<x> x", "5:<x> 9:x"},
        {"second definition replaces the pattern", "$A : 1 = \"a\". A = \"b\".\n", "b a", "1:b @2"},
        {"failed reference keeps what it read", "$T : 1 = A | \"z\". A = \"q\" \"r\".\n", "qz",
         "1:qz"},
        {"definition that can match nothing matches first", "$E : 3 = [\"x\"].\n$Y : 4 = \"y\".\n",
         "y", "3: @0"},
        {"looping definition fails instead of hanging", "$L : 1 = {[\"a\"]}.\n$X : 2 = \"x\".\n",
         "x", "2:x"},
    };
    for (const ScanCase& c : cases)
        EXPECT_EQ(scanAll(c.definitions + kLetters + "..", c.input), c.tokens) << c.what;
}

TEST(TokenScanner, TokensLongerThan127CharactersDoNotMatchButCommentsDo) {
    const std::string defs =
        "$COMMENT : 0 = \"%\" {\"$CHAR$\"}.\n" + std::string(kIdentifier) + kLetters + "..";
    const std::string longest(127, 'a');
    EXPECT_EQ(scanAll(defs, longest), "1001:" + longest);
    EXPECT_EQ(scanAll(defs, std::string(128, 'a')), "@0");
    EXPECT_EQ(scanAll(defs, std::string(200, 'a') + " b"), "@0");
    // A comment is one token however long; what follows it scans as usual.
    const std::string comment = scanAll(defs, "%" + std::string(300, 'c') + "\nb");
    EXPECT_EQ(comment.substr(0, 3), "0:%");
    EXPECT_EQ(comment.find(' '), comment.rfind(' '));
    EXPECT_EQ(comment.substr(comment.rfind(' ')), " 1001:b");
}

TEST(TokenScanner, ALengthBoundPerCodeLetsOnlyThatTokenGrow) {
    const std::string defs = "$NAME : 1001 = LETTER {LETTER}.\n$NUMBER : 1000 = DIGIT {DIGIT}.\n" +
                             std::string(kLetters) + "..";
    const std::vector<std::pair<int, std::size_t>> bounds = {{1001, 300}};
    EXPECT_EQ(scanAll(defs, std::string(300, 'a'), bounds), "1001:" + std::string(300, 'a'));
    EXPECT_EQ(scanAll(defs, std::string(301, 'a'), bounds), "@0");
    EXPECT_EQ(scanAll(defs, std::string(128, '1'), bounds), "@0") << "other codes keep 127";
}

TEST(TokenScanner, MalformedDefinitionTextsFailToLoad) {
    const struct {
        const char* text;
        bool ok;
    } cases[] = {
        {"$A = \"a\"..", false},                     // token name without ':'
        {"$A : 1 \"a\"..", false},                   // '=' missing
        {"a = \"a\"..", false},                      // definition starts with a lower-case letter
        {"$A : 1 = \"a\" | ..", false},              // element starts with '.'
        {"$A : 1 = (\"a\"..", false},                // ')' missing
        {"$A : 1 = [\"a\"..", false},                // ']' missing
        {"$A : 1 = {\"a\"..", false},                // '}' missing
        {"$A : 1 = \"a\" $B : 2 = \"b\"..", false},  // first definition not ended by '.'
        {"$A : 1 = \"a\"", false},                   // text ends inside a definition
        {"$A : 1 = \"abc..", false},                 // quote never closed
        {"$A : 1 = B..", false},                     // B is never defined
        {"$A : 1 = \"a\" 9X. 9X = \"b\"..", false},  // a digit cannot start a further element
        {"$A : 1 = B. B = \"b\"..", true},           // used before it is defined
        {"$A : = \"a\"..", true},                    // no digits: code 0
        {"\t$A\r\n:\n1\t=\"a\"\n.\n.", true},
        {".", true},
    };
    for (const auto& c : cases) {
        TokenScanner scanner;
        EXPECT_EQ(scanner.loadDefinitions(c.text), c.ok) << c.text;
    }
}

TEST(TokenScanner, CompilerRejectsNestingDeeperThanItCanRecurse) {
    const std::string deep =
        "$A : 1 = " + std::string(100000, '(') + "\"a\"" + std::string(100000, ')') + "..";
    EXPECT_EQ(TokenDefinitions::compileUncached(deep), nullptr);
    const std::string shallow =
        "$A : 1 = " + std::string(50, '[') + "\"a\"" + std::string(50, ']') + "..";
    EXPECT_NE(TokenDefinitions::compileUncached(shallow), nullptr);
}

class ScannerOver : public ::testing::Test {
  protected:
    void start(const char* input) {
        ASSERT_TRUE(scanner_.loadDefinitions(
            "$COMMENT : 0 = \"%\" {\"$CHAR$\"}.\n$NUMBER : 1000 = DIGIT {DIGIT}.\n"
            "$A : 7 = \"a\".\n$B : 7 = \"b\".\n" +
            std::string(kIdentifier) + kLetters + ".."));
        cache_.attach(input);
        scanner_.reset(&cache_);
    }
    TokenScanner scanner_;
    Cache cache_;
};

TEST_F(ScannerOver, ExpectSkipsCommentsAndRecordsTheLatestTokenFirst) {
    start("% one\nfoo % two\n 12 % three");
    EXPECT_NE(scanner_.expectToken("IDENTIFIER"), 0);
    EXPECT_EQ(scanner_.expectToken("IDENTIFIER"), 0);
    EXPECT_EQ(scanner_.expectToken("NUMBER"), 1000);
    ASSERT_NE(scanner_.tokenAt(1), nullptr);
    EXPECT_EQ(scanner_.tokenAt(0)->text, "12");
    EXPECT_EQ(scanner_.tokenAt(0)->code, 1000);
    EXPECT_EQ(scanner_.tokenAt(1)->text, "foo");
    EXPECT_EQ(scanner_.tokenAt(2), nullptr);
}

TEST_F(ScannerOver, RejectedExpectLeavesThePositionBeforeTheComments) {
    start("  % note\n 12");
    EXPECT_EQ(scanner_.expectToken("IDENTIFIER"), 0);
    EXPECT_EQ(cache_.tell(), 0);
    EXPECT_EQ(scanner_.expectToken("UNDEFINED"), 0);
    EXPECT_EQ(scanner_.tokenAt(0), nullptr);
}

TEST_F(ScannerOver, TokensOfTheSameCodeAreTheSameToken) {
    start("b");
    EXPECT_EQ(scanner_.expectToken("A"), 7);
    EXPECT_EQ(scanner_.tokenAt(0)->text, "b");
}

TEST_F(ScannerOver, HistoryKeepsTheLatestTokensAndResetEmptiesIt) {
    std::string input;
    for (int i = 0; i < 300; ++i)
        input += std::to_string(i) + " ";
    start(input.c_str());
    for (int i = 0; i < 300; ++i)
        ASSERT_NE(scanner_.expectToken("NUMBER"), 0) << i;
    EXPECT_EQ(scanner_.tokenAt(0)->text, "299");
    ASSERT_NE(scanner_.tokenAt(TokenScanner::kHistoryDepth - 1), nullptr);
    EXPECT_EQ(scanner_.tokenAt(TokenScanner::kHistoryDepth - 1)->text,
              std::to_string(300 - TokenScanner::kHistoryDepth));
    EXPECT_EQ(scanner_.tokenAt(TokenScanner::kHistoryDepth), nullptr);
    scanner_.reset(&cache_);
    EXPECT_EQ(scanner_.tokenAt(0), nullptr);
}

// A scanner whose hook vetoes one code and renumbers another.
class VetoScanner : public TokenScanner {
  public:
    int onToken(int code) override { return code == 1000 ? 0 : code == 1001 ? 42 : code; }
};

TEST(TokenScanner, TokenHookDecidesWhetherATakenTokenCounts) {
    VetoScanner scanner;
    ASSERT_TRUE(scanner.loadDefinitions("$NUMBER : 1000 = DIGIT {DIGIT}.\n" +
                                        std::string(kIdentifier) + kLetters + ".."));
    Cache cache;
    cache.attach("12 x");
    scanner.reset(&cache);
    EXPECT_EQ(scanner.expectToken("NUMBER"), 0);
    EXPECT_EQ(cache.tell(), 2);
    ASSERT_NE(scanner.tokenAt(0), nullptr);
    EXPECT_EQ(scanner.tokenAt(0)->text, "12");
    EXPECT_EQ(scanner.expectToken("IDENTIFIER"), 42);
    EXPECT_EQ(scanner.tokenAt(0)->text, "x");
}

}  // namespace
}  // namespace vellum
