#include "graph/DirectedGraphEdge.h"

namespace vellum {

DirectedGraphEdge::DirectedGraphEdge(LabelBucket& label, DirectedGraphVertex& source,
                                     DirectedGraphVertex& target)
    : GraphObject(label, GraphObjectKind::Edge), source_(&source), target_(&target) {}

}  // namespace vellum
