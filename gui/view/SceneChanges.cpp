#include "gui/view/SceneChanges.h"

#include <algorithm>

#include "graph/RuleEvents.h"

namespace vellum {

namespace {

template <typename List>
std::uint64_t lastSerial(const List& list) {
    return list.empty() ? 0 : (--list.end())->serial();
}

// Appends the elements of `list` created after `serial`, walking back from its end.
template <typename List>
void createdAfter(const List& list, std::uint64_t serial, std::vector<GraphObject*>& out) {
    if (list.empty())
        return;
    auto at = list.end();
    do {
        --at;
        if (at->serial() <= serial)
            return;
        out.push_back(&*at);
    } while (at != list.begin());
}

}  // namespace

void StepRecorder::onEvent(int event, DirectedGraph* host, const GraphMorphism* occurrence) {
    if (!host || !occurrence)
        return;
    if (event == kEventOccurrenceChosen)
        chosen(*host, *occurrence, nullptr);
    else if (event == kEventApplied)
        applied(*host, *occurrence);
}

void StepRecorder::chosen(DirectedGraph& host, const GraphMorphism& occurrence,
                          const PreparedRule& rule) {
    chosen(host, occurrence, &rule);
}

void StepRecorder::chosen(DirectedGraph& host, const GraphMorphism& occurrence,
                          const PreparedRule* rule) {
    m_images.clear();
    m_neighbours.clear();
    m_doomed.clear();
    for (const VertexPair& pair : occurrence.vertexPairs()) {
        if (!pair.right)
            continue;
        m_images.emplace_back(pair.right, pair.right->serial());
        if (rule && rule->isDeleted(pair.left))
            m_doomed.insert(pair.right->serial());
        for (DirectedGraphEdge& edge : pair.right->incoming())
            m_neighbours.emplace_back(&edge, edge.serial());
        for (DirectedGraphEdge& edge : pair.right->outgoing())
            m_neighbours.emplace_back(&edge, edge.serial());
    }
    for (const EdgePair& pair : occurrence.edgePairs()) {
        if (!pair.right)
            continue;
        m_images.emplace_back(pair.right, pair.right->serial());
        if (rule && rule->isDeleted(pair.left))
            m_doomed.insert(pair.right->serial());
    }
    m_lastVertexSerial = lastSerial(host.vertices());
    m_lastEdgeSerial = lastSerial(host.edges());
}

void StepRecorder::deleted() {
    for (std::uint64_t serial : m_doomed)
        remove(serial);
    // The other edges of a deleted vertex stay, with an end outside the graph.
    for (const auto& [edge, serial] : m_neighbours)
        if (!m_doomed.count(serial))
            touch(*edge);
}

void StepRecorder::applied(DirectedGraph& host, const GraphMorphism& survivors) {
    std::unordered_set<const GraphObject*> kept;
    for (const VertexPair& pair : survivors.vertexPairs())
        kept.insert(pair.right);
    for (const EdgePair& pair : survivors.edgePairs())
        kept.insert(pair.right);
    std::unordered_set<std::uint64_t> gone;
    for (const auto& [object, serial] : m_images) {
        if (kept.count(object)) {
            touch(*object);
            continue;
        }
        gone.insert(serial);
        remove(serial);
    }
    // The step removes only its occurrence's edges: the other edges of a deleted vertex are
    // alive, now with an end outside the graph.
    for (const auto& [edge, serial] : m_neighbours)
        if (!gone.count(serial) && !kept.count(edge))
            touch(*edge);
    std::vector<GraphObject*> created;
    createdAfter(host.vertices(), m_lastVertexSerial, created);
    createdAfter(host.edges(), m_lastEdgeSerial, created);
    for (GraphObject* object : created)
        touch(*object);
    m_images.clear();
    m_neighbours.clear();
    m_doomed.clear();
}

void StepRecorder::touch(GraphObject& object) {
    m_changed[object.serial()] = &object;
}

void StepRecorder::remove(std::uint64_t serial) {
    m_changed.erase(serial);
    m_removed.insert(serial);
}

SceneChanges StepRecorder::take() {
    SceneChanges changes;
    changes.removed.assign(m_removed.begin(), m_removed.end());
    std::sort(changes.removed.begin(), changes.removed.end());
    for (const auto& [serial, object] : m_changed)
        changes.changed.push_back(object);
    std::sort(changes.changed.begin(), changes.changed.end(),
              [](const GraphObject* a, const GraphObject* b) {
                  if (a->kind() != b->kind())
                      return a->kind() == GraphObjectKind::Vertex;
                  return a->serial() < b->serial();
              });
    m_changed.clear();
    m_removed.clear();
    return changes;
}

}  // namespace vellum
