// A directed edge: a GraphObject with a source and a target vertex, fixed at creation. It is
// held, without ownership, in its source's outgoing list and its target's incoming list.
#pragma once

#include "graph/GraphObject.h"

namespace vellum {

class DirectedGraphVertex;
struct OutgoingTag;  // links of the source's outgoing list
struct IncomingTag;  // links of the target's incoming list

class DirectedGraphEdge : public GraphObject,
                          public ListHook<OutgoingTag>,
                          public ListHook<IncomingTag> {
  public:
    DirectedGraphVertex* source() const { return source_; }
    DirectedGraphVertex* target() const { return target_; }
    bool isLoop() const { return source_ == target_; }

  private:
    friend class DirectedGraph;
    friend class ObjectPool;
    DirectedGraphEdge(LabelBucket& label, DirectedGraphVertex& source, DirectedGraphVertex& target);
    ~DirectedGraphEdge() = default;

    DirectedGraphVertex* source_;
    DirectedGraphVertex* target_;
};

}  // namespace vellum
