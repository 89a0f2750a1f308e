// The compiled form of a token-definition text: the definitions in order of first mention, the
// try order of the `$` definitions, and the syntax graph of every pattern. Compiled once per
// distinct text and shared, read-only, by every scanner that uses the same text.
#pragma once

#include <bitset>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vellum {

// Longest token text, name or literal the engine handles; longer input is rejected.
constexpr std::size_t kMaxTokenText = 127;

enum class PatternKind { Reference, Literal, Range, Except, AnyCharacter };

struct PatternNode {
    int successor = -1;    // node to continue with after a match; -1 ends the definition
    int alternative = -1;  // node to try instead after a mismatch; -1 for none
    PatternKind kind = PatternKind::Literal;
    int reference = -1;  // definition index, for references
    std::string text;    // literal characters; range bounds; excluded character
};

struct TokenDefinition {
    std::string name;  // without the leading `$`
    int code = 0;
    int pattern = -1;  // first node, -1 while only mentioned
    // Characters a match can begin with, and whether a match may consume nothing at all: lets
    // the scanner skip definitions that cannot match at the current character.
    std::bitset<256> first;
    bool mayBeEmpty = false;
};

class TokenDefinitions {
  public:
    // Compiles a token-definition text; null when the text is malformed (no message: the texts
    // are the program's own constants). Results are cached per text.
    static std::shared_ptr<const TokenDefinitions> compile(std::string_view text);
    // As compile(), but never touches the cache (for callers that feed arbitrary texts).
    static std::shared_ptr<const TokenDefinitions> compileUncached(std::string_view text);

    const std::vector<TokenDefinition>& definitions() const { return definitions_; }
    const std::vector<int>& tryOrder() const { return tryOrder_; }
    const std::vector<PatternNode>& nodes() const { return nodes_; }
    // Index of the definition with that name, or -1.
    int find(std::string_view name) const;

  private:
    friend class TokenTextCompiler;
    void computeFirstSets();

    std::vector<TokenDefinition> definitions_;
    std::vector<int> tryOrder_;
    std::vector<PatternNode> nodes_;
    std::unordered_map<std::string, int> byName_;
};

}  // namespace vellum
