// The base of every reader: parses a text against a grammar and token definitions held as text,
// calling the client's numbered semantic actions as the walk passes them. No tree is built; the
// actions read the latest tokens through tokenAt(). Alternatives are chosen by their first
// element only, without backtracking.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "grammar/Cache.h"
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
    // empty; when the file cannot be opened, 0 and empty.
    bool parseFile(const std::string& fileName, long before, long after, std::string& excerpt,
                   long& position);

    const TokenRecord* tokenAt(std::size_t k) const { return scanner_->tokenAt(k); }
    // The line of the source's current position. After a parse the source is closed and back at
    // position 0, so this says 1.
    int lineNumber() { return cache_.lineNumber(); }

    // True when the last walk ended because the grammar looped without reading input or nested
    // deeper than the engine allows (reported as a syntax error at that point).
    bool limitReached() const { return limitReached_; }

  protected:
    // Lets a client use its own scanner (for example one that overrides onToken). Call before
    // loadGrammar().
    void setScanner(std::unique_ptr<TokenScanner> scanner);
    TokenScanner& scanner() { return *scanner_; }
    Cache& source() { return cache_; }

  private:
    enum Result { kAborted = -1, kNotMatched = 0, kMatched = 1 };

    int walk();
    bool matchLiteral(const std::string& text);
    void skipBlanks();

    Cache cache_{1024};
    std::unique_ptr<TokenScanner> scanner_;
    std::shared_ptr<const GrammarDefinition> grammar_;
    bool limitReached_ = false;
};

}  // namespace vellum
