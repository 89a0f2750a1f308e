// The incremental pass of force3d, for a graph that was laid out before and has changed a little
// (a rewriting step of a live run): vertices without a position start near their placed
// neighbours, and only they and their neighbours move, the old ones held near where they were.
// The cost follows the size of the change, so the picture does not jump. Internal to force3d.
#pragma once

#include <vector>

#include "plugins/force3d/ForceSettings.h"
#include "plugins/force3d/LayoutGraph.h"
#include "plugins/force3d/Vec3.h"

namespace vellum::force3d {

class IncrementalLayout {
  public:
    explicit IncrementalLayout(const ForceSettings& settings) : settings_(settings) {}

    // `positions` holds every vertex's position, meaningful where `placed` is true. Gives the
    // other vertices positions, relaxes them with their neighbours and returns the vertices whose
    // positions changed. Springs take the length the picture has round the change (the median
    // of the placed edges there), and an old vertex moves by at most that length or the edge
    // length setting, whichever is less.
    std::vector<int> update(const LayoutGraph& graph, std::vector<Vec3>& positions,
                            const std::vector<bool>& placed) const;

  private:
    ForceSettings settings_;
};

}  // namespace vellum::force3d
