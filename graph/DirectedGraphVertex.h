// A vertex: a GraphObject with the lists of its incoming and outgoing edges, in the order the
// edges were created. The lists do not own the edges, with one exception: a self-loop removed
// from the graph stays in its vertex's incoming list (see DirectedGraph::removeEdge) and is then
// owned by the vertex, which destroys it with itself.
#pragma once

#include <cstddef>

#include "graph/DirectedGraphEdge.h"

namespace vellum {

using IncomingEdges = ListView<DirectedGraphEdge, IncomingTag>;
using OutgoingEdges = ListView<DirectedGraphEdge, OutgoingTag>;

class DirectedGraphVertex : public GraphObject {
  public:
    IncomingEdges incoming() const { return IncomingEdges(incoming_); }
    OutgoingEdges outgoing() const { return OutgoingEdges(outgoing_); }
    std::size_t inDegree() const { return incoming_.size(); }
    std::size_t outDegree() const { return outgoing_.size(); }

    // The first edge of the outgoing list that goes to `target`, or null.
    DirectedGraphEdge* findOutgoingTo(const DirectedGraphVertex& target) const;
    // True when more than one outgoing edge goes to `target`.
    bool hasSeveralOutgoingTo(const DirectedGraphVertex& target) const;

  private:
    friend class DirectedGraph;
    friend class ObjectPool;

    explicit DirectedGraphVertex(LabelBucket& label);
    ~DirectedGraphVertex() = default;

    IntrusiveList<DirectedGraphEdge, IncomingTag> incoming_;
    IntrusiveList<DirectedGraphEdge, OutgoingTag> outgoing_;
};

}  // namespace vellum
