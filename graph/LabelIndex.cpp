#include "graph/LabelIndex.h"

#include <algorithm>
#include <utility>

namespace vellum {
namespace {

// A vertex with more list entries than this has its edges counted by label; back below the
// lower bound it is walked again. The gap keeps a vertex near the bound from flapping.
constexpr std::size_t kManyEdges = 32;
constexpr std::size_t kFewEdges = 16;

std::size_t entries(const DirectedGraphVertex& vertex) {
    return vertex.outDegree() + vertex.inDegree();
}

}  // namespace

LabelIndex::LabelIndex() {
    reset();
}

const LabelBucket* LabelIndex::find(std::string_view label) const {
    const auto at = buckets_.find(label);
    return at == buckets_.end() ? nullptr : at->second.get();
}

LabelBucket& LabelIndex::acquire(std::string_view label) {
    auto at = buckets_.find(label);
    if (at == buckets_.end()) {
        auto bucket = std::make_unique<LabelBucket>();
        bucket->text = std::string(label);
        bucket->index = this;
        const std::string_view key = bucket->text;
        at = buckets_.emplace(key, std::move(bucket)).first;
        ++generation_;
    } else if (at->second->references == 0) {
        --idle_;  // an idle bucket in use again
    }
    ++at->second->references;
    return *at->second;
}

void LabelIndex::release(LabelBucket& bucket) {
    // The empty label's bucket is never released: it holds one reference of the index's own.
    if (--bucket.references != 0)
        return;
    constexpr std::size_t kFewIdle = 64;
    ++idle_;
    if (idle_ > std::max(kFewIdle, buckets_.size() - idle_))
        sweep();
}

void LabelIndex::sweep() {
    ++generation_;
    // Erased through iterators: a key views the text that the erasure destroys.
    for (auto at = buckets_.begin(); at != buckets_.end();) {
        if (at->second->references == 0)
            at = buckets_.erase(at);
        else
            ++at;
    }
    idle_ = 0;
}

void LabelIndex::list(LabelBucket& bucket, GraphObject& object) {
    if (object.kind() == GraphObjectKind::Vertex) {
        bucket.vertices.pushBack(static_cast<DirectedGraphVertex&>(object));
        return;
    }
    auto& edge = static_cast<DirectedGraphEdge&>(object);
    bucket.edges.pushBack(edge);
    countEdge(edge, +1);
}

void LabelIndex::enter(GraphObject& object) {
    ++object.bucket().references;
    list(object.bucket(), object);
}

void LabelIndex::enter(GraphObject& object, std::string_view label) {
    LabelBucket& bucket = acquire(label);
    object.label_.setBucket(bucket);
    list(bucket, object);
}

void LabelIndex::unlist(GraphObject& object) {
    if (!object.inGraph())
        return;
    LabelBucket& bucket = object.bucket();
    if (object.kind() == GraphObjectKind::Vertex) {
        bucket.vertices.erase(static_cast<DirectedGraphVertex&>(object));
        return;
    }
    auto& edge = static_cast<DirectedGraphEdge&>(object);
    countEdge(edge, -1);
    bucket.edges.erase(edge);
}

void LabelIndex::leave(GraphObject& object) {
    unlist(object);
    // A vertex that goes may still be counted when lingering loops kept its lists long.
    if (object.kind() == GraphObjectKind::Vertex && !counted_.empty())
        stopCounting(static_cast<DirectedGraphVertex&>(object));
    release(object.bucket());
}

void LabelIndex::countEdge(const DirectedGraphEdge& edge, int delta) {
    countAt(*edge.source(), edge, delta);
    if (!edge.isLoop())
        countAt(*edge.target(), edge, delta);
}

LabelIndex::LabelCounts& LabelIndex::Counted::of(const LabelBucket* label) {
    for (LabelCounts& counts : labels) {
        if (counts.label == label)
            return counts;
    }
    // Labels whose edges have all gone make room first (their buckets may be gone too: the
    // pointers are only compared).
    constexpr std::size_t kFewLabels = 8;
    if (labels.size() >= kFewLabels) {
        labels.erase(
            std::remove_if(labels.begin(), labels.end(),
                           [](const LabelCounts& c) { return c.outgoing == 0 && c.incoming == 0; }),
            labels.end());
    }
    labels.push_back({label, 0, 0});
    return labels.back();
}

const LabelIndex::LabelCounts* LabelIndex::Counted::find(const LabelBucket* label) const {
    for (const LabelCounts& counts : labels) {
        if (counts.label == label)
            return &counts;
    }
    return nullptr;
}

void LabelIndex::countAt(const DirectedGraphVertex& vertex, const DirectedGraphEdge& edge,
                         int delta) {
    // A counted vertex has more than kFewEdges entries (it is dropped below), minus the two
    // that taking a loop out removes at once before this is called.
    const std::size_t size = entries(vertex);
    if (size + 2 <= kFewEdges)
        return;
    Counted* counted = countedFor(vertex);
    if (counted == nullptr) {
        // The edge is already listed here when delta is +1, so the walk counts it.
        if (delta > 0 && size > kManyEdges)
            startCounting(vertex);
        return;
    }
    // Unlisting follows the removal from the vertex's lists: `size` is already the new one.
    if (delta < 0 && size <= kFewEdges) {
        stopCounting(vertex);
        return;
    }
    Counted& counts = *counted;
    LabelCounts& labelled = counts.of(&edge.bucket());
    const auto step = [delta](std::size_t& count) { count = delta > 0 ? count + 1 : count - 1; };
    if (edge.source() == &vertex)
        step(labelled.outgoing);
    if (edge.target() == &vertex) {
        step(labelled.incoming);
        step(counts.incoming);
    }
}

void LabelIndex::startCounting(const DirectedGraphVertex& vertex) {
    Counted& counts = counted_[&vertex];
    for (const DirectedGraphEdge& edge : vertex.outgoing())
        ++counts.of(&edge.bucket()).outgoing;
    for (const DirectedGraphEdge& edge : vertex.incoming()) {
        if (!edge.inGraph())
            continue;
        ++counts.of(&edge.bucket()).incoming;
        ++counts.incoming;
    }
}

void LabelIndex::stopCounting(const DirectedGraphVertex& vertex) {
    if (lastVertex_ == &vertex)
        lastVertex_ = nullptr;
    counted_.erase(&vertex);
}

LabelIndex::Counted* LabelIndex::countedFor(const DirectedGraphVertex& vertex) {
    if (lastVertex_ == &vertex)
        return lastCounted_;
    const auto at = counted_.find(&vertex);
    if (at == counted_.end())
        return nullptr;
    lastVertex_ = &vertex;
    lastCounted_ = &at->second;
    return lastCounted_;
}

std::size_t LabelIndex::walkCount(const DirectedGraphVertex& vertex, const LabelBucket* label,
                                  EdgeDirection direction) const {
    std::size_t count = 0;
    if (direction == EdgeDirection::Outgoing) {
        for (const DirectedGraphEdge& edge : vertex.outgoing())
            count += label == nullptr || &edge.bucket() == label;
        return count;
    }
    for (const DirectedGraphEdge& edge : vertex.incoming())
        count += edge.inGraph() && (label == nullptr || &edge.bucket() == label);
    return count;
}

std::size_t LabelIndex::incidentCount(const DirectedGraphVertex& vertex, const LabelBucket* label,
                                      EdgeDirection direction) const {
    const Counted* counted = nullptr;
    if (entries(vertex) > kFewEdges) {
        const auto at = counted_.find(&vertex);
        counted = at == counted_.end() ? nullptr : &at->second;
    }
    if (counted == nullptr)
        return walkCount(vertex, label, direction);
    if (label == nullptr)
        return direction == EdgeDirection::Outgoing ? vertex.outDegree() : counted->incoming;
    const LabelCounts* counts = counted->find(label);
    if (counts == nullptr)
        return 0;
    return direction == EdgeDirection::Outgoing ? counts->outgoing : counts->incoming;
}

void LabelIndex::relabel(GraphObject& object, std::string_view label) {
    LabelBucket& old = object.bucket();
    if (old.text == label)
        return;
    LabelBucket& bucket = acquire(label);
    const bool listed = object.inGraph();
    unlist(object);
    object.label_.setBucket(bucket);
    if (listed)
        list(bucket, object);
    release(old);
}

void LabelIndex::reset() {
    counted_.clear();
    lastVertex_ = nullptr;
    buckets_.clear();
    ++generation_;
    idle_ = 0;
    empty_ = &acquire({});
}

void LabelIndex::swap(LabelIndex& other) noexcept {
    // The buckets themselves stay where they are: only their owner changes.
    buckets_.swap(other.buckets_);
    std::swap(empty_, other.empty_);
    std::swap(idle_, other.idle_);
    counted_.swap(other.counted_);
    lastVertex_ = other.lastVertex_ = nullptr;
    ++generation_;
    ++other.generation_;
    for (auto& entry : buckets_)
        entry.second->index = this;
    for (auto& entry : other.buckets_)
        entry.second->index = &other;
}

}  // namespace vellum
