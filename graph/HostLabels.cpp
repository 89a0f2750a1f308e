#include "graph/HostLabels.h"

namespace vellum {

void HostLabels::resolve(const PatternStructure& pattern, const DirectedGraph& host) {
    allPresent_ = true;
    vertices_.resize(pattern.vertexCount());
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        const std::string& label = pattern.vertices()[i]->label();
        Entry& entry = vertices_[i];
        if (isWildcard(label)) {
            entry = {host.vertexCount(), nullptr};
            continue;
        }
        const auto listed = host.verticesWithLabel(label);
        entry = {listed.size(), listed.empty() ? nullptr : &listed.front()->label()};
        allPresent_ = allPresent_ && !listed.empty();
    }
    edges_.resize(pattern.edges().size());
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        const std::string& label = pattern.edges()[i].edge->label();
        Entry& entry = edges_[i];
        if (isWildcard(label)) {
            entry = {host.edgeCount(), nullptr};
            continue;
        }
        const auto listed = host.edgesWithLabel(label);
        entry = {listed.size(), listed.empty() ? nullptr : &listed.front()->label()};
        allPresent_ = allPresent_ && !listed.empty();
    }
}

}  // namespace vellum
