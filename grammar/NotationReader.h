// Internal: the recursive descent shared by the token-definition compiler and the grammar
// compiler. It reads names, blanks, alternatives, sequences and the groups ( ), [ ] and { }; the
// derived compiler (CRTP) supplies the node for a name and reads the elements of its own notation.
// Every read function returns nullopt on a malformed text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grammar/SyntaxGraph.h"
#include "grammar/TokenDefinitions.h"

namespace vellum::syntax {

// Derived provides:
//   std::optional<Fragment> named(const std::string& name);  // an element written as a name
//   std::optional<Fragment> ownElement(char c);               // anything else, or nullopt
//   static bool startsOwnElement(char c);                     // c begins an element of its own
template <typename Derived, typename Node>
class NotationReader {
  protected:
    NotationReader(std::string_view text, std::vector<Node>& nodes) : text_(text), build_(nodes) {}

    char current() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void skipBlanks() {
        while (isBlank(current()))
            ++at_;
    }
    bool expect(char c) {
        skipBlanks();
        if (current() != c)
            return false;
        ++at_;
        return true;
    }

    std::optional<std::string> name() {
        skipBlanks();
        return nameHere();
    }

    // A name starting exactly at the current position (no blanks skipped).
    std::optional<std::string> nameHere() {
        std::string n;
        while (isNameChar(current())) {
            if (n.size() == kMaxTokenText)
                return std::nullopt;
            n.push_back(current());
            ++at_;
        }
        if (n.empty())
            return std::nullopt;
        return n;
    }

    std::optional<Fragment> alternatives() {
        auto result = sequence();
        if (!result)
            return std::nullopt;
        for (;;) {
            skipBlanks();
            if (current() != '|')
                return result;
            ++at_;
            auto next = sequence();
            if (!next)
                return std::nullopt;
            result = build_.alternatives(std::move(*result), std::move(*next));
        }
    }

    std::string_view text_;
    std::size_t at_ = 0;
    Builder<Node> build_;

  private:
    Derived& derived() { return static_cast<Derived&>(*this); }

    static bool startsFurtherElement(char c) {
        return (c >= 'A' && c <= 'Z') || c == '"' || c == '(' || c == '[' || c == '{' ||
               Derived::startsOwnElement(c);
    }

    std::optional<Fragment> sequence() {
        auto result = element();
        if (!result)
            return std::nullopt;
        for (;;) {
            skipBlanks();
            if (!startsFurtherElement(current()))
                return result;
            auto next = element();
            if (!next)
                return std::nullopt;
            result = build_.sequence(std::move(*result), std::move(*next));
        }
    }

    std::optional<Fragment> group(char close) {
        if (nesting_ == kMaxGroupNesting)
            return std::nullopt;
        ++at_;
        ++nesting_;
        auto inner = alternatives();
        --nesting_;
        if (!inner || !expect(close))
            return std::nullopt;
        return inner;
    }

    std::optional<Fragment> element() {
        skipBlanks();
        const char c = current();
        if (isNameChar(c)) {
            const auto n = name();
            if (!n)
                return std::nullopt;
            return derived().named(*n);
        }
        switch (c) {
            case '(':
                return group(')');
            case '[': {
                auto inner = group(']');
                if (!inner)
                    return std::nullopt;
                return build_.optional(std::move(*inner), Node{});
            }
            case '{': {
                auto inner = group('}');
                if (!inner)
                    return std::nullopt;
                return build_.repetition(std::move(*inner), Node{});
            }
            default:
                return derived().ownElement(c);
        }
    }

    int nesting_ = 0;  // open groups around the current element
};

}  // namespace vellum::syntax
