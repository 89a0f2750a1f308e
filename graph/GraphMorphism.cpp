#include "graph/GraphMorphism.h"

#include <algorithm>

namespace vellum {
namespace {

// The first pair whose member `side` is `object`, or null.
template <typename Pairs, typename Object, typename Member>
auto* firstWith(Pairs& pairs, const Object* object, Member side) {
    const auto at = std::find_if(pairs.begin(), pairs.end(),
                                 [&](const auto& pair) { return pair.*side == object; });
    return at == pairs.end() ? nullptr : &*at;
}

}  // namespace

void GraphMorphism::addVertexPair(DirectedGraphVertex* left, DirectedGraphVertex* right) {
    vertices_.push_back({left, right});
}

void GraphMorphism::addEdgePair(DirectedGraphEdge* left, DirectedGraphEdge* right) {
    edges_.push_back({left, right});
}

bool GraphMorphism::removeVertexPair(const DirectedGraphVertex* left) {
    const auto at = std::find_if(vertices_.begin(), vertices_.end(),
                                 [&](const VertexPair& pair) { return pair.left == left; });
    if (at == vertices_.end())
        return false;
    vertices_.erase(at);
    return true;
}

void GraphMorphism::clear() {
    vertices_.clear();
    edges_.clear();
}

DirectedGraphVertex* GraphMorphism::imageOf(const DirectedGraphVertex* left) const {
    const VertexPair* pair = firstWith(vertices_, left, &VertexPair::left);
    return pair != nullptr ? pair->right : nullptr;
}

DirectedGraphEdge* GraphMorphism::imageOf(const DirectedGraphEdge* left) const {
    const EdgePair* pair = firstWith(edges_, left, &EdgePair::left);
    return pair != nullptr ? pair->right : nullptr;
}

DirectedGraphVertex* GraphMorphism::partnerOf(const DirectedGraphVertex* right) const {
    const VertexPair* pair = firstWith(vertices_, right, &VertexPair::right);
    return pair != nullptr ? pair->left : nullptr;
}

DirectedGraphEdge* GraphMorphism::partnerOf(const DirectedGraphEdge* right) const {
    const EdgePair* pair = firstWith(edges_, right, &EdgePair::right);
    return pair != nullptr ? pair->left : nullptr;
}

bool GraphMorphism::isImage(const DirectedGraphVertex* right) const {
    return firstWith(vertices_, right, &VertexPair::right) != nullptr;
}

bool GraphMorphism::isImage(const DirectedGraphEdge* right) const {
    return firstWith(edges_, right, &EdgePair::right) != nullptr;
}

bool GraphMorphism::hasPair(const DirectedGraphVertex* left) const {
    return firstWith(vertices_, left, &VertexPair::left) != nullptr;
}

bool GraphMorphism::hasPair(const DirectedGraphEdge* left) const {
    return firstWith(edges_, left, &EdgePair::left) != nullptr;
}

}  // namespace vellum
