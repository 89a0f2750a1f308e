#include "koral/ModuleHighlighter.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "grammar/SyntaxGraph.h"

namespace vellum {
namespace {

constexpr int kCommentCode = 0;
constexpr int kConditionCode = 30;
constexpr int kNumberCode = 1000;
constexpr int kIdentifierCode = 1001;
constexpr int kStringCode = 1002;

// The last character the scan of `piece` can have looked at, plus one: a comment reads up to
// the character that ends it, anything else at most kLookahead characters from its start.
long reach(const ScannedPiece& piece) {
    return std::max(piece.start + ModuleHighlighter::kLookahead, piece.end + 1);
}

}  // namespace

HighlightCategory highlightCategory(int tokenCode) {
    switch (tokenCode) {
        case kCommentCode:
            return HighlightCategory::Comment;
        case kConditionCode:
            return HighlightCategory::Condition;
        case kNumberCode:
            return HighlightCategory::Number;
        case kIdentifierCode:
        case kStringCode:
            return HighlightCategory::Name;
        default:
            return HighlightCategory::Keyword;
    }
}

ModuleHighlighter::ModuleHighlighter() {
    const bool loaded = scanner_.loadDefinitions(kModuleEditorTokens);
    assert(loaded && "the editor's token definitions compile");
    (void)loaded;
}

template <typename Stop>
long ModuleHighlighter::scanFrom(long at, std::vector<ScannedPiece>& out, Stop stop) {
    scanner_.reset(&source_);  // forgets the scan remembered from the text before the edit
    long position = at;
    while (!stop(position)) {
        long start = position;
        while (start < length_ && syntax::isBlank(text_[start]))
            ++start;
        if (start >= length_)
            return length_;
        source_.seek(start);
        const int code = scanner_.nextToken();
        const long end = code == -1 ? start + 1 : std::max(source_.tell(), start + 1);
        out.push_back({start, end, code});
        position = end;
    }
    return position;
}

void ModuleHighlighter::scan(const char* text) {
    text_ = text != nullptr ? text : "";
    length_ = static_cast<long>(std::strlen(text_));
    source_.attach(text_);
    pieces_.clear();
    scanFrom(0, pieces_, [](long) { return false; });
}

ModuleHighlighter::Range ModuleHighlighter::edit(const char* text, long position, long removed,
                                                 long inserted) {
    text_ = text != nullptr ? text : "";
    length_ = static_cast<long>(std::strlen(text_));
    source_.attach(text_);
    const long delta = inserted - removed;
    const long changedEnd = position + inserted;  // in the new text

    // The first piece whose scan may have read the changed text; the pieces before it stand.
    const auto firstAffected = std::partition_point(
        pieces_.begin(), pieces_.end(),
        [position](const ScannedPiece& piece) { return reach(piece) <= position; });
    const std::size_t first = static_cast<std::size_t>(firstAffected - pieces_.begin());
    const long restart = first == 0 ? 0 : pieces_[first - 1].end;

    // Scans until a scan would start, behind the change, where an old one started too: from
    // there on the text and hence the pieces are those of before, moved by `delta`.
    std::size_t next = first;  // old pieces from here on start their scans at or after ...
    const auto scanStart = [this](std::size_t k) { return k == 0 ? 0L : pieces_[k - 1].end; };
    std::vector<ScannedPiece> fresh;
    bool inStep = false;
    const long stoppedAt = scanFrom(restart, fresh, [&](long at) {
        if (at < changedEnd)
            return false;
        while (next < pieces_.size() && scanStart(next) < at - delta)
            ++next;
        inStep = next < pieces_.size() && scanStart(next) == at - delta;
        return inStep;
    });
    const std::size_t resume = inStep ? next : pieces_.size();
    for (std::size_t k = resume; k < pieces_.size(); ++k) {
        pieces_[k].start += delta;
        pieces_[k].end += delta;
    }
    pieces_.erase(pieces_.begin() + static_cast<long>(first),
                  pieces_.begin() + static_cast<long>(resume));
    pieces_.insert(pieces_.begin() + static_cast<long>(first), fresh.begin(), fresh.end());
    return {restart, inStep ? stoppedAt : length_};
}

std::vector<HighlightSpan> ModuleHighlighter::spans() const {
    std::vector<HighlightSpan> spans;
    for (const ScannedPiece& piece : pieces_) {
        if (piece.code < 0)
            continue;
        const HighlightCategory category = highlightCategory(piece.code);
        std::string name;
        if (category == HighlightCategory::Name)
            name.assign(text_ + piece.start, static_cast<std::size_t>(piece.end - piece.start));
        spans.push_back({category, piece.start, piece.end - 1, std::move(name)});
    }
    return spans;
}

std::string ModuleHighlighter::styles(Range range) const {
    const long from = std::max(0L, range.from);
    const long to = std::min(length_, range.to);
    if (to <= from)
        return {};
    std::string styles(static_cast<std::size_t>(to - from), '\0');
    auto piece = std::partition_point(pieces_.begin(), pieces_.end(),
                                      [from](const ScannedPiece& p) { return p.end <= from; });
    for (; piece != pieces_.end() && piece->start < to; ++piece) {
        if (piece->code < 0)
            continue;
        const char style = static_cast<char>(static_cast<int>(highlightCategory(piece->code)) + 1);
        for (long at = std::max(from, piece->start); at < std::min(to, piece->end); ++at)
            styles[static_cast<std::size_t>(at - from)] = style;
    }
    return styles;
}

std::vector<HighlightSpan> highlightModule(const std::string& text) {
    ModuleHighlighter highlighter;
    highlighter.scan(text.c_str());
    return highlighter.spans();
}

}  // namespace vellum
