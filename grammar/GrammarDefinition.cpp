#include "grammar/GrammarDefinition.h"

#include <cstdlib>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "grammar/CompiledTextCache.h"
#include "grammar/NotationReader.h"

namespace vellum {

using syntax::Fragment;

// Reads a grammar text: productions `NAME = PATTERN .`, ended by `#NAME` or by a full stop where
// a production would begin. Its own elements are $TOKEN, "literal" and <action>.
class GrammarTextCompiler : public syntax::NotationReader<GrammarTextCompiler, GrammarNode> {
  public:
    GrammarTextCompiler(std::string_view text, GrammarDefinition& out)
        : NotationReader(text, out.nodes_), out_(out) {}

    bool run() {
        int lastDefined = -1;
        for (;;) {
            skipBlanks();
            const char c = current();
            if (c == '#') {
                ++at_;
                const auto n = name();
                if (!n)
                    return false;
                out_.start_ = symbol(*n);
                break;
            }
            if (c == '.') {
                out_.start_ = lastDefined;
                break;
            }
            const auto n = name();
            if (!n)
                return false;
            lastDefined = symbol(*n);
            if (!expect('='))
                return false;
            const auto pattern = alternatives();
            if (!pattern || !expect('.'))
                return false;
            out_.productions_[static_cast<std::size_t>(lastDefined)].graph = pattern->first;
        }
        if (out_.start_ < 0)
            return false;
        for (const Production& p : out_.productions_) {
            if (p.graph < 0)
                return false;
        }
        return true;
    }

  private:
    friend class syntax::NotationReader<GrammarTextCompiler, GrammarNode>;

    int symbol(const std::string& n) {
        const auto it = byName_.find(n);
        if (it != byName_.end())
            return it->second;
        out_.productions_.push_back(Production{n, -1});
        const int index = static_cast<int>(out_.productions_.size()) - 1;
        byName_.emplace(n, index);
        return index;
    }

    static bool startsOwnElement(char c) { return c == '<' || c == '$'; }

    std::optional<Fragment> named(const std::string& n) {
        GrammarNode node;
        node.kind = GrammarNodeKind::Nonterminal;
        node.production = symbol(n);
        return build_.single(std::move(node));
    }

    std::optional<Fragment> ownElement(char c) {
        switch (c) {
            case '$':
                return token();
            case '"':
                return literal();
            case '<':
                return action();
            default:
                return std::nullopt;
        }
    }

    std::optional<Fragment> token() {
        ++at_;
        auto n = nameHere();
        if (!n)
            return std::nullopt;
        GrammarNode node;
        node.kind = GrammarNodeKind::Token;
        node.token = out_.tokens_ ? out_.tokens_->find(*n) : -1;
        node.text = std::move(*n);
        return build_.single(std::move(node));
    }

    std::optional<Fragment> literal() {
        ++at_;
        GrammarNode node;
        node.kind = GrammarNodeKind::Literal;
        for (;;) {
            if (at_ >= text_.size())
                return std::nullopt;
            const char c = text_[at_++];
            if (c == '"') {
                // A doubled quote stands for a quote inside the literal.
                if (current() != '"')
                    break;
                ++at_;
            }
            if (node.text.size() == kMaxTokenText)
                return std::nullopt;
            node.text.push_back(c);
        }
        return build_.single(std::move(node));
    }

    std::optional<Fragment> action() {
        ++at_;
        std::string digits;
        while (current() != '>') {
            if (at_ >= text_.size() || digits.size() == kMaxTokenText)
                return std::nullopt;
            digits.push_back(current());
            ++at_;
        }
        ++at_;
        GrammarNode node;
        node.kind = GrammarNodeKind::Action;
        const long value = std::strtol(digits.c_str(), nullptr, 10);
        node.action = static_cast<int>(value > 2147483647L    ? 2147483647L
                                       : value < -2147483647L ? -2147483647L
                                                              : value);
        return build_.single(std::move(node));
    }

    GrammarDefinition& out_;
    std::unordered_map<std::string, int> byName_;
};

std::shared_ptr<const GrammarDefinition> GrammarDefinition::compileUncached(
    std::string_view grammar, std::string_view tokens) {
    auto result = std::make_shared<GrammarDefinition>();
    result->tokens_ = TokenDefinitions::compileUncached(tokens);
    GrammarTextCompiler compiler(grammar, *result);
    result->ok_ = compiler.run();
    return result;
}

std::shared_ptr<const GrammarDefinition> GrammarDefinition::compile(std::string_view grammar,
                                                                    std::string_view tokens) {
    static CompiledTextCache<std::pair<std::string, std::string>, GrammarDefinition> cache;
    return cache.get(std::make_pair(std::string(grammar), std::string(tokens)), [&] {
        auto result = std::make_shared<GrammarDefinition>();
        result->tokens_ = TokenDefinitions::compile(tokens);
        GrammarTextCompiler compiler(grammar, *result);
        result->ok_ = compiler.run();
        return result;
    });
}

}  // namespace vellum
