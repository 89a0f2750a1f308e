// The scanner: cuts the input into tokens by trying the compiled token definitions in the order
// they were written and taking the first that matches (not the longest), keeps the history of
// accepted tokens that semantic actions read, and offers the expect-token operation of the
// grammar interpreter.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grammar/Cache.h"
#include "grammar/TokenDefinitions.h"

namespace vellum {

struct TokenRecord {
    std::string text;
    int code = 0;
};

class TokenScanner {
  public:
    // How many of the latest accepted tokens stay readable through tokenAt(); older ones are
    // dropped so that reading a large file keeps its memory flat. Readers look back a few
    // tokens at most.
    static constexpr std::size_t kHistoryDepth = 256;

    TokenScanner() = default;
    virtual ~TokenScanner() = default;
    TokenScanner(const TokenScanner&) = delete;
    TokenScanner& operator=(const TokenScanner&) = delete;

    // Called for every token that expectToken() takes; a nonzero result makes it count as
    // matched. The default returns the code.
    virtual int onToken(int code) { return code; }

    // Compiles (or takes from the cache) a token-definition text. False when it is malformed.
    bool loadDefinitions(std::string_view text);
    // Uses definitions compiled elsewhere (null clears them).
    void setDefinitions(std::shared_ptr<const TokenDefinitions> definitions);
    const TokenDefinitions* definitions() const { return definitions_.get(); }

    // Empties the history and reads from `source` from now on (null detaches).
    void reset(Cache* source);
    // Stops reading from the source but keeps the history readable.
    void detach() {
        source_ = nullptr;
        memo_ = Memo{};
    }
    void clearHistory() { history_.clear(); }

    // Lets tokens of `code` be up to `bound` characters long instead of kMaxTokenText (readers
    // raise it for their value tokens, whose texts may be long). Kept across parses and
    // definition changes; a token longer than its bound does not match.
    void setLengthBound(int code, std::size_t bound);
    std::size_t lengthBound(int code) const;

    // The code of the next token, or -1 when no definition matches; text() holds its text.
    int nextToken();
    const std::string& text() const { return text_; }

    // Takes the next token when it is the named one (compared by code; tokens of code 0 are
    // skipped): the position moves after it, it is added to the history and the value of
    // onToken() is returned. Otherwise 0 with the position unchanged.
    int expectToken(std::string_view name);
    // The same for a definition index (as resolved by the grammar compiler); -1 never matches.
    int expectDefinition(int definition);

    // The k-th most recent accepted token (0 = the latest), or null.
    const TokenRecord* tokenAt(std::size_t k) const {
        return k < history_.size() ? &history_[k] : nullptr;
    }

  private:
    int scanAt(long position, long& end);
    bool walk(int definition, int depth);
    bool walkNode(const PatternNode& node, int depth);

    std::shared_ptr<const TokenDefinitions> definitions_;
    Cache* source_ = nullptr;
    std::string text_;
    std::vector<std::pair<int, std::size_t>> lengthBounds_;  // (code, bound), a handful at most
    std::size_t bound_ = kMaxTokenText;                      // of the definition being walked
    bool stopOnOverflow_ = true;  // false for comments, whose text is cut at the bound
    bool overflow_ = false;
    long furthest_ = 0;   // progress mark for the loop guard of a walk
    long stepsIdle_ = 0;  // node evaluations since the walk last read further
    std::deque<TokenRecord> history_;

    // The result of the latest scan: alternatives of the grammar retry the same position often.
    struct Memo {
        long start = -1;
        long end = 0;
        int code = -1;
        std::string text;
    } memo_;
};

}  // namespace vellum
