// The full layout of force3d: a multilevel spring-electrical layout. The graph is coarsened by
// matching neighbours until it is small, the coarsest graph is laid out from seeded random
// positions, and each finer level starts from the level above and is relaxed for a bounded number
// of steps, with the Barnes-Hut octree for the repulsion. Internal to force3d.
#pragma once

#include <functional>
#include <vector>

#include "plugins/force3d/ForceSettings.h"
#include "plugins/force3d/LayoutGraph.h"
#include "plugins/force3d/Vec3.h"

namespace vellum::force3d {

class Random;

class ForceLayout {
  public:
    // Called now and then with the positions of the finest level while it is being relaxed,
    // centred and scaled as the result will be.
    using Progress = std::function<void(const std::vector<Vec3>&)>;

    explicit ForceLayout(const ForceSettings& settings) : settings_(settings) {}

    // A position for every vertex of the graph, centred on the origin and scaled so that the
    // median edge has the edge length (or, where edges cannot all be that short, so that the
    // vertices are spread like a lattice of that spacing).
    std::vector<Vec3> layout(const LayoutGraph& graph, const Progress& progress = {}) const;

  private:
    std::vector<Vec3> layoutLevel(const LayoutGraph& graph, Random& random, int depth,
                                  const Progress* progress) const;
    void normalise(const LayoutGraph& graph, std::vector<Vec3>& positions) const;
    void relax(const LayoutGraph& graph, std::vector<Vec3>& positions, int iterations, double step,
               const Progress* progress) const;

    ForceSettings settings_;
};

}  // namespace vellum::force3d
