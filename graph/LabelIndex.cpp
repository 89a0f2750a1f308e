#include "graph/LabelIndex.h"

#include <algorithm>
#include <utility>

namespace vellum {

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
    } else {
        bucket.edges.pushBack(static_cast<DirectedGraphEdge&>(object));
    }
}

void LabelIndex::enter(GraphObject& object) {
    ++object.label_->references;
    list(*object.label_, object);
}

void LabelIndex::unlist(GraphObject& object) {
    if (!object.inGraph())
        return;
    LabelBucket& bucket = *object.label_;
    if (object.kind() == GraphObjectKind::Vertex) {
        bucket.vertices.erase(static_cast<DirectedGraphVertex&>(object));
    } else {
        bucket.edges.erase(static_cast<DirectedGraphEdge&>(object));
    }
}

void LabelIndex::leave(GraphObject& object) {
    unlist(object);
    release(*object.label_);
}

void LabelIndex::relabel(GraphObject& object, std::string_view label) {
    LabelBucket& old = *object.label_;
    if (old.text == label)
        return;
    LabelBucket& bucket = acquire(label);
    const bool listed = object.inGraph();
    unlist(object);
    object.label_ = &bucket;
    if (listed)
        list(bucket, object);
    release(old);
}

void LabelIndex::reset() {
    buckets_.clear();
    idle_ = 0;
    empty_ = &acquire({});
}

void LabelIndex::swap(LabelIndex& other) noexcept {
    // The buckets themselves stay where they are: only their owner changes.
    buckets_.swap(other.buckets_);
    std::swap(empty_, other.empty_);
    std::swap(idle_, other.idle_);
    for (auto& entry : buckets_)
        entry.second->index = this;
    for (auto& entry : other.buckets_)
        entry.second->index = &other;
}

}  // namespace vellum
