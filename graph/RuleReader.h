// The reader of rule files (.drl): the grammar engine runs the GRAPHRULE grammar and tokens,
// and the semantic actions build a DirectedGraphRule with the variables, forced-reference
// marks, references and attribute expressions of the format.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraphRule.h"
#include "graph/GraphTextReader.h"
#include "graph/PatternCache.h"

namespace vellum {

// The numbers of the file are held in "__ID__" attributes while reading and resolved through
// maps in constant time (the first object with a number is the one a search in list order finds).
class RuleReader : public GraphTextReader {
  public:
    RuleReader();

    // Reads the file into `rule`. True on success, and then no object of the rule keeps an
    // "__ID__" attribute. On failure the console shows the failing action's message, if any,
    // then the two-line report ("File '...' contains errors near position ..." and
    // "Dump '...' !!!"); the rule then holds what was read up to the error and is not to be
    // used.
    bool read(const std::string& fileName, DirectedGraphRule& rule);

    int onAction(int number) override;

    // Where the rule's name stands in the file last read (0 when it was not read).
    long nameOffset() const { return nameOffset_; }

    // How the diagnostics read the patterns that "$(graph" calls in the rule's expressions name,
    // to check them against the rule's variables; without one they are not looked at.
    void setPatternLoader(PatternLoader loader) { patternLoader_ = std::move(loader); }

  private:
    enum class Side { None, Left, Right };
    enum class PairKind { Vertex, Edge };
    struct NumberPair {
        PairKind kind;
        std::int32_t left;
        std::int32_t right;
        long leftAt;  // offsets of the two numbers, for diagnostics
        long rightAt;
    };
    template <typename T>
    using Numbered = std::unordered_map<std::int32_t, T*>;

    bool isExpression(std::size_t k) const;

    void reset(DirectedGraphRule& rule);
    bool setName();
    bool startLeftSide();
    bool clearGraph() override;
    bool startRightSide();
    bool resolveInterface();
    bool addInterfacePair();
    bool addVertex() override;
    bool addReference();
    bool setVariable();
    // An attribute whose value token is an expression, or else a plain value.
    bool addAttribute(AttributeType type) override;
    bool addExpressionAttribute(AttributeType type);
    bool addEdge() override;
    bool setCondition();
    void removeNumbers();
    void noteAttribute(long at, const std::string& name) override;
    void checkInterfaceNumber(PairKind kind, bool found, std::int32_t number, long at,
                              const char* side) const;
    // Records why the expression in token k would fail when the rule is applied, if it would.
    void checkExpression(const std::string& text, std::size_t token,
                         const std::string& subject) const;

    VertexNumbers& verticesOfSide() { return side_ == Side::Left ? leftVertices_ : rightVertices_; }
    Numbered<DirectedGraphEdge>& edgesOfSide() {
        return side_ == Side::Left ? leftEdges_ : rightEdges_;
    }

    DirectedGraphRule* rule_ = nullptr;
    Side side_ = Side::None;
    DirectedGraph* graph_ = nullptr;                // the side being read
    DirectedGraphVertex* currentVertex_ = nullptr;  // the latest vertex, for its reference
    long nameOffset_ = 0;
    std::vector<NumberPair> pairs_;  // the interface as numbers, until the right side is read
    Numbered<DirectedGraphVertex> leftVertices_, rightVertices_;
    Numbered<DirectedGraphEdge> leftEdges_, rightEdges_;
    PatternLoader patternLoader_;
};

// Reads a rule file into a new rule; null when reading fails.
std::unique_ptr<DirectedGraphRule> loadRule(const std::string& fileName);

}  // namespace vellum
