#include "graph/DirectedGraph.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace vellum {
namespace {

// Every element takes a slot of the same size.
constexpr std::size_t kSlotSize = std::max(sizeof(DirectedGraphVertex), sizeof(DirectedGraphEdge));

// Puts `item` into `list` before the first element of a larger serial: lists kept in creation
// order stay so when an element comes back.
template <typename T, typename Tag>
void insertBySerial(IntrusiveList<T, Tag>& list, T& item) {
    T* next = nullptr;
    for (T* at = list.back(); at != nullptr && at->serial() > item.serial(); at = list.before(*at))
        next = at;
    list.insertBefore(item, next);
}

template <typename T, typename Tag>
const IntrusiveList<T, Tag>& emptyList() {
    static const IntrusiveList<T, Tag> none;
    return none;
}

}  // namespace

DirectedGraph::DirectedGraph() = default;

DirectedGraph::~DirectedGraph() {
    clear();
}

const std::string& DirectedGraph::className() const {
    static const std::string name = "DirectedGraph";
    return name;
}

bool DirectedGraph::contains(const GraphObject& object) const {
    return object.inGraph() && object.bucket().index == &labels_;
}

ObjectPool& DirectedGraph::pool() {
    if (!pool_)
        pool_ = std::make_shared<ObjectPool>(kSlotSize);
    return *pool_;
}

template <typename T>
void DirectedGraph::destroy(T& object) {
    pool_->destroy(&object);
}

DirectedGraphVertex* DirectedGraph::createVertex(std::string_view label) {
    auto* vertex = pool().make<DirectedGraphVertex>(labels_.emptyLabel());
    vertex->serial_ = nextSerial_++;
    vertices_.pushBack(*vertex);
    labels_.enter(*vertex, label);
    return vertex;
}

DirectedGraphEdge* DirectedGraph::createEdge(DirectedGraphVertex* source,
                                             DirectedGraphVertex* target, std::string_view label) {
    if (source == nullptr || target == nullptr || !contains(*source) || !contains(*target))
        return nullptr;
    auto* edge = pool().make<DirectedGraphEdge>(labels_.emptyLabel(), *source, *target);
    edge->serial_ = nextSerial_++;
    edges_.pushBack(*edge);
    source->outgoing_.pushBack(*edge);
    target->incoming_.pushBack(*edge);
    labels_.enter(*edge, label);
    return edge;
}

bool DirectedGraph::took(const GraphObject& object) const {
    return !object.inGraph() && object.bucket().index == &labels_ &&
           !static_cast<const ListHook<GraphListTag>&>(object).linked();
}

TakenEdge DirectedGraph::takeEdge(DirectedGraphEdge* edge) {
    if (edge == nullptr || !contains(*edge))
        return nullptr;
    unlinkEdge(*edge);
    edge->source_->outgoing_.erase(*edge);
    edge->target_->incoming_.erase(*edge);
    labels_.unlist(*edge);
    return TakenEdge(edge, PooledDelete<DirectedGraphEdge>(pool_));
}

TakenVertex DirectedGraph::takeVertex(DirectedGraphVertex* vertex) {
    if (vertex == nullptr || !contains(*vertex) || !vertex->incoming_.empty() ||
        !vertex->outgoing_.empty())
        return nullptr;
    unlinkVertex(*vertex);
    labels_.unlist(*vertex);
    return TakenVertex(vertex, PooledDelete<DirectedGraphVertex>(pool_));
}

DirectedGraphVertex* DirectedGraph::restoreVertex(TakenVertex& vertex) {
    if (!vertex || !took(*vertex))
        return nullptr;
    insertBySerial(vertices_, *vertex);
    labels_.relist(*vertex);
    return vertex.release();
}

DirectedGraphEdge* DirectedGraph::restoreEdge(TakenEdge& edge) {
    // A loop that lingers in its vertex's incoming list was removed, not taken.
    if (!edge || !took(*edge) || static_cast<ListHook<IncomingTag>&>(*edge).linked() ||
        !contains(*edge->source_) || !contains(*edge->target_))
        return nullptr;
    insertBySerial(edges_, *edge);
    insertBySerial(edge->source_->outgoing_, *edge);
    insertBySerial(edge->target_->incoming_, *edge);
    labels_.relist(*edge);
    return edge.release();
}

void DirectedGraph::unlinkVertex(DirectedGraphVertex& vertex) {
    if (vertexCursor_ == &vertex)
        vertexCursor_ = vertices_.after(vertex);
    vertices_.erase(vertex);
}

