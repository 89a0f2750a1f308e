// A partial map between two graphs as lists of vertex pairs and edge pairs, each in the order
// the pairs were added. It serves as a rule's interface (left-hand object, right-hand object)
// and as an occurrence of a left-hand side in a host graph (left-hand object, its image).
// A side of a pair may be null: an interface pair whose number named no object keeps it so.
// The pairs do not own the objects. The pairs of a small rule's occurrence are kept inline.
#pragma once

#include <cstddef>

#include "graph/DirectedGraphVertex.h"
#include "graph/InlineVector.h"

namespace vellum {

struct VertexPair {
    DirectedGraphVertex* left = nullptr;
    DirectedGraphVertex* right = nullptr;
};

struct EdgePair {
    DirectedGraphEdge* left = nullptr;
    DirectedGraphEdge* right = nullptr;
};

using VertexPairs = InlineVector<VertexPair, 4>;
using EdgePairs = InlineVector<EdgePair, 4>;

class GraphMorphism {
  public:
    void addVertexPair(DirectedGraphVertex* left, DirectedGraphVertex* right);
    void addEdgePair(DirectedGraphEdge* left, DirectedGraphEdge* right);
    // Removes the first pair of `left`; false when it has none.
    bool removeVertexPair(const DirectedGraphVertex* left);
    void clearEdgePairs() { edges_.clear(); }
    void clear();

    // The right side of the first pair of `left`; null when there is none.
    DirectedGraphVertex* imageOf(const DirectedGraphVertex* left) const;
    DirectedGraphEdge* imageOf(const DirectedGraphEdge* left) const;
    // The left side of the first pair whose right side is `right`; null when there is none.
    DirectedGraphVertex* partnerOf(const DirectedGraphVertex* right) const;
    DirectedGraphEdge* partnerOf(const DirectedGraphEdge* right) const;
    // True when some pair has `right` as its right side.
    bool isImage(const DirectedGraphVertex* right) const;
    bool isImage(const DirectedGraphEdge* right) const;
    // True when some pair has `left` as its left side.
    bool hasPair(const DirectedGraphVertex* left) const;
    bool hasPair(const DirectedGraphEdge* left) const;

    const VertexPairs& vertexPairs() const { return vertices_; }
    const EdgePairs& edgePairs() const { return edges_; }
    VertexPairs& vertexPairs() { return vertices_; }
    EdgePairs& edgePairs() { return edges_; }
    bool empty() const { return vertices_.empty() && edges_.empty(); }

  private:
    VertexPairs vertices_;
    EdgePairs edges_;
};

}  // namespace vellum
