#include "gui/view/GraphScene.h"

#include <algorithm>
#include <cmath>

#include "graph/StringAttribute.h"
#include "gui/view/ElementLook.h"
#include "tpx/TPXprimitives.h"
#include "tpx/TPXtext.h"
#include "tpx/TPXtransform.h"

namespace vellum {

namespace {

constexpr double twoPi = 6.28318530718;
const TPXrgb labelColour{1, 0.5, 0};
// Labels sit above their owner: a vertex's over its shape, an edge's over its middle.
constexpr double vertexLabelHeight = 0.55;
constexpr double edgeLabelHeight = 0.15;

std::unique_ptr<TPXnode> makeGroup(const char* name) {
    return std::make_unique<TPXnode>(TPXkind::KeepsPlace, name);
}

std::pair<std::uint64_t, std::uint64_t> endsOf(const DirectedGraphEdge& edge) {
    const std::uint64_t a = edge.source()->serial();
    const std::uint64_t b = edge.target()->serial();
    return {std::min(a, b), std::max(a, b)};
}

}  // namespace

GraphScene::GraphScene(std::string modelFolder) : m_shapes(std::move(modelFolder)) {
    std::string error;
    m_font = m_fonts.get(fontName, error);
    // Arrowheads take the colour of their edge: the cone has no material of its own.
    m_arrowhead = TPXcone(6, 0.2, 0.5, TPXref<TPXmaterial>());
}

GraphScene::~GraphScene() = default;

void GraphScene::build(DirectedGraph& graph) {
    m_graph = &graph;
    m_vertices.clear();
    m_edges.clear();
    m_serialOf.clear();
    m_pairs.clear();
    m_highlighted.clear();
    m_lastIdentity = 0;
    if (m_root) {
        // A scene built again keeps its two groups, so that whoever draws it keeps its root.
        for (TPXnode* group : {m_vertexGroup, m_edgeGroup})
            while (TPXnode* child = group->firstChild())
                child->unlink();
    } else {
        m_root = makeGroup("__vertices__");
        m_vertexGroup = m_root.get();
        m_edgeGroup = m_root->adoptSibling(makeGroup("__edges__"));
    }
    m_lastVertex = m_lastEdge = nullptr;
    m_vertices.reserve(graph.vertexCount());
    m_edges.reserve(graph.edgeCount());
    m_serialOf.reserve(graph.vertexCount() + graph.edgeCount());
    m_pairs.reserve(graph.edgeCount());
    for (DirectedGraphVertex& vertex : graph.vertices())
        addVertex(vertex);
    std::vector<Pair> bent;
    for (DirectedGraphEdge& edge : graph.edges())
        addEdge(edge, bent);
    for (const auto& [pair, edges] : m_pairs)
        if (edges.size() > 1)
            bendPair(pair);
}

void GraphScene::update(const SceneChanges& changes) {
    if (!m_graph)
        return;
    std::vector<Pair> bent;
    for (std::uint64_t serial : changes.removed) {
        removeEdge(serial, bent);
        removeVertex(serial);
    }
    std::vector<DirectedGraphVertex*> unplaced;
    for (GraphObject* object : changes.changed) {
        if (object->kind() != GraphObjectKind::Vertex)
            break;  // vertices come first
        auto& vertex = static_cast<DirectedGraphVertex&>(*object);
        if (vertex.inGraph() && !m_vertices.count(vertex.serial()) &&
            !vertex.findAttribute(look::position))
            unplaced.push_back(&vertex);
    }
    placeAmongNeighbours(unplaced);
    for (GraphObject* object : changes.changed) {
        const std::uint64_t serial = object->serial();
        if (object->kind() == GraphObjectKind::Vertex) {
            auto& vertex = static_cast<DirectedGraphVertex&>(*object);
            auto found = m_vertices.find(serial);
            if (!vertex.inGraph())
                removeVertex(serial);
            else if (found != m_vertices.end())
                refreshVertex(found->second);
            else
                addVertex(vertex);
            continue;
        }
        auto& edge = static_cast<DirectedGraphEdge&>(*object);
        auto found = m_edges.find(serial);
        if (found == m_edges.end())
            addEdge(edge, bent);
        else if (!shown(edge))
            removeEdge(serial, bent);
        else
            refreshEdge(found->second);
    }
    std::sort(bent.begin(), bent.end());
    bent.erase(std::unique(bent.begin(), bent.end()), bent.end());
    for (const Pair& pair : bent)
        bendPair(pair);
}

void GraphScene::placeAmongNeighbours(const std::vector<DirectedGraphVertex*>& vertices) {
    vellum::placeAmongNeighbours(vertices,
                                 [this](const DirectedGraphVertex& vertex) -> std::optional<TPXp3> {
                                     auto shown = m_vertices.find(vertex.serial());
                                     if (shown != m_vertices.end())
                                         return shown->second.object->placement().position;
                                     // Placed by an earlier step of this update, not shown yet:
                                     // its place counts as it would once shown.
                                     return readPosition(vertex);
                                 });
}

void placeAmongNeighbours(
    const std::vector<DirectedGraphVertex*>& vertices,
    const std::function<std::optional<TPXp3>(const DirectedGraphVertex&)>& placeOf) {
    if (vertices.empty())
        return;
    std::unordered_map<std::uint64_t, TPXp3> placed;
    // The neighbours' centre, from those placed before or in an earlier round; none when there
    // are none yet.
    auto centreOf = [&](const DirectedGraphVertex& vertex, int& count) {
        TPXp3 sum;
        count = 0;
        auto add = [&](const DirectedGraphVertex* other) {
            if (other == &vertex || !other->inGraph())
                return;
            if (const std::optional<TPXp3> at = placeOf(*other)) {
                sum = sum + *at;
                ++count;
            } else if (auto earlier = placed.find(other->serial()); earlier != placed.end()) {
                sum = sum + earlier->second;
                ++count;
            }
        };
        for (const DirectedGraphEdge& edge : vertex.outgoing())
            add(edge.target());
        for (const DirectedGraphEdge& edge : vertex.incoming())
            add(edge.source());
        return count > 0 ? sum * (1.0 / count) : sum;
    };
    // Round by round, so that a vertex joined only to other new ones goes near those.
    std::vector<DirectedGraphVertex*> waiting = vertices;
    while (!waiting.empty()) {
        std::vector<DirectedGraphVertex*> next;
        std::unordered_map<std::uint64_t, TPXp3> round;
        for (DirectedGraphVertex* vertex : waiting) {
            int count = 0;
            TPXp3 centre = centreOf(*vertex, count);
            if (count == 0) {
                next.push_back(vertex);
                continue;
            }
            if (count == 1) {
                // Beside its only neighbour, turned by the golden angle from the last one
                // placed there, so that several do not pile up.
                const double a = 2.39996322973 * static_cast<double>(vertex->serial());
                centre = centre + TPXp3(1.5 * std::cos(a), 1.5 * std::sin(a), 0);
            }
            round.emplace(vertex->serial(), centre);
        }
        if (round.empty()) {
            // None of the rest touches anything shown: a row beside the origin.
            for (std::size_t i = 0; i < next.size(); ++i)
                round.emplace(next[i]->serial(), TPXp3(1.5 * static_cast<double>(i), -1.5, 0));
            next.clear();
        }
        for (DirectedGraphVertex* vertex : waiting)
            if (auto found = round.find(vertex->serial()); found != round.end()) {
                writePosition(*vertex, found->second);
                placed.insert(*found);
            }
        waiting.swap(next);
    }
}

bool GraphScene::highlight(const GraphObject& element) {
    const std::uint64_t serial = element.serial();
    if (element.kind() == GraphObjectKind::Edge) {
        auto found = m_edges.find(serial);
        if (found == m_edges.end())
            return false;
        found->second.object->setHighlighted(true);
    } else {
        auto found = m_vertices.find(serial);
        if (found == m_vertices.end())
            return false;
        if (!m_halo)
            m_halo = TPXsphere(TPXdefaults::slices, TPXdefaults::stacks, 0.7,
                               TPXmaterial::plain(TPXrgb{1.0, 0.9, 0.1}, 0.35));
        auto halo = std::make_unique<TPXnode>(TPXkind::Widget, haloName);
        halo->setGeometry(m_halo);
        found->second.object->adopt(std::move(halo));
    }
    m_highlighted.push_back(serial);
    return true;
}

void GraphScene::clearHighlights() {
    for (std::uint64_t serial : m_highlighted) {
        if (auto edge = m_edges.find(serial); edge != m_edges.end()) {
            edge->second.object->setHighlighted(false);
        } else if (auto vertex = m_vertices.find(serial); vertex != m_vertices.end()) {
            for (TPXnode* child = vertex->second.object->firstChild(); child;) {
                TPXnode* next = child->nextSibling();
                if (child->name() == haloName)
                    child->unlink();
                child = next;
            }
        }
    }
    m_highlighted.clear();
}

void GraphScene::followPlacements() {
    for (auto& [serial, record] : m_vertices)
        followPlacement(*record.vertex);
}

void GraphScene::followPlacement(const DirectedGraphVertex& vertex) {
    auto found = m_vertices.find(vertex.serial());
    if (found == m_vertices.end())
        return;
    const VertexLook look = readVertexLook(*found->second.vertex);
    TPXplacement place = found->second.object->placement();
    place.position = look.position;
    place.orientation = TPXquaternion::fromAngles(look.orientation);
    place.scale = look.scale;
    found->second.object->setPlacement(place);
    followVertex(vertex);
}

std::unordered_map<std::uint64_t, TPXp3> GraphScene::vertexPositions() const {
    std::unordered_map<std::uint64_t, TPXp3> positions;
    positions.reserve(m_vertices.size());
    for (const auto& [serial, record] : m_vertices)
        positions.emplace(serial, record.object->placement().position);
    return positions;
}

bool GraphScene::showVertexAt(std::uint64_t serial, const TPXp3& position) {
    auto found = m_vertices.find(serial);
    if (found == m_vertices.end())
        return false;
    found->second.object->setPosition(position);
    followVertex(*found->second.vertex);
    return true;
}

ElementDecoration GraphScene::decorationOf(const GraphObject& element) const {
    return m_decorator ? m_decorator(element) : ElementDecoration{};
}

void GraphScene::decorateEdge(GraphEdgeObject& object, const DirectedGraphEdge& edge) {
    const EdgeLook look = readEdgeLook(edge);
    const ElementDecoration decoration = decorationOf(edge);
    object.setColour(decoration.colour.value_or(look.colour), look.opacity);
    setLabel(object, decoration.labelPrefix + edge.label(), edgeLabelSize, edgeLabelHeight);
}

std::unique_ptr<TPXnode> GraphScene::makeVertexObject(DirectedGraphVertex& vertex) {
    const VertexLook look = readVertexLook(vertex);
    const ElementDecoration decoration = decorationOf(vertex);
    std::unique_ptr<TPXnode> object =
        m_shapes.make(look.representation, decoration.colour.value_or(look.colour), look.opacity);
    TPXplacement place;
    place.position = look.position;
    place.orientation = TPXquaternion::fromAngles(look.orientation);
    place.scale = look.scale;
    object->setPlacement(place);
    setLabel(*object, decoration.labelPrefix + vertex.label(), vertexLabelSize, vertexLabelHeight);
    return object;
}

void GraphScene::addVertex(DirectedGraphVertex& vertex) {
    std::unique_ptr<TPXnode> object = makeVertexObject(vertex);
    const std::uint32_t identity = newIdentity();
    object->setIdentity(identity);
    setLink(vertex, static_cast<int>(identity));
    TPXnode* shownObject = object.get();
    insertAfter(*m_vertexGroup, m_lastVertex, shownBefore(vertex), std::move(object));
    m_vertices.emplace(vertex.serial(), VertexRecord{&vertex, shownObject});
    m_serialOf.emplace(identity, vertex.serial());
}

void GraphScene::refreshVertex(VertexRecord& record) {
    // A new object takes the old one's place in the chain and its identity, so "__link__"
    // stays valid; the edges at the vertex are pointed at it.
    std::unique_ptr<TPXnode> object = makeVertexObject(*record.vertex);
    object->setIdentity(record.object->identity());
    setLink(*record.vertex, static_cast<int>(record.object->identity()));
    TPXnode* old = record.object;
    record.object = old->adoptSibling(std::move(object));
    if (m_lastVertex == old)
        m_lastVertex = record.object;
    old->unlink();
    for (DirectedGraphEdge& edge : record.vertex->outgoing())
        if (auto found = m_edges.find(edge.serial()); found != m_edges.end())
            found->second.object->setEnds(record.object, objectOf(*found->second.edge->target()));
    for (DirectedGraphEdge& edge : record.vertex->incoming())
        if (auto found = m_edges.find(edge.serial()); found != m_edges.end())
            found->second.object->setEnds(objectOf(*found->second.edge->source()), record.object);
}

bool GraphScene::shown(const DirectedGraphEdge& edge) const {
    return edge.inGraph() && edge.source()->inGraph() && edge.target()->inGraph() &&
           m_vertices.count(edge.source()->serial()) && m_vertices.count(edge.target()->serial());
}

void GraphScene::addEdge(DirectedGraphEdge& edge, std::vector<Pair>& bent) {
    if (!edge.inGraph() || !edge.source()->inGraph() || !edge.target()->inGraph())
        return;
    TPXnode* const source = objectOf(*edge.source());
    TPXnode* const target = objectOf(*edge.target());
    if (!source || !target)
        return;
    auto object = std::make_unique<GraphEdgeObject>(source, target, m_arrowhead);
    const std::uint32_t identity = newIdentity();
    object->setIdentity(identity);
    decorateEdge(*object, edge);
    setLink(edge, static_cast<int>(identity));
    GraphEdgeObject* shownObject = object.get();
    insertAfter(*m_edgeGroup, m_lastEdge, shownBefore(edge), std::move(object));
    const Pair pair = endsOf(edge);
    m_edges.emplace(edge.serial(), EdgeRecord{&edge, shownObject, pair});
    m_serialOf.emplace(identity, edge.serial());
    std::vector<std::uint64_t>& parallel = m_pairs[pair];
    parallel.insert(std::upper_bound(parallel.begin(), parallel.end(), edge.serial()),
                    edge.serial());
    bent.push_back(pair);
}

void GraphScene::refreshEdge(EdgeRecord& record) {
    decorateEdge(*record.object, *record.edge);
    setLink(*record.edge, static_cast<int>(record.object->identity()));
}

void GraphScene::removeVertex(std::uint64_t serial) {
    auto found = m_vertices.find(serial);
    if (found == m_vertices.end())
        return;
    m_serialOf.erase(found->second.object->identity());
    detach(found->second.object, m_lastVertex);
    m_vertices.erase(found);
}

void GraphScene::removeEdge(std::uint64_t serial, std::vector<Pair>& bent) {
    auto found = m_edges.find(serial);
    if (found == m_edges.end())
        return;
    const Pair pair = found->second.pair;
    std::vector<std::uint64_t>& parallel = m_pairs[pair];
    parallel.erase(std::remove(parallel.begin(), parallel.end(), serial), parallel.end());
    if (parallel.empty())
        m_pairs.erase(pair);
    else
        bent.push_back(pair);
    m_serialOf.erase(found->second.object->identity());
    detach(found->second.object, m_lastEdge);
    m_edges.erase(found);
}

void GraphScene::bendPair(const Pair& pair) {
    auto found = m_pairs.find(pair);
    if (found == m_pairs.end())
        return;
    const std::vector<std::uint64_t>& parallel = found->second;
    const double n = static_cast<double>(parallel.size());
    // The first edge of the pair sets which way counts as forward; k counts from 1.
    const std::uint64_t forward = m_edges.at(parallel.front()).edge->source()->serial();
    for (std::size_t i = 0; i < parallel.size(); ++i) {
        const EdgeRecord& record = m_edges.at(parallel[i]);
        if (parallel.size() < 2) {
            record.object->setBend(TPXp3());
            continue;
        }
        const bool backwards = record.edge->source()->serial() != forward;
        const double a = static_cast<double>(i + 1) * twoPi / n;
        const double sign = backwards ? -1.0 : 1.0;
        // Whole turns leave rounding dust (sin 2pi is not quite 0): the listing shows clean
        // zeros, never -0.
        auto clean = [](double v) { return std::abs(v) < 1e-12 ? 0.0 : v; };
        record.object->setBend(
            TPXp3(0, clean(sign * 0.5 * std::sin(a)), clean(sign * 0.5 * std::cos(a))));
    }
}

void GraphScene::followVertex(const DirectedGraphVertex& vertex) {
    for (const DirectedGraphEdge& edge : vertex.outgoing())
        if (auto found = m_edges.find(edge.serial()); found != m_edges.end())
            found->second.object->followEnds();
    for (const DirectedGraphEdge& edge : vertex.incoming())
        if (auto found = m_edges.find(edge.serial()); found != m_edges.end())
            found->second.object->followEnds();
}

void GraphScene::setLabel(TPXnode& owner, const std::string& text, double size, double height) {
    for (TPXnode* child = owner.firstChild(); child;) {
        TPXnode* next = child->nextSibling();
        if (child->name() == labelName)
            child->unlink();
        child = next;
    }
    if (text.empty() || !m_font)
        return;
    auto label = std::make_unique<TPXtext>(labelName, text, m_font, size, labelColour);
    label->setPosition(TPXp3(0, height, 0));
    owner.adopt(std::move(label));
}

TPXnode* GraphScene::shownBefore(const DirectedGraphVertex& vertex) const {
    const auto first = m_graph->vertices().begin();
    for (ListIterator<DirectedGraphVertex, GraphListTag> at(&vertex); at != first;)
        if (TPXnode* object = objectOf(*--at))
            return object;
    return nullptr;
}

TPXnode* GraphScene::shownBefore(const DirectedGraphEdge& edge) const {
    const auto first = m_graph->edges().begin();
    for (ListIterator<DirectedGraphEdge, GraphListTag> at(&edge); at != first;)
        if (TPXnode* object = objectOf(*--at))
            return object;
    return nullptr;
}

void GraphScene::insertAfter(TPXnode& group, TPXnode*& last, TPXnode* previous,
                             std::unique_ptr<TPXnode> node) {
    TPXnode* placed =
        previous ? previous->adoptSibling(std::move(node)) : group.adopt(std::move(node));
    if (!last || last == previous)
        last = placed;
}

std::unique_ptr<TPXnode> GraphScene::detach(TPXnode* node, TPXnode*& last) {
    if (last == node)
        last = node->previousSibling();
    return node->unlink();
}

TPXnode* GraphScene::objectOf(const DirectedGraphVertex& vertex) const {
    auto found = m_vertices.find(vertex.serial());
    return found == m_vertices.end() ? nullptr : found->second.object;
}

GraphEdgeObject* GraphScene::objectOf(const DirectedGraphEdge& edge) const {
    auto found = m_edges.find(edge.serial());
    return found == m_edges.end() ? nullptr : found->second.object;
}

GraphObject* GraphScene::elementOf(std::uint32_t identity) const {
    auto serial = m_serialOf.find(identity);
    if (serial == m_serialOf.end())
        return nullptr;
    if (auto vertex = m_vertices.find(serial->second); vertex != m_vertices.end())
        return vertex->second.vertex;
    if (auto edge = m_edges.find(serial->second); edge != m_edges.end())
        return edge->second.edge;
    return nullptr;
}

TPXboundingBox GraphScene::bounds() const {
    TPXboundingBox box;
    auto include = [&box](const TPXp3& p) {
        if (box.empty) {
            box.min = box.max = p;
            box.empty = false;
            return;
        }
        for (int c = TPXp3::X; c <= TPXp3::Z; ++c) {
            box.min[c] = std::min(box.min[c], p[c]);
            box.max[c] = std::max(box.max[c], p[c]);
        }
    };
    for (const TPXnode* object = m_vertexGroup ? m_vertexGroup->firstChild() : nullptr; object;
         object = object->nextSibling()) {
        const TPXmatrix world = object->worldMatrix();
        // A label stands above its vertex, centred and facing the viewer from any side: its
        // height and its width count too, or a fit cuts a long label of a lone vertex.
        for (const TPXnode* part = object->firstChild(); part; part = part->nextSibling()) {
            if (part->name() != labelName)
                continue;
            const auto* text = dynamic_cast<const TPXtext*>(part);
            const double half = text != nullptr ? text->width() / 2 : 0.0;
            for (double across : {-half, half})
                for (double deep : {-half, half})
                    include(TPXtransformPoint(
                        world, TPXp3(across, vertexLabelHeight + vertexLabelSize, deep)));
        }
        const TPXgeometry* geometry = object->geometry();
        if (!geometry || geometry->boundingBox().empty) {
            const TPXp3 centre = TPXtransformPoint(world, TPXp3());
            include(centre - TPXp3(0.5, 0.5, 0.5));
            include(centre + TPXp3(0.5, 0.5, 0.5));
            continue;
        }
        const TPXboundingBox& own = geometry->boundingBox();
        for (int corner = 0; corner < 8; ++corner)
            include(TPXtransformPoint(world, TPXp3(corner & 1 ? own.max.x() : own.min.x(),
                                                   corner & 2 ? own.max.y() : own.min.y(),
                                                   corner & 4 ? own.max.z() : own.min.z())));
    }
    return box;
}

bool GraphScene::mark(std::uint32_t identity, const std::string& text) {
    GraphObject* element = elementOf(identity);
    if (!element)
        return false;
    element->setAttribute(std::make_unique<StringAttribute>(look::mark, text));
    return true;
}

bool GraphScene::writeBack(std::uint32_t identity) {
    GraphObject* element = elementOf(identity);
    if (!element || element->kind() != GraphObjectKind::Vertex)
        return false;
    auto& vertex = static_cast<DirectedGraphVertex&>(*element);
    const TPXplacement& place = objectOf(vertex)->placement();
    writePlacement(vertex, place.position, place.orientation.toAngles(), place.scale);
    followVertex(vertex);
    return true;
}

}  // namespace vellum
