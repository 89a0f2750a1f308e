// The base of every reader: parses a text against a grammar and token definitions held as text,
// calling the client's numbered semantic actions as the walk passes them. No tree is built; the
// actions read the latest tokens through tokenAt(). Alternatives are chosen by their first
// element only, without backtracking.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grammar/Cache.h"
#include "grammar/Diagnostics.h"
#include "grammar/GrammarDefinition.h"
#include "grammar/TokenScanner.h"

namespace vellum {

class GrammarParser {
  public:
    GrammarParser();
    virtual ~GrammarParser();
    GrammarParser(const GrammarParser&) = delete;
    GrammarParser& operator=(const GrammarParser&) = delete;

    // Called when the walk passes action <number>: nonzero goes on, 0 aborts the parse.
    // The default accepts every action.
    virtual int onAction(int number);

    // Compiles the token text, then the grammar text (both cached per text). True when the
    // grammar compiled and every nonterminal it uses is defined; the token text's own result is
    // not part of it.
    bool loadGrammar(std::string_view grammar, std::string_view tokens);

    // Parses an in-memory text; true when the start symbol matched (text after it is ignored).
    // The token history stays readable until the next parse.
    bool parseString(const char* text);
    bool parseString(const std::string& text) { return parseString(text.c_str()); }
    // Parses a file (read in binary mode); false also when it cannot be opened.
    bool parseFile(const std::string& fileName);
    // As above, and reports where the parse stopped: after a syntax error `position` is where the
    // walk stopped and `excerpt` the input from `before` characters before it to `after`
    // characters after it; after success or an aborting action `position` is -1 and the excerpt
    // empty; when the file cannot be opened, 0 and empty. With a diagnostics collector in scope,
    // a syntax error is recorded there with syntaxError() as its message, and so is an aborting
    // action that recorded nothing itself (at the latest token).
    bool parseFile(const std::string& fileName, long before, long after, std::string& excerpt,
                   long& position);

    const TokenRecord* tokenAt(std::size_t k) const { return scanner_->tokenAt(k); }
    // The text and the code of tokenAt(k): empty and -1 when there is no such token. The text
    // stays valid until the next token is accepted.
    std::string_view tokenText(std::size_t k) const;
    int tokenCode(std::size_t k) const;
    // Begin and end offset in the input of the token tokenAt(k) returns; 0, 0 when there is none.
    std::pair<long, long> tokenSpan(std::size_t k) const;

    // After a parse that ended not matched: the reason in words ("syntax error near '...':
    // expected ..."; "'vertexA' begins with the keyword 'vertex'"; "unexpected end of input")
    // and the offset where the walk stopped. Empty and -1 after any other parse.
    const std::string& syntaxError() const { return syntaxError_; }
    long errorPosition() const { return errorPosition_; }
    // The line of the source's current position. After a parse the source is closed and back at
    // position 0, so this says 1.
    int lineNumber() { return cache_.lineNumber(); }

    // True when the last walk ended because the grammar looped without reading input or nested
    // deeper than the engine allows (reported as a syntax error at that point).
    bool limitReached() const { return limitReached_; }

  protected:
    // What onAction answers for a number its grammar does not have: says "Unkown callback
    // number !!!" on the console and returns 0, which aborts the parse.
    static int unknownAction();

    // Lets a client use its own scanner (for example one that overrides onToken). Call before
    // loadGrammar().
    void setScanner(std::unique_ptr<TokenScanner> scanner);
    TokenScanner& scanner() { return *scanner_; }
    Cache& source() { return cache_; }

    // Leaves the parser as a successful parseFile(fileName) leaves it, for a client that read
    // the file by other means: no syntax error, no tokens, the source closed.
    void noteReadElsewhere(const std::string& fileName);

    // The file being parsed by parseFile() (empty for a string), for the actions' diagnostics.
    const std::string& fileName() const { return fileName_; }
    // Records a diagnostic at the start of token k (as for tokenAt()) of the file being parsed,
    // in the collector in scope, if any.
    void diagnoseToken(Severity severity, std::size_t k, std::string message) const;

  private:
    enum Result { kAborted = -1, kNotMatched = 0, kMatched = 1 };

    int walk();
    bool matchLiteral(const std::string& text);
    void skipBlanks();
    void noteAccepted();
    void noteExpected(int node, long position);
    void noteFailure(int result);
    std::string describeFailure(long position);
    std::string keywordPrefix(long position);
    bool isKeyword(int code, const std::string& text) const;
    std::string gluedKeyword(const std::string& keyword);
    std::string expectation() const;

    Cache cache_{1024};
    std::unique_ptr<TokenScanner> scanner_;
    std::shared_ptr<const GrammarDefinition> grammar_;
    bool limitReached_ = false;
    std::string fileName_;
    // Where the latest accepted tokens stand, in step with the scanner's history: a ring whose
    // newest entry is at (spanCount_ - 1) % size.
    std::array<std::pair<long, long>, TokenScanner::kHistoryDepth> spans_{};
    std::size_t spanCount_ = 0;
    // The terminals that failed at the furthest offset tried so far (grammar node indices).
    std::vector<int> expected_;
    long expectedAt_ = -1;
    std::string syntaxError_;
    long errorPosition_ = -1;
};

}  // namespace vellum
