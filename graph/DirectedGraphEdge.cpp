#include "graph/DirectedGraphEdge.h"

namespace vellum {

DirectedGraphEdge::DirectedGraphEdge(LabelBucket& label, DirectedGraphVertex& source,
                                     DirectedGraphVertex& target)
    : GraphObject(label), source_(&source), target_(&target) {}

const std::string& DirectedGraphEdge::className() const {
    static const std::string name = "DirectedGraphEdge";
    return name;
}

}  // namespace vellum
