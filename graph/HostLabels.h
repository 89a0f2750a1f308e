// A pattern's labels as one host graph has them, looked up once per search: for each pattern
// vertex and edge, how many host elements carry its label (what the matcher picks its start
// by) and the host's own text of that label (so that the search compares labels by address).
// The host's label buckets are remembered from one search to the next and looked up by text
// again only when the host's index has made or erased buckets since.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graph/PatternStructure.h"

namespace vellum {

class HostLabels {
  public:
    // Looks every label of the pattern up in `host`, one index look-up each. Valid until the
    // host's labels change.
    void resolve(const PatternStructure& pattern, const DirectedGraph& host);

    // False when some label other than the wildcard occurs nowhere in the host: then the
    // pattern has no occurrence.
    bool allPresent() const { return allPresent_; }

    // The host elements with the label of pattern vertex (edge) `index`; for a wildcard vertex
    // every host vertex, for a wildcard edge every host edge.
    std::size_t vertexCount(int index) const {
        return vertices_[static_cast<std::size_t>(index)].count;
    }
    std::size_t edgeCount(int index) const { return edges_[static_cast<std::size_t>(index)].count; }
    // The host's text of that label; null for the wildcard, or when no host element has it.
    const std::string* vertexText(int index) const {
        return vertices_[static_cast<std::size_t>(index)].text;
    }
    const std::string* edgeText(int index) const {
        return edges_[static_cast<std::size_t>(index)].text;
    }

  private:
    struct Entry {
        std::size_t count = 0;
        const std::string* text = nullptr;
        const LabelBucket* bucket = nullptr;  // null for the wildcard and for absent labels
        bool wildcard = false;
    };
    void lookUp(const PatternStructure& pattern, const LabelIndex& index);
    // The entry's count: `all` for the wildcard, else `labelled` (and the label's text if any).
    void count(Entry& entry, std::size_t all, std::size_t labelled);

    std::vector<Entry> vertices_;  // by pattern vertex
    std::vector<Entry> edges_;     // by pattern edge, in pair order
    bool allPresent_ = true;
    // The index and generation that the buckets were looked up in.
    std::shared_ptr<const int> index_;
    std::uint64_t generation_ = 0;
};

}  // namespace vellum
