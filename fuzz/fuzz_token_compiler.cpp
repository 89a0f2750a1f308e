// Fuzz target: an arbitrary token-definition text is compiled; when it compiles, a fixed input is
// scanned with it from every position and compared with a plain reading of the scanning rules
// (every definition tried in written order, no shortcuts, no memo), and expect-token is compared
// the same way. Findings: crashes, sanitizer reports, hangs, and any difference in code, text or
// end position.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/FuzzSupport.h"
#include "grammar/Cache.h"
#include "grammar/TokenDefinitions.h"
#include "grammar/TokenScanner.h"

namespace {

using vellum::PatternKind;
using vellum::PatternNode;
using vellum::TokenDefinitions;
using vellum::fuzz::check;

constexpr const char* kInput =
    "directed graph g1 { vertex -12.5 \"a \\\"b\\\"\" % note\n\tedge 1 -> 2 iffy trueValue "
    "$(lib.f) [x > 0] <-> caf\xe9 \x01\x7f VERTICES vertices 12. } ";

struct Token {
    int code = -1;
    std::string text;
    long end = 0;
};

// The rules as written: far smaller bounds than the engine's, so that wherever this reading
// finishes, the engine cannot have stopped at one of its own bounds.
class ReferenceScanner {
  public:
    ReferenceScanner(const TokenDefinitions& definitions, std::string_view input)
        : defs_(definitions), input_(input) {}

    // False when the budget ran out (no verdict).
    bool scan(long position, Token& token) {
        while (isBlank(at(position)))
            ++position;
        for (int index : defs_.tryOrder()) {
            pos_ = position;
            text_.clear();
            steps_ = 0;
            depthExceeded_ = false;
            const bool matched = walk(index, 0);
            if (steps_ > kMaxSteps || depthExceeded_)
                return false;
            const int code = defs_.definitions()[static_cast<std::size_t>(index)].code;
            if (matched && (code == 0 || text_.size() <= vellum::kMaxTokenText)) {
                token = {code, text_.substr(0, vellum::kMaxTokenText), pos_};
                return true;
            }
        }
        token = {-1, "", position};
        return true;
    }

  private:
    static constexpr long kMaxSteps = 4000;
    static constexpr int kMaxDepth = 64;

    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    static int sc(char c) { return static_cast<signed char>(c); }
    char at(long p) const { return p < static_cast<long>(input_.size()) ? input_[p] : '\0'; }
    bool atEnd() const { return pos_ >= static_cast<long>(input_.size()); }

    bool walk(int index, int depth) {
        if (depth > kMaxDepth) {
            depthExceeded_ = true;
            return false;
        }
        bool matched = false;
        int current = defs_.definitions()[static_cast<std::size_t>(index)].pattern;
        while (current >= 0 && ++steps_ <= kMaxSteps && !depthExceeded_) {
            const PatternNode& node = defs_.nodes()[static_cast<std::size_t>(current)];
            matched = evaluate(node, depth);
            current = matched ? node.successor : node.alternative;
        }
        return matched;
    }

    bool evaluate(const PatternNode& node, int depth) {
        if (node.kind == PatternKind::Reference)
            return walk(node.reference, depth + 1);
        if (node.kind == PatternKind::Literal) {
            for (std::size_t i = 0; i < node.text.size(); ++i) {
                if (pos_ + static_cast<long>(i) >= static_cast<long>(input_.size()) ||
                    at(pos_ + static_cast<long>(i)) != node.text[i])
                    return false;
            }
            pos_ += static_cast<long>(node.text.size());
            text_ += node.text;
            return true;
        }
        if (atEnd())
            return false;
        const char c = at(pos_);
        const char first = node.text.empty() ? '\0' : node.text[0];
        const char second = node.text.size() < 2 ? '\0' : node.text[1];
        bool ok = false;
        if (node.kind == PatternKind::Range)
            ok = sc(c) >= sc(first) && sc(c) <= sc(second);
        else if (node.kind == PatternKind::Except)
            ok = c != first;
        else
            ok = sc(c) >= 32;
        if (ok) {
            ++pos_;
            text_.push_back(c);
        }
        return ok;
    }

    const TokenDefinitions& defs_;
    std::string_view input_;
    long pos_ = 0;
    std::string text_;
    long steps_ = 0;
    bool depthExceeded_ = false;
};

// Expect-token as the rules read: comments (code 0) that read something are passed over, the
// token is accepted when its code equals the definition's.
bool referenceExpect(ReferenceScanner& reference, long position, int wanted, Token& accepted) {
    for (;;) {
        Token token;
        if (!reference.scan(position, token))
            return false;
        if (token.code == 0 && token.end > position) {
            position = token.end;
            continue;
        }
        accepted = token.code == wanted && token.code != -1 ? token : Token{};
        return true;
    }
}

void compareExpect(const std::shared_ptr<const TokenDefinitions>& definitions,
                   ReferenceScanner& reference, long position) {
    const std::size_t count = definitions->definitions().size();
    for (std::size_t d = 0; d < count && d < 8; ++d) {
        Token expected;
        if (!referenceExpect(reference, position, definitions->definitions()[d].code, expected))
            return;
        vellum::TokenScanner scanner;
        scanner.setDefinitions(definitions);
        vellum::Cache cache;
        cache.attach(kInput);
        scanner.reset(&cache);
        cache.seek(position);
        const int result = scanner.expectDefinition(static_cast<int>(d));
        if (expected.code == -1) {
            check(result == 0 && cache.tell() == position && scanner.tokenAt(0) == nullptr);
            continue;
        }
        // The default hook returns the code, so a taken token of code 0 reports 0.
        check(result == expected.code);
        check(cache.tell() == expected.end);
        check(scanner.tokenAt(0)->text == expected.text);
        check(scanner.tokenAt(0)->code == expected.code);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto definitions = TokenDefinitions::compileUncached(text);
    if (definitions == nullptr)
        return 0;
    const std::string_view input(kInput);
    ReferenceScanner reference(*definitions, input);
    vellum::TokenScanner scanner;
    scanner.setDefinitions(definitions);
    vellum::Cache cache;
    cache.attach(kInput);
    scanner.reset(&cache);
    for (long position = 0; position <= static_cast<long>(input.size()); ++position) {
        Token expected;
        if (!reference.scan(position, expected))
            break;
        cache.seek(position);
        const int code = scanner.nextToken();
        check(code == expected.code);
        if (code != -1) {
            check(scanner.text() == expected.text);
            check(cache.tell() == expected.end);
        }
        if (position % 16 == 0)
            compareExpect(definitions, reference, position);
    }
    return 0;
}