void DirectedGraph::unlinkEdge(DirectedGraphEdge& edge) {
    if (edgeCursor_ == &edge)
        edgeCursor_ = edges_.after(edge);
    edges_.erase(edge);
}

bool DirectedGraph::hasLiveEdges(const DirectedGraphVertex& vertex) {
    if (!vertex.outgoing_.empty())
        return true;
    const auto in = vertex.incoming();
    return std::any_of(in.begin(), in.end(), [](const auto& edge) { return edge.inGraph(); });
}

void DirectedGraph::destroyVertex(DirectedGraphVertex& vertex) {
    for (DirectedGraphEdge* edge = vertex.incoming_.front(); edge != nullptr;) {
        DirectedGraphEdge* next = vertex.incoming_.after(*edge);
        if (!edge->inGraph()) {
            vertex.incoming_.erase(*edge);
            labels_.leave(*edge);
            destroy(*edge);
        }
        edge = next;
    }
    labels_.leave(vertex);
    destroy(vertex);
}

void DirectedGraph::reclaimIfDetached(DirectedGraphVertex& vertex) {
    if (vertex.inGraph() || hasLiveEdges(vertex))
        return;
    detached_.erase(vertex);
    destroyVertex(vertex);
}

bool DirectedGraph::removeEdge(DirectedGraphEdge* edge) {
    if (edge == nullptr || !contains(*edge))
        return false;
    DirectedGraphVertex& source = *edge->source_;
    DirectedGraphVertex& target = *edge->target_;
    unlinkEdge(*edge);
    source.outgoing_.erase(*edge);
    if (&target == &source) {
        // Either-or: the incoming entry of a loop stays, and the vertex now owns the edge.
        labels_.unlist(*edge);
    } else {
        target.incoming_.erase(*edge);
        labels_.leave(*edge);
        destroy(*edge);
        reclaimIfDetached(target);
    }
    reclaimIfDetached(source);
    return true;
}

bool DirectedGraph::removeVertex(DirectedGraphVertex* vertex) {
    if (vertex == nullptr || !contains(*vertex))
        return false;
    // The successor is taken before each removal; a removal never takes it away (it only
    // unlinks the edge removed, and reclaims vertices other than this one).
    for (DirectedGraphEdge* edge = vertex->incoming_.front(); edge != nullptr;) {
        DirectedGraphEdge* next = vertex->incoming_.after(*edge);
        if (!removeEdge(edge))
            return false;
        edge = next;
    }
    for (DirectedGraphEdge* edge = vertex->outgoing_.front(); edge != nullptr;) {
        DirectedGraphEdge* next = vertex->outgoing_.after(*edge);
        if (!removeEdge(edge))
            return false;
        edge = next;
    }
    unlinkVertex(*vertex);
    destroyVertex(*vertex);
    return true;
}

bool DirectedGraph::removeVertexOnly(DirectedGraphVertex* vertex) {
    if (vertex == nullptr || !contains(*vertex))
        return false;
    unlinkVertex(*vertex);
    if (hasLiveEdges(*vertex)) {
        labels_.unlist(*vertex);
        detached_.pushBack(*vertex);
        return true;
    }
    destroyVertex(*vertex);
    return true;
}

void DirectedGraph::clear() {
    // Everything goes at once: no list is unlinked element by element, and the label index
    // starts afresh. Lingering loops are found before any live edge is destroyed. Every live
    // edge stands in one incoming list, so when those lists hold no more entries than there
    // are edges there are no lingering loops, and their walk (all over memory) is spared.
    std::size_t incoming = 0;
    for (auto* list : {&vertices_, &detached_}) {
        for (const DirectedGraphVertex& vertex : ConstVertexList(*list))
            incoming += vertex.inDegree();
    }
    const bool lingering = incoming != edges_.size();
    for (auto* list : {&vertices_, &detached_}) {
        for (DirectedGraphVertex* vertex = list->front(); vertex != nullptr;) {
            DirectedGraphVertex* next = list->after(*vertex);
            for (DirectedGraphEdge* edge = lingering ? vertex->incoming_.front() : nullptr;
                 edge != nullptr;) {
                DirectedGraphEdge* following = vertex->incoming_.after(*edge);
                if (!edge->inGraph())
                    destroy(*edge);
                edge = following;
            }
            destroy(*vertex);
            vertex = next;
        }
        list->forgetAll();
    }
    for (DirectedGraphEdge* edge = edges_.front(); edge != nullptr;) {
        DirectedGraphEdge* next = edges_.after(*edge);
        destroy(*edge);
        edge = next;
    }
    edges_.forgetAll();
    // Elements taken for undo keep the pool alive; otherwise its slabs go at once.
    if (pool_.use_count() == 1)
        pool_.reset();
    labels_.reset();
    vertexCursor_ = nullptr;
    edgeCursor_ = nullptr;
}

