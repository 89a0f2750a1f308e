#include "graph/HostLabels.h"

namespace vellum {

void HostLabels::lookUp(const PatternStructure& pattern, const LabelIndex& index) {
    vertices_.resize(pattern.vertexCount());
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        const std::string& label = pattern.vertices()[i]->label();
        vertices_[i].wildcard = isWildcard(label);
        vertices_[i].bucket = vertices_[i].wildcard ? nullptr : index.find(label);
    }
    edges_.resize(pattern.edges().size());
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        const std::string& label = pattern.edges()[i].edge->label();
        edges_[i].wildcard = isWildcard(label);
        edges_[i].bucket = edges_[i].wildcard ? nullptr : index.find(label);
    }
    index_ = index.identity();
    generation_ = index.generation();
}

void HostLabels::count(Entry& entry, std::size_t all, std::size_t labelled) {
    if (entry.wildcard) {
        entry.count = all;
        return;
    }
    entry.count = labelled;
    entry.text = labelled != 0 ? &entry.bucket->text : nullptr;
    allPresent_ = allPresent_ && labelled != 0;
}

void HostLabels::resolve(const PatternStructure& pattern, const DirectedGraph& host) {
    const LabelIndex& index = host.labelIndex();
    if (index_ != index.identity() || generation_ != index.generation() ||
        vertices_.size() != pattern.vertexCount() || edges_.size() != pattern.edges().size())
        lookUp(pattern, index);
    allPresent_ = true;
    for (Entry& entry : vertices_)
        count(entry, host.vertexCount(), entry.bucket ? entry.bucket->vertices.size() : 0);
    for (Entry& entry : edges_)
        count(entry, host.edgeCount(), entry.bucket ? entry.bucket->edges.size() : 0);
}

}  // namespace vellum
