// Internal: the classic construction of a syntax graph from extended Backus-Naur form, shared by
// the token-definition compiler and the grammar compiler. Nodes live in one vector and refer to
// each other by index; a fragment is a compiled piece of pattern with the nodes whose successor
// is still to be linked to whatever follows.
#pragma once

#include <utility>
#include <vector>

namespace vellum::syntax {

struct Fragment {
    int first = -1;
    std::vector<int> ends;
};

template <typename Node>
class Builder {
  public:
    explicit Builder(std::vector<Node>& nodes) : nodes_(nodes) {}

    Fragment single(Node node) {
        nodes_.push_back(std::move(node));
        const int index = static_cast<int>(nodes_.size()) - 1;
        return {index, {index}};
    }

    // A then B: every end of A continues with B's first node.
    Fragment sequence(Fragment a, Fragment b) {
        for (int end : a.ends)
            nodes_[end].successor = b.first;
        return {a.first, std::move(b.ends)};
    }

    // A | B: B's first node becomes the last alternative in the chain of A's first node.
    Fragment alternatives(Fragment a, Fragment b) {
        appendAlternative(a.first, b.first);
        a.ends.insert(a.ends.end(), b.ends.begin(), b.ends.end());
        return a;
    }

    // [ A ]: an empty element closes A's chain of alternatives and continues with what follows.
    Fragment optional(Fragment a, Node empty) {
        Fragment e = single(std::move(empty));
        appendAlternative(a.first, e.first);
        a.ends.push_back(e.first);
        return a;
    }

    // { A }: A's ends loop back to its first node; the empty element leaves the loop.
    Fragment repetition(Fragment a, Node empty) {
        for (int end : a.ends)
            nodes_[end].successor = a.first;
        Fragment e = single(std::move(empty));
        appendAlternative(a.first, e.first);
        return {a.first, {e.first}};
    }

  private:
    void appendAlternative(int node, int alternative) {
        while (nodes_[node].alternative != -1)
            node = nodes_[node].alternative;
        nodes_[node].alternative = alternative;
    }

    std::vector<Node>& nodes_;
};

// Deepest nesting of ( ), [ ] and { } that the compilers accept. The program's own texts nest a
// few levels; the bound keeps a malformed text from exhausting the stack of the recursive descent.
constexpr int kMaxGroupNesting = 256;

// The characters that separate elements in both notations.
inline bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
inline bool isNameChar(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace vellum::syntax
