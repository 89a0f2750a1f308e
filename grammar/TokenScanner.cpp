#include "grammar/TokenScanner.h"

#include "grammar/SyntaxGraph.h"

namespace vellum {
namespace {

// Bounds that turn pathological definitions (a reference cycle without input, an optional part
// inside a repetition) into a failed match instead of a stack overflow or an endless loop.
constexpr int kMaxReferenceDepth = 512;
constexpr long kMaxIdleSteps = 1L << 16;

bool isBlank(char c) {
    return syntax::isBlank(c);
}

}  // namespace

bool TokenScanner::loadDefinitions(std::string_view text) {
    auto compiled = TokenDefinitions::compile(text);
    definitions_ = compiled;
    memo_ = Memo{};
    return compiled != nullptr;
}

void TokenScanner::setDefinitions(std::shared_ptr<const TokenDefinitions> definitions) {
    definitions_ = std::move(definitions);
    memo_ = Memo{};
}

void TokenScanner::reset(Cache* source) {
    history_.clear();
    source_ = source;
    memo_ = Memo{};
}

void TokenScanner::setLengthBound(int code, std::size_t bound) {
    memo_ = Memo{};  // a remembered scan may have been cut by the old bound
    for (auto& entry : lengthBounds_) {
        if (entry.first == code) {
            entry.second = bound;
            return;
        }
    }
    lengthBounds_.emplace_back(code, bound);
}

std::size_t TokenScanner::lengthBound(int code) const {
    for (const auto& entry : lengthBounds_) {
        if (entry.first == code)
            return entry.second;
    }
    return kMaxTokenText;
}

int TokenScanner::nextToken() {
    if (source_ == nullptr)
        return -1;
    long end = 0;
    const int code = scanAt(source_->tell(), end);
    if (code != -1)
        source_->seek(end);
    return code;
}

// Scans the token at `position` (blanks first skipped); leaves the source position unspecified.
int TokenScanner::scanAt(long position, long& end) {
    if (memo_.start == position && definitions_ != nullptr) {
        text_ = memo_.text;
        end = memo_.end;
        return memo_.code;
    }
    source_->seek(position);
    while (isBlank(source_->peek()))
        source_->read();
    const long start = source_->tell();
    int code = -1;
    if (definitions_ != nullptr) {
        const bool atEnd = source_->atEnd();
        const auto first = static_cast<unsigned char>(source_->peek());
        for (int index : definitions_->tryOrder()) {
            const TokenDefinition& d = definitions_->definitions()[static_cast<std::size_t>(index)];
            if (!atEnd && !d.mayBeEmpty && !d.first.test(first))
                continue;
            source_->seek(start);
            text_.clear();
            overflow_ = false;
            furthest_ = start;
            stepsIdle_ = 0;
            // Only tokens that are kept are bounded; comments (code 0) may run on, their text
            // cut at the bound.
            bound_ = lengthBound(d.code);
            stopOnOverflow_ = d.code != 0;
            if (walk(index, 0) && !overflow_) {
                code = d.code;
                break;
            }
        }
    }
    if (code == -1) {
        source_->seek(start);
        text_.clear();
    }
    end = source_->tell();
    memo_.start = position;
    memo_.end = end;
    memo_.code = code;
    memo_.text = text_;
    return code;
}

bool TokenScanner::walk(int definition, int depth) {
    const TokenDefinition& d = definitions_->definitions()[static_cast<std::size_t>(definition)];
    if (depth > kMaxReferenceDepth)
        return false;
    const auto& nodes = definitions_->nodes();
    bool matched = false;
    int current = d.pattern;
    while (current >= 0) {
        if (source_->tell() > furthest_) {
            furthest_ = source_->tell();
            stepsIdle_ = 0;
        } else if (++stepsIdle_ > kMaxIdleSteps) {
            return false;
        }
        // A token past its bound fails at once instead of reading on to its end.
        if (overflow_)
            return false;
        const PatternNode& node = nodes[static_cast<std::size_t>(current)];
        matched = walkNode(node, depth);
        current = matched ? node.successor : node.alternative;
    }
    return matched;
}

bool TokenScanner::walkNode(const PatternNode& node, int depth) {
    const long start = source_->tell();
    const auto signedChar = [](char c) { return static_cast<int>(static_cast<signed char>(c)); };
    const auto append = [this](char c) {
        if (text_.size() >= bound_) {
            overflow_ = stopOnOverflow_;
        } else {
            text_.push_back(c);
        }
    };
    switch (node.kind) {
        case PatternKind::Reference:
            return walk(node.reference, depth + 1);
        case PatternKind::Literal:
            for (char expected : node.text) {
                if (source_->atEnd() || source_->read() != expected) {
                    source_->seek(start);
                    return false;
                }
            }
            for (char c : node.text)
                append(c);
            return true;
        case PatternKind::Range:
        case PatternKind::Except:
        case PatternKind::AnyCharacter:
            break;
    }
    // Single-character elements never match the end of the input.
    if (source_->atEnd())
        return false;
    const char c = source_->read();
    bool ok = false;
    if (node.kind == PatternKind::Range) {
        const int low = node.text.empty() ? 0 : signedChar(node.text[0]);
        const int high = node.text.size() < 2 ? 0 : signedChar(node.text[1]);
        ok = signedChar(c) >= low && signedChar(c) <= high;
    } else if (node.kind == PatternKind::Except) {
        ok = c != (node.text.empty() ? '\0' : node.text[0]);
    } else {
        ok = signedChar(c) >= 32;
    }
    if (!ok) {
        source_->seek(start);
        return false;
    }
    append(c);
    return true;
}

int TokenScanner::expectToken(std::string_view name) {
    if (definitions_ == nullptr)
        return 0;
    return expectDefinition(definitions_->find(name));
}

int TokenScanner::expectDefinition(int definition) {
    if (source_ == nullptr || definitions_ == nullptr || definition < 0)
        return 0;
    const long remembered = source_->tell();
    const int wanted = definitions_->definitions()[static_cast<std::size_t>(definition)].code;
    long at = remembered;
    for (;;) {
        long end = 0;
        const int code = scanAt(at, end);
        if (code == 0 && end > at) {
            at = end;  // a comment: discard it and look again after it
            continue;
        }
        if (code != wanted || code == -1)
            break;
        // The token is taken and recorded whatever the hook says; its result only tells the
        // grammar whether the token counts as matched.
        source_->seek(end);
        const int accepted = onToken(code);
        history_.push_front(TokenRecord{text_, code});
        if (history_.size() > kHistoryDepth)
            history_.pop_back();
        return accepted;
    }
    source_->seek(remembered);
    return 0;
}

}  // namespace vellum