void DirectedGraph::swap(DirectedGraph& other) noexcept {
    if (this == &other)
        return;
    labels_.swap(other.labels_);
    vertices_.swap(other.vertices_);
    edges_.swap(other.edges_);
    detached_.swap(other.detached_);
    std::swap(vertexCursor_, other.vertexCursor_);
    std::swap(edgeCursor_, other.edgeCursor_);
    std::swap(nextSerial_, other.nextSerial_);
    pool_.swap(other.pool_);
}

DirectedGraphVertex* DirectedGraph::firstVertex() {
    vertexCursor_ = vertices_.front();
    return nextVertex();
}

DirectedGraphVertex* DirectedGraph::nextVertex() {
    DirectedGraphVertex* vertex = vertexCursor_;
    if (vertex != nullptr)
        vertexCursor_ = vertices_.after(*vertex);
    return vertex;
}

DirectedGraphEdge* DirectedGraph::firstEdge() {
    edgeCursor_ = edges_.front();
    return nextEdge();
}

DirectedGraphEdge* DirectedGraph::nextEdge() {
    DirectedGraphEdge* edge = edgeCursor_;
    if (edge != nullptr)
        edgeCursor_ = edges_.after(*edge);
    return edge;
}

const IntrusiveList<DirectedGraphVertex, LabelTag>& DirectedGraph::labelled(
    std::string_view label) const {
    const LabelBucket* bucket = labels_.find(label);
    return bucket != nullptr ? bucket->vertices : emptyList<DirectedGraphVertex, LabelTag>();
}

const IntrusiveList<DirectedGraphEdge, LabelTag>& DirectedGraph::labelledEdges(
    std::string_view label) const {
    const LabelBucket* bucket = labels_.find(label);
    return bucket != nullptr ? bucket->edges : emptyList<DirectedGraphEdge, LabelTag>();
}

VerticesWithLabel DirectedGraph::verticesWithLabel(std::string_view label) {
    return VerticesWithLabel(labelled(label));
}

ConstVerticesWithLabel DirectedGraph::verticesWithLabel(std::string_view label) const {
    return ConstVerticesWithLabel(labelled(label));
}

EdgesWithLabel DirectedGraph::edgesWithLabel(std::string_view label) {
    return EdgesWithLabel(labelledEdges(label));
}

ConstEdgesWithLabel DirectedGraph::edgesWithLabel(std::string_view label) const {
    return ConstEdgesWithLabel(labelledEdges(label));
}

std::size_t DirectedGraph::vertexCount(std::string_view label) const {
    return labelled(label).size();
}

std::size_t DirectedGraph::edgeCount(std::string_view label) const {
    return labelledEdges(label).size();
}

std::size_t DirectedGraph::outgoingCount(const DirectedGraphVertex& vertex) const {
    return labels_.incidentCount(vertex, nullptr, EdgeDirection::Outgoing);
}

std::size_t DirectedGraph::outgoingCount(const DirectedGraphVertex& vertex,
                                         std::string_view label) const {
    const LabelBucket* bucket = labels_.find(label);
    return bucket == nullptr ? 0 : labels_.incidentCount(vertex, bucket, EdgeDirection::Outgoing);
}

std::size_t DirectedGraph::incomingCount(const DirectedGraphVertex& vertex) const {
    return labels_.incidentCount(vertex, nullptr, EdgeDirection::Incoming);
}

std::size_t DirectedGraph::incomingCount(const DirectedGraphVertex& vertex,
                                         std::string_view label) const {
    const LabelBucket* bucket = labels_.find(label);
    return bucket == nullptr ? 0 : labels_.incidentCount(vertex, bucket, EdgeDirection::Incoming);
}

bool DirectedGraph::rotateLabelList(DirectedGraphVertex& vertex) {
    if (!contains(vertex))
        return false;
    labels_.rotateToEnd(vertex);
    return true;
}

DirectedGraphVertex* DirectedGraph::findVertexByAttribute(const Attribute& attribute) const {
    for (DirectedGraphVertex& vertex : VertexList(vertices_)) {
        const Attribute* mine = vertex.findAttribute(attribute.name());
        if (mine != nullptr && mine->equals(attribute))
            return &vertex;
    }
    return nullptr;
}

}  // namespace vellum
