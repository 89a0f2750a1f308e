// The graph as the force layout sees it: vertices 0..n-1 with masses and, for each, its
// neighbours (edges taken both ways, loops and repeats left out). Coarsening merges matched
// neighbours (and leaves) into one vertex, for the multilevel layout. Internal to force3d.
#pragma once

#include <utility>
#include <vector>

namespace vellum::force3d {

class Random;

class LayoutGraph {
  public:
    LayoutGraph() = default;
    // Edges as pairs of vertex numbers below `size`; masses 1.
    LayoutGraph(int size, const std::vector<std::pair<int, int>>& edges);

    int size() const { return static_cast<int>(mass_.size()); }
    double mass(int v) const { return mass_[v]; }
    const std::vector<double>& masses() const { return mass_; }
    // The neighbours of v as a range of vertex numbers.
    const int* neighboursBegin(int v) const { return neighbours_.data() + offsets_[v]; }
    const int* neighboursEnd(int v) const { return neighbours_.data() + offsets_[v + 1]; }
    int degree(int v) const { return offsets_[v + 1] - offsets_[v]; }

    // A coarser graph: each vertex matched with at most one unmatched neighbour (the lightest),
    // in a seeded random order, and a leaf whose neighbour was matched already joined to it.
    // `parent` receives, for each vertex, its vertex in the result.
    LayoutGraph coarsen(Random& random, std::vector<int>& parent) const;

  private:
    LayoutGraph(std::vector<double> mass, const std::vector<std::pair<int, int>>& edges);

    std::vector<double> mass_;
    std::vector<int> offsets_;     // size() + 1 entries
    std::vector<int> neighbours_;  // sorted per vertex, without repeats
};

}  // namespace vellum::force3d
