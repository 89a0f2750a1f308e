#include "plugins/force3d/LayoutGraph.h"

#include <algorithm>

#include "plugins/force3d/Random.h"

namespace vellum::force3d {

LayoutGraph::LayoutGraph(int size, const std::vector<std::pair<int, int>>& edges)
    : LayoutGraph(std::vector<double>(static_cast<std::size_t>(size), 1.0), edges) {}

LayoutGraph::LayoutGraph(std::vector<double> mass, const std::vector<std::pair<int, int>>& edges)
    : mass_(std::move(mass)) {
    const int n = size();
    offsets_.assign(static_cast<std::size_t>(n) + 1, 0);
    for (const auto& [a, b] : edges) {
        if (a == b)
            continue;
        ++offsets_[a + 1];
        ++offsets_[b + 1];
    }
    for (int v = 0; v < n; ++v)
        offsets_[v + 1] += offsets_[v];
    neighbours_.resize(static_cast<std::size_t>(offsets_[n]));
    std::vector<int> fill(offsets_.begin(), offsets_.end() - 1);
    for (const auto& [a, b] : edges) {
        if (a == b)
            continue;
        neighbours_[fill[a]++] = b;
        neighbours_[fill[b]++] = a;
    }
    // Sort and drop repeats per vertex, compacting the array as we go.
    int write = 0;
    for (int v = 0; v < n; ++v) {
        auto first = neighbours_.begin() + offsets_[v];
        auto last = neighbours_.begin() + offsets_[v + 1];
        std::sort(first, last);
        last = std::unique(first, last);
        offsets_[v] = write;
        for (auto it = first; it != last; ++it)
            neighbours_[write++] = *it;
    }
    offsets_[n] = write;
    neighbours_.resize(static_cast<std::size_t>(write));
}

LayoutGraph LayoutGraph::coarsen(Random& random, std::vector<int>& parent) const {
    const int n = size();
    std::vector<int> order(static_cast<std::size_t>(n));
    for (int v = 0; v < n; ++v)
        order[v] = v;
    for (int i = n - 1; i > 0; --i)
        std::swap(order[i], order[static_cast<int>(random.next() * (i + 1))]);

    parent.assign(static_cast<std::size_t>(n), -1);
    std::vector<double> mass;
    for (int v : order) {
        if (parent[v] >= 0)
            continue;
        int partner = -1;
        for (const int* w = neighboursBegin(v); w != neighboursEnd(v); ++w) {
            if (parent[*w] < 0 && (partner < 0 || mass_[*w] < mass_[partner]))
                partner = *w;
        }
        // A leaf whose neighbour is taken joins it: a star then shrinks to its centre at once.
        if (partner < 0 && degree(v) == 1) {
            parent[v] = parent[*neighboursBegin(v)];
            mass[parent[v]] += mass_[v];
            continue;
        }
        parent[v] = static_cast<int>(mass.size());
        mass.push_back(mass_[v]);
        if (partner >= 0) {
            parent[partner] = parent[v];
            mass.back() += mass_[partner];
        }
    }
    std::vector<std::pair<int, int>> edges;
    edges.reserve(neighbours_.size() / 2);
    for (int v = 0; v < n; ++v) {
        for (const int* w = neighboursBegin(v); w != neighboursEnd(v); ++w) {
            if (v < *w && parent[v] != parent[*w])
                edges.emplace_back(parent[v], parent[*w]);
        }
    }
    return LayoutGraph(std::move(mass), edges);
}

}  // namespace vellum::force3d
