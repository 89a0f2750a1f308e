#include "grammar/TokenDefinitions.h"

#include <limits>
#include <map>
#include <optional>

#include "grammar/CompiledTextCache.h"
#include "grammar/NotationReader.h"

namespace vellum {

using syntax::Fragment;
using syntax::isNameChar;

// Reads a token-definition text. Its own element is the quoted one: a literal, a range "a-z", an
// except element "#c" or any character "$CHAR$".
class TokenTextCompiler : public syntax::NotationReader<TokenTextCompiler, PatternNode> {
  public:
    TokenTextCompiler(std::string_view text, TokenDefinitions& out)
        : NotationReader(text, out.nodes_), out_(out) {}

    bool run() {
        for (;;) {
            skipBlanks();
            const char c = current();
            if (c == '.')
                break;
            if (c == '$') {
                ++at_;
                if (!definition(true))
                    return false;
            } else if (isNameChar(c)) {
                if (!definition(false))
                    return false;
            } else {
                return false;
            }
        }
        for (const TokenDefinition& d : out_.definitions_) {
            if (d.pattern < 0)
                return false;  // used but never defined
        }
        return true;
    }

  private:
    friend class syntax::NotationReader<TokenTextCompiler, PatternNode>;

    int symbol(const std::string& n) {
        const auto it = out_.byName_.find(n);
        if (it != out_.byName_.end())
            return it->second;
        TokenDefinition d;
        d.name = n;
        out_.definitions_.push_back(std::move(d));
        const int index = static_cast<int>(out_.definitions_.size()) - 1;
        out_.byName_.emplace(n, index);
        return index;
    }

    bool definition(bool isToken) {
        const auto n = name();
        if (!n)
            return false;
        const int index = symbol(*n);
        if (isToken) {
            if (!expect(':'))
                return false;
            out_.definitions_[index].code = code();
            out_.tryOrder_.push_back(index);
        }
        if (!expect('='))
            return false;
        const auto pattern = alternatives();
        if (!pattern)
            return false;
        if (!expect('.'))
            return false;
        out_.definitions_[index].pattern = pattern->first;
        return true;
    }

    int code() {
        skipBlanks();
        long value = 0;
        while (current() >= '0' && current() <= '9') {
            if (value < std::numeric_limits<int>::max())
                value = value * 10 + (current() - '0');
            ++at_;
        }
        return value > std::numeric_limits<int>::max() ? std::numeric_limits<int>::max()
                                                       : static_cast<int>(value);
    }

    static bool startsOwnElement(char) { return false; }

    std::optional<Fragment> named(const std::string& n) {
        PatternNode node;
        node.kind = PatternKind::Reference;
        node.reference = symbol(n);
        return build_.single(std::move(node));
    }

    std::optional<Fragment> ownElement(char c) {
        if (c == '"')
            return quoted();
        return std::nullopt;
    }

    std::optional<Fragment> quoted() {
        ++at_;  // opening quote
        PatternNode node;
        bool range = false;
        bool except = false;
        std::string raw;  // the text as written, to recognise "$CHAR$"
        for (;;) {
            if (at_ >= text_.size())
                return std::nullopt;
            char c = text_[at_++];
            raw.push_back(c);
            if (c == '"') {
                raw.pop_back();
                break;
            }
            if (c == '\\' || c == '-' || c == '#') {
                if (c == '-')
                    range = true;
                if (c == '#')
                    except = true;
                if (at_ >= text_.size())
                    return std::nullopt;
                c = text_[at_++];
                raw.push_back(c);
            }
            if (node.text.size() == kMaxTokenText)
                return std::nullopt;
            node.text.push_back(c);
        }
        if (raw == "$CHAR$") {
            node.kind = PatternKind::AnyCharacter;
        } else if (range) {
            node.kind = PatternKind::Range;
        } else if (except) {
            node.kind = PatternKind::Except;
        }
        return build_.single(std::move(node));
    }

    TokenDefinitions& out_;
};

namespace {

std::bitset<256> charactersOf(const PatternNode& node) {
    std::bitset<256> set;
    const auto sc = [](char c) { return static_cast<int>(static_cast<signed char>(c)); };
    switch (node.kind) {
        case PatternKind::Literal:
            if (!node.text.empty())
                set.set(static_cast<unsigned char>(node.text[0]));
            break;
        case PatternKind::Range: {
            const int low = node.text.empty() ? 0 : sc(node.text[0]);
            const int high = node.text.size() < 2 ? 0 : sc(node.text[1]);
            for (int c = -128; c < 128; ++c) {
                if (c >= low && c <= high)
                    set.set(static_cast<unsigned char>(c));
            }
            break;
        }
        case PatternKind::Except:
            set.set();
            set.reset(static_cast<unsigned char>(node.text.empty() ? '\0' : node.text[0]));
            break;
        case PatternKind::AnyCharacter:
            for (int c = 32; c < 128; ++c)
                set.set(static_cast<unsigned char>(c));
            break;
        case PatternKind::Reference:
            break;
    }
    return set;
}

}  // namespace

// Over-approximates, for every definition, the characters a match can start with and whether a
// match may consume nothing: walks the nodes reachable without consuming input, to a fixed point.
void TokenDefinitions::computeFirstSets() {
    bool changed = true;
    while (changed) {
        changed = false;
        for (TokenDefinition& d : definitions_) {
            std::bitset<256> first;
            bool empty = false;
            std::vector<int> todo{d.pattern};
            std::vector<bool> seen(nodes_.size(), false);
            while (!todo.empty()) {
                const int n = todo.back();
                todo.pop_back();
                if (n < 0 || seen[static_cast<std::size_t>(n)])
                    continue;
                seen[static_cast<std::size_t>(n)] = true;
                const PatternNode& node = nodes_[static_cast<std::size_t>(n)];
                todo.push_back(node.alternative);  // tried after a mismatch; -1 means failure
                bool passesEmpty = false;
                if (node.kind == PatternKind::Reference) {
                    const TokenDefinition& r =
                        definitions_[static_cast<std::size_t>(node.reference)];
                    first |= r.first;
                    passesEmpty = r.mayBeEmpty;
                } else {
                    first |= charactersOf(node);
                    passesEmpty = node.kind == PatternKind::Literal && node.text.empty();
                }
                if (passesEmpty) {
                    // A match without input: the end of the definition is an empty match.
                    if (node.successor < 0)
                        empty = true;
                    todo.push_back(node.successor);
                }
            }
            if ((first | d.first) != d.first || (empty && !d.mayBeEmpty)) {
                d.first |= first;
                d.mayBeEmpty = d.mayBeEmpty || empty;
                changed = true;
            }
        }
    }
}

int TokenDefinitions::find(std::string_view name) const {
    const auto it = byName_.find(std::string(name));
    return it == byName_.end() ? -1 : it->second;
}

std::shared_ptr<const TokenDefinitions> TokenDefinitions::compileUncached(std::string_view text) {
    auto result = std::make_shared<TokenDefinitions>();
    TokenTextCompiler compiler(text, *result);
    if (!compiler.run())
        return nullptr;
    result->computeFirstSets();
    return result;
}

std::shared_ptr<const TokenDefinitions> TokenDefinitions::compile(std::string_view text) {
    static CompiledTextCache<std::string, TokenDefinitions> cache;
    return cache.get(text, [text] { return compileUncached(text); });
}

}  // namespace vellum
