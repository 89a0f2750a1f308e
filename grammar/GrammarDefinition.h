// The compiled form of a grammar text together with its token definitions: productions in order
// of first mention, the syntax graph of every production, and the start production. Compiled
// once per distinct pair of texts and shared, read-only, by every parser that uses them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "grammar/TokenDefinitions.h"

namespace vellum {

enum class GrammarNodeKind { Nonterminal, Literal, Action, Token };

struct GrammarNode {
    int successor = -1;
    int alternative = -1;
    GrammarNodeKind kind = GrammarNodeKind::Literal;
    int production = -1;  // nonterminal: index of its production
    std::string text;     // literal text (empty: the empty element), or the token's name
    int action = 0;       // action number
    int token = -1;       // token: index of its definition, -1 when the tokens do not define it
};

struct Production {
    std::string name;
    int graph = -1;  // first node; -1 while the name has only been used
};

class GrammarDefinition {
  public:
    // Compiles both texts. The result is never null; ok() says whether the grammar text compiled
    // with every nonterminal defined (the token text's own result is deliberately not part of
    // it). Results are cached per pair of texts.
    static std::shared_ptr<const GrammarDefinition> compile(std::string_view grammar,
                                                            std::string_view tokens);
    static std::shared_ptr<const GrammarDefinition> compileUncached(std::string_view grammar,
                                                                    std::string_view tokens);

    bool ok() const { return ok_; }
    const std::shared_ptr<const TokenDefinitions>& tokens() const { return tokens_; }
    const std::vector<Production>& productions() const { return productions_; }
    const std::vector<GrammarNode>& nodes() const { return nodes_; }
    int start() const { return start_; }

  private:
    friend class GrammarTextCompiler;

    bool ok_ = false;
    std::shared_ptr<const TokenDefinitions> tokens_;
    std::vector<Production> productions_;
    std::vector<GrammarNode> nodes_;
    int start_ = -1;
};

}  // namespace vellum
