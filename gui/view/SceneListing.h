// The scene built from a graph as text, for checks and for users who script: one line per
// vertex in graph order, one per edge, each labelled element followed by its label, then the
// totals. Numbers are written in the default stream format.
#pragma once

#include <ostream>

#include "graph/DirectedGraph.h"
#include "gui/view/GraphScene.h"

namespace vellum {

// Writes the listing of `scene`, which was built from `graph`.
void writeSceneListing(std::ostream& out, DirectedGraph& graph, const GraphScene& scene);

}  // namespace vellum
