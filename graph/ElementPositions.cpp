#include "graph/ElementPositions.h"

namespace vellum {
namespace {

template <typename List>
std::unordered_map<const GraphObject*, std::size_t> positionsOf(const List& list) {
    std::unordered_map<const GraphObject*, std::size_t> positions;
    std::size_t position = 0;
    for (const auto& element : list)
        positions.emplace(&element, ++position);
    return positions;
}

template <typename Pairs>
std::vector<std::size_t> imagePositions(
    const Pairs& pairs, const std::unordered_map<const GraphObject*, std::size_t>& positions) {
    std::vector<std::size_t> images;
    images.reserve(pairs.size());
    for (const auto& pair : pairs)
        images.push_back(positions.at(pair.right));
    return images;
}

}  // namespace

ElementPositions::ElementPositions(const DirectedGraph& graph)
    : vertices_(positionsOf(graph.vertices())), edges_(positionsOf(graph.edges())) {}

std::vector<std::size_t> ElementPositions::vertexImages(const GraphMorphism& occurrence) const {
    return imagePositions(occurrence.vertexPairs(), vertices_);
}

std::vector<std::size_t> ElementPositions::edgeImages(const GraphMorphism& occurrence) const {
    return imagePositions(occurrence.edgePairs(), edges_);
}

std::string ElementPositions::line(const GraphMorphism& occurrence) const {
    std::string text;
    for (std::size_t position : vertexImages(occurrence)) {
        if (!text.empty())
            text += ' ';
        text += std::to_string(position);
    }
    text += text.empty() ? "|" : " |";
    for (std::size_t position : edgeImages(occurrence))
        text += " " + std::to_string(position);
    return text;
}

}  // namespace vellum
