#include "graph/PatternStructure.h"

namespace vellum {

PatternStructure::PatternStructure(DirectedGraph& pattern) {
    vertices_.reserve(pattern.vertexCount());
    for (DirectedGraphVertex& vertex : pattern.vertices()) {
        index_.emplace(&vertex, static_cast<int>(vertices_.size()));
        vertices_.push_back(&vertex);
    }
    edges_.reserve(pattern.edgeCount());
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        for (DirectedGraphEdge& edge : vertices_[i]->outgoing())
            edges_.push_back({&edge, static_cast<int>(i), indexOf(edge.target())});
    }
}

int PatternStructure::indexOf(const DirectedGraphVertex* vertex) const {
    const auto at = index_.find(vertex);
    return at == index_.end() ? -1 : at->second;
}

}  // namespace vellum
