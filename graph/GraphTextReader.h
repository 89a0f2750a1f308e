// What the graph and the rule reader share: the handler of the graph actions, numbered vertices,
// the labels and attributes of the object being read, and the messages about edge endpoints. The
// actions read the latest tokens in the layout both grammars give them (graph/GraphFormat.h,
// graph/RuleFormat.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "grammar/GrammarParser.h"
#include "graph/Attribute.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphFormat.h"

namespace vellum {

class GraphTextReader : public GrammarParser {
  protected:
    // Runs a graph action (GraphAction, as the graph and the rule grammar share them; GraphName
    // is not among them) through the hooks below and the shared attribute actions. Unknown
    // numbers take unknownAction().
    int onGraphAction(GraphAction action);

    // The actions each format reads its own way: empty the graph being read, add a vertex, add
    // an edge. True goes on, false aborts the parse.
    virtual bool clearGraph() = 0;
    virtual bool addVertex() = 0;
    virtual bool addEdge() = 0;
    // Adds the attribute of `type` (not Vector) that tokens 1 and 0 give; the default reads the
    // value as written (addValueAttribute).
    virtual bool addAttribute(AttributeType type) { return addValueAttribute(type); }

    using VertexNumbers = std::unordered_map<std::int32_t, DirectedGraphVertex*>;

    // Creates a vertex in `graph` numbered by token 0 (held in its kNumberAttribute) and makes
    // it the current object. A number already in `numbers` keeps its first vertex and earns a
    // warning.
    DirectedGraphVertex* addNumberedVertex(DirectedGraph& graph, VertexNumbers& numbers);
    // The vertices that the source number (token 2) and the target number (token 0) of an edge
    // name. Each number that names no vertex is reported ("Vertex with number '...' not
    // found!!!"); false then.
    bool findEndpoints(const VertexNumbers& numbers, DirectedGraphVertex*& source,
                       DirectedGraphVertex*& target) const;

    // Adds to the current object the attribute of `type` (not Vector) named by token 1, whose
    // value is token 0 as written. False when there is no current object or a boolean's value
    // is neither true nor false.
    bool addValueAttribute(AttributeType type);
    // A vector's name (token 0), each element (token 0), and its end, which adds it to the
    // current object (false when there is none).
    bool startVector();
    bool addVectorElement();
    bool finishVector();
    // Labels the current object with token 0; false when there is none.
    bool setLabel();

    // What stands between the first and the last character of a string or expression token (its
    // quotes or brackets), as written.
    static std::string innerText(std::string_view token);

    // Called with the name and its offset before an attribute read as a value is added.
    virtual void noteAttribute(long /*nameAt*/, const std::string& /*name*/) {}

    GraphObject* current_ = nullptr;  // the vertex or edge that labels and attributes go to

  private:
    void reportMissingVertex(std::size_t token, std::int32_t number) const;

    std::string vectorName_;
    long vectorNameAt_ = 0;
    std::vector<double> vectorElements_;
};

// The object of `numbers` with `number`; null when there is none.
template <typename T>
T* numbered(const std::unordered_map<std::int32_t, T*>& numbers, std::int32_t number) {
    const auto at = numbers.find(number);
    return at == numbers.end() ? nullptr : at->second;
}

}  // namespace vellum
