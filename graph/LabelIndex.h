// The label index of one graph: for each label in use, the vertices and the edges that carry
// it, with constant-time insertion, removal and counts. Each label text is stored once, in its
// bucket, and objects point at their bucket; matching anchors its search on the rarest label
// and conditions count vertices by label through it. A bucket that falls empty is kept for a
// while, since rewriting often deletes the last element of a label and makes the next at once.
// For a vertex with many edges the index also counts its incoming and outgoing edges by label,
// so that counting them does not walk its edges (those of a vertex with few edges are walked).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraphVertex.h"

namespace vellum {

class LabelIndex;

enum class EdgeDirection { Outgoing, Incoming };

struct LabelBucket {
    std::string text;
    LabelIndex* index = nullptr;  // the index (and so the graph) the bucket belongs to
    // The objects in the graph with this label, in the order they took it.
    IntrusiveList<DirectedGraphVertex, LabelTag> vertices;
    IntrusiveList<DirectedGraphEdge, LabelTag> edges;
    // Objects pointing at the bucket, in the graph or not (lingering self-loops, detached
    // vertices); at 0 the bucket is idle and may go at the next sweep.
    std::size_t references = 0;
};

class LabelIndex {
  public:
    LabelIndex();
    LabelIndex(const LabelIndex&) = delete;
    LabelIndex& operator=(const LabelIndex&) = delete;

    // The bucket of the empty label: always there.
    LabelBucket& emptyLabel() { return *empty_; }
    // The bucket of a label; null or an idle (empty) bucket when no object has it.
    const LabelBucket* find(std::string_view label) const;

    // Counts the object's reference to its bucket and lists it there (it must not be listed).
    void enter(GraphObject& object);
    // The same for a new object that is to carry `label` (it must still point at the empty
    // label's bucket, without a reference): one listing instead of a listing and a relabelling.
    void enter(GraphObject& object, std::string_view label);
    // Unlists the object (if listed) and drops its reference.
    void leave(GraphObject& object);
    // Unlists the object without dropping its reference: it stays out of the index while it
    // still exists outside the graph.
    void unlist(GraphObject& object);
    // Lists again an object that unlist() took out (it keeps the reference it had).
    void relist(GraphObject& object) { list(object.bucket(), object); }
    // Moves the object to the bucket of `label`, listed there if it was listed before.
    void relabel(GraphObject& object, std::string_view label);
    // Turns the vertex's bucket list round so that the vertex, which must be listed, is last.
    void rotateToEnd(DirectedGraphVertex& vertex) { vertex.bucket().vertices.rotateToEnd(vertex); }

    // How many edges in the graph leave (enter) `vertex` with the label of `label`, or with any
    // label when `label` is null. Lingering self-loops are not in the graph and do not count.
    std::size_t incidentCount(const DirectedGraphVertex& vertex, const LabelBucket* label,
                              EdgeDirection direction) const;
    // A bucket pointer found through find() stays good while both of these are unchanged: the
    // generation moves on whenever a bucket is made or erased, or buckets change index. The
    // identity is held by pointer so that one remembered keeps its cell, which no other index
    // can then have.
    const std::shared_ptr<const int>& identity() const { return identity_; }
    std::uint64_t generation() const { return generation_; }

    // Forgets every bucket but the empty label's, which starts afresh: for the graph's clear.
    void reset();
    // Exchanges the buckets of the two indexes; each bucket then names its new index, so the
    // objects pointing at it belong to the other graph. For the graph's swap.
    void swap(LabelIndex& other) noexcept;

  private:
    LabelBucket& acquire(std::string_view label);
    void release(LabelBucket& bucket);
    // Erases every idle bucket.
    void sweep();
    void list(LabelBucket& bucket, GraphObject& object);

    // The edge counts of a vertex with many edges, kept in step whenever an edge is listed or
    // unlisted (`delta` +1 after listing, -1 before unlisting). A vertex has edges of few
    // labels, so they are a short list, in which a label stays once seen (no allocation as
    // edges come and go).
    struct LabelCounts {
        const LabelBucket* label = nullptr;
        std::size_t outgoing = 0;
        std::size_t incoming = 0;
    };
    struct Counted {
        std::size_t incoming = 0;  // edges in the graph entering the vertex, of any label
        std::vector<LabelCounts> labels;
        LabelCounts& of(const LabelBucket* label);
        const LabelCounts* find(const LabelBucket* label) const;
    };
    Counted* countedFor(const DirectedGraphVertex& vertex);
    void countEdge(const DirectedGraphEdge& edge, int delta);
    void countAt(const DirectedGraphVertex& vertex, const DirectedGraphEdge& edge, int delta);
    void startCounting(const DirectedGraphVertex& vertex);
    void stopCounting(const DirectedGraphVertex& vertex);
    std::size_t walkCount(const DirectedGraphVertex& vertex, const LabelBucket* label,
                          EdgeDirection direction) const;

    std::shared_ptr<const int> identity_ = std::make_shared<const int>(0);
    std::uint64_t generation_ = 0;
    // Keys view the text of their own bucket.
    std::unordered_map<std::string_view, std::unique_ptr<LabelBucket>> buckets_;
    LabelBucket* empty_ = nullptr;
    // Buckets without references. Swept when they outnumber the others (and a few more), so
    // that they cost at most as much again as the labels in use.
    std::size_t idle_ = 0;
    // The vertices whose edges are counted: those with more than kManyEdges list entries
    // (incoming and outgoing), until they fall to kFewEdges.
    std::unordered_map<const DirectedGraphVertex*, Counted> counted_;
    // The entry last looked up: rewriting tends to touch one busy vertex again and again.
    // (Map entries stay where they are until erased.)
    const DirectedGraphVertex* lastVertex_ = nullptr;
    Counted* lastCounted_ = nullptr;
};

}  // namespace vellum
