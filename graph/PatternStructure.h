// The shape of a left-hand side as the matcher walks it: its vertices in list order, numbered
// from 0, and its edges in the order in which an occurrence pairs them (by source, in vertex
// order, then in the source's outgoing order). Built once per pattern; it refers to the pattern
// graph, which must outlive it and stay unchanged.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraph.h"

namespace vellum {

// The label that matches every label, the empty one too.
inline bool isWildcard(const std::string& label) {
    return label.size() == 1 && label[0] == '*';
}

struct PatternEdge {
    DirectedGraphEdge* edge = nullptr;
    int source = 0;  // index of the source among the pattern's vertices
    int target = 0;
};

class PatternStructure {
  public:
    explicit PatternStructure(DirectedGraph& pattern);

    const std::vector<DirectedGraphVertex*>& vertices() const { return vertices_; }
    const std::vector<PatternEdge>& edges() const { return edges_; }
    std::size_t vertexCount() const { return vertices_.size(); }
    // The index of a pattern vertex; -1 for any other vertex.
    int indexOf(const DirectedGraphVertex* vertex) const;

  private:
    std::vector<DirectedGraphVertex*> vertices_;
    std::vector<PatternEdge> edges_;  // in pair order
    std::unordered_map<const DirectedGraphVertex*, int> index_;
};

}  // namespace vellum
