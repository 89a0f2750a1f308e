#include "graph/DirectedGraphVertex.h"

namespace vellum {

DirectedGraphVertex::DirectedGraphVertex(LabelBucket& label)
    : GraphObject(label, GraphObjectKind::Vertex) {}

DirectedGraphEdge* DirectedGraphVertex::findOutgoingTo(const DirectedGraphVertex& target) const {
    for (DirectedGraphEdge& edge : outgoing()) {
        if (edge.target() == &target)
            return &edge;
    }
    return nullptr;
}

bool DirectedGraphVertex::hasSeveralOutgoingTo(const DirectedGraphVertex& target) const {
    int found = 0;
    for (const DirectedGraphEdge& edge : outgoing()) {
        if (edge.target() == &target && ++found > 1)
            return true;
    }
    return false;
}

}  // namespace vellum
