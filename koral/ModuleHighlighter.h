// The highlighting of Koral module texts: the module scanner, with the editor's own token
// definitions, cut over the whole text into spans of five categories (comments, numbers, names,
// keywords and punctuation, conditions). The module editor colours its text with it and the HTML
// export marks its page up with it. After an edit only the region whose tokens can have changed
// is scanned again, so that a long module stays quick to edit.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "grammar/Cache.h"
#include "grammar/CharacterClasses.h"
#include "grammar/TokenScanner.h"
#include "koral/ModuleLanguage.h"

namespace vellum {

// The module tokens with the punctuation as one token, conditions as $EXPR and the keywords
// that the module grammar numbers otherwise renumbered; only the codes' categories matter here.
inline constexpr auto kModuleEditorTokens =
    joinText(kModuleKeywordTokens, R"TOKENS($DUMMY : 29 = "." | "," | ";" | ":".
$EXPR : 30 = "(" {(INTERNAL | "#)")} ")".
$GC : 31 = "graph class".
$IF : 32 = "if".
$THEN : 33 = "then".
$ELSE : 34 = "else".
$WHILE : 35 = "while".
$DO : 36 = "do".
)TOKENS",
             kModuleValueTokens, kCharacterClasses, ".");

enum class HighlightCategory : int {
    Comment = 0,
    Number = 1,
    Name = 2,  // identifiers and strings; a span of this category keeps its text
    Keyword = 3,
    Condition = 4,
};

// The category of a token code of kModuleEditorTokens.
HighlightCategory highlightCategory(int tokenCode);

struct HighlightSpan {
    HighlightCategory category;
    long first;        // offset of the first character
    long last;         // offset of the last character
    std::string name;  // the span's text, for Name spans only
};

// One piece of the text as the scanner cut it: a token, or a single character where no token
// matches (code -1, which the highlighting leaves plain).
struct ScannedPiece {
    long start;
    long end;  // one past the last character
    int code;
};

class ModuleHighlighter {
  public:
    // A run of characters whose highlighting an edit may have changed, [from, to).
    struct Range {
        long from = 0;
        long to = 0;
    };

    ModuleHighlighter();

    // Scans the whole zero-terminated text; it must stay alive until the next call.
    void scan(const char* text);
    // The text has changed: `removed` characters at `position` were replaced by `inserted`
    // others, and `text` is the whole new text. Scans again from a safe place before the change
    // until the pieces agree with those before it; returns the region whose styles may differ.
    Range edit(const char* text, long position, long removed, long inserted);

    const std::vector<ScannedPiece>& pieces() const { return pieces_; }
    // The spans of the current text, in text order.
    std::vector<HighlightSpan> spans() const;
    // One style number per character of [from, to): 0 for plain text (blanks, characters no
    // token takes), else the category's number + 1.
    std::string styles(Range range) const;

    // How far the scan of one piece can read past its start, beyond the comment it may be:
    // the scanner's bound on a token's text plus the longest keyword, with room to spare.
    static constexpr long kLookahead = 256;

  private:
    // Scans from `at` and appends pieces to `out` until the end of the text, or until `stop`
    // says the scan has come back into step (it gets the position the next scan would start at).
    template <typename Stop>
    long scanFrom(long at, std::vector<ScannedPiece>& out, Stop stop);

    TokenScanner scanner_;
    Cache source_;
    const char* text_ = "";
    long length_ = 0;
    std::vector<ScannedPiece> pieces_;  // in text order, without overlap
};

// The spans of a whole text (a convenience for a single pass).
std::vector<HighlightSpan> highlightModule(const std::string& text);

}  // namespace vellum
