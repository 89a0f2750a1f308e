#include "graph/OccurrenceSearch.h"

#include <algorithm>

namespace vellum {
namespace {

// True when `from` has an edge to `to`; walks the shorter of the two lists.
bool hasEdge(const DirectedGraphVertex& from, const DirectedGraphVertex& to) {
    if (from.outDegree() <= to.inDegree()) {
        for (const DirectedGraphEdge& edge : from.outgoing()) {
            if (edge.target() == &to)
                return true;
        }
        return false;
    }
    for (const DirectedGraphEdge& edge : to.incoming()) {
        if (edge.source() == &from && edge.inGraph())
            return true;
    }
    return false;
}

bool labelFits(const std::string* wanted, const GraphObject& host) {
    return wanted == nullptr || &host.label() == wanted;
}

// Up to this many outgoing edges a source is checked for repeats by walking them; beyond it
// by remembering the sources given out.
constexpr std::size_t kWalkLimit = 16;

}  // namespace

OccurrenceSearch::OccurrenceSearch(const PatternStructure& pattern, const SearchPlan& plan,
                                   DirectedGraph& host, const HostLabels& labels, Buffers& buffers,
                                   const Seeds* seeds)
    : pattern_(pattern),
      plan_(plan),
      host_(host),
      labels_(labels),
      buffers_(buffers),
      seeds_(seeds) {}

bool OccurrenceSearch::start() {
    // A label that no host vertex (edge) has makes every occurrence impossible.
    if (!labels_.allPresent())
        return false;
    // Sized only: a step's image is set before any later step reads it, and every vertex image
    // before the edges are paired.
    const std::size_t count = plan_.steps().size();
    if (buffers_.levels.size() < count)
        buffers_.levels.resize(count);
    if (buffers_.images.size() < count)
        buffers_.images.resize(count);
    if (buffers_.vertexImages.size() < pattern_.vertexCount())
        buffers_.vertexImages.resize(pattern_.vertexCount());
    depth_ = 0;
    open(0);
    return true;
}

bool OccurrenceSearch::next(GraphMorphism& occurrence) {
    if (state_ == State::Done)
        return false;
    if (plan_.steps().empty()) {
        // The empty pattern occurs once, as the empty morphism.
        occurrence.clear();
        state_ = State::Done;
        return true;
    }
    if (state_ == State::Fresh) {
        state_ = State::Searching;
        if (!start()) {
            state_ = State::Done;
            return false;
        }
    }
    const int last = static_cast<int>(plan_.steps().size()) - 1;
    while (depth_ >= 0) {
        DirectedGraphVertex* candidate = take(static_cast<std::size_t>(depth_));
        if (candidate == nullptr) {
            --depth_;
            continue;
        }
        buffers_.images[static_cast<std::size_t>(depth_)] = candidate;
        if (depth_ < last) {
            ++depth_;
            open(static_cast<std::size_t>(depth_));
            continue;
        }
        if (mapEdges(occurrence))
            return true;
    }
    state_ = State::Done;
    return false;
}

void OccurrenceSearch::rotateLabelLists() {
    if (state_ != State::Searching)
        return;
    state_ = State::Done;
    for (std::size_t step = 0; step < plan_.steps().size(); ++step) {
        if (buffers_.levels[step].source == Source::Label)
            host_.rotateLabelList(*buffers_.images[step]);
    }
}

void OccurrenceSearch::open(std::size_t step) {
    Level& level = buffers_.levels[step];
    const PlanStep& plan = plan_.steps()[step];
    level.candidates.clear();
    level.next = 0;
    level.anchor = -1;
    if (plan.seeded) {
        // Tested like any candidate: label, degrees, injectivity and every link.
        level.source = Source::Seed;
        level.candidates.push_back(seeds_->vertices[static_cast<std::size_t>(plan.vertex)]);
    } else if (!plan.links.empty()) {
        collectNeighbours(step, level);
    } else if (step == 0 && plan_.anchorLabel() != nullptr) {
        const auto listed = host_.edgesWithLabel(*plan_.anchorLabel());
        level.source = Source::EdgeLabel;
        level.edgeAt = listed.begin();
        level.edgeEnd = listed.end();
        buffers_.anchorSources.clear();
    } else if (plan.label != nullptr) {
        const auto listed = host_.verticesWithLabel(*plan.label);
        level.source = Source::Label;
        level.labelAt = listed.begin();
        level.labelEnd = listed.end();
    } else {
        level.source = Source::All;
        level.allAt = host_.vertices().begin();
        level.allEnd = host_.vertices().end();
    }
}

void OccurrenceSearch::collectNeighbours(std::size_t step, Level& level) {
    const PlanStep& plan = plan_.steps()[step];
    // The link whose image has the fewest edges in the direction needed.
    std::size_t fewest = 0;
    for (std::size_t i = 0; i < plan.links.size(); ++i) {
        const DirectedGraphVertex& image = *buffers_.images[plan.links[i].step];
        const bool from = plan.links[i].tie == Tie::FromEarlier;
        const std::size_t size = from ? image.outDegree() : image.inDegree();
        if (level.anchor < 0 || size < fewest) {
            level.anchor = static_cast<int>(i);
            fewest = size;
        }
    }
    level.source = Source::Neighbours;
    const PlanLink& link = plan.links[static_cast<std::size_t>(level.anchor)];
    const DirectedGraphVertex& image = *buffers_.images[link.step];
    auto consider = [&](DirectedGraphVertex* vertex) {
        if (fitsLocally(step, *vertex))
            level.candidates.push_back(vertex);
    };
    if (link.tie == Tie::FromEarlier) {
        for (DirectedGraphEdge& edge : image.outgoing())
            consider(edge.target());
    } else {
        for (DirectedGraphEdge& edge : image.incoming()) {
            if (edge.inGraph())
                consider(edge.source());
        }
    }
    // Parallel edges name a neighbour more than once; creation order keeps the search
    // deterministic.
    if (level.candidates.size() > 1) {
        auto& c = level.candidates;
        std::sort(c.begin(), c.end(),
                  [](const auto* a, const auto* b) { return a->serial() < b->serial(); });
        c.erase(std::unique(c.begin(), c.end()), c.end());
    }
}

DirectedGraphVertex* OccurrenceSearch::rawCandidate(Level& level) {
    switch (level.source) {
        case Source::Neighbours:
        case Source::Seed:
            return level.next < level.candidates.size() ? level.candidates[level.next++] : nullptr;
        case Source::Label:
            return level.labelAt == level.labelEnd ? nullptr : &*level.labelAt++;
        case Source::EdgeLabel:
            return nextAnchorSource(level);
        case Source::All:
            return level.allAt == level.allEnd ? nullptr : &*level.allAt++;
    }
    return nullptr;
}

DirectedGraphVertex* OccurrenceSearch::nextAnchorSource(Level& level) {
    while (level.edgeAt != level.edgeEnd) {
        DirectedGraphEdge& edge = *level.edgeAt++;
        if (firstOfItsSource(edge))
            return edge.source();
    }
    return nullptr;
}

// True for one edge of each source among the anchor label's edges, so that every source is a
// candidate once: the first of its outgoing edges with that label, or the first one met.
bool OccurrenceSearch::firstOfItsSource(const DirectedGraphEdge& edge) {
    const DirectedGraphVertex& source = *edge.source();
    if (source.outDegree() > kWalkLimit)
        return buffers_.anchorSources.insert(&source).second;
    for (const DirectedGraphEdge& out : source.outgoing()) {
        if (&out.label() == &edge.label())
            return &out == &edge;
    }
    return false;
}

DirectedGraphVertex* OccurrenceSearch::take(std::size_t step) {
    Level& level = buffers_.levels[step];
    const bool prefiltered = level.source == Source::Neighbours;
    while (DirectedGraphVertex* candidate = rawCandidate(level)) {
        if (!prefiltered && !fitsLocally(step, *candidate))
            continue;
        if (fitsLinks(step, level.anchor, *candidate))
            return candidate;
    }
    return nullptr;
}

bool OccurrenceSearch::fitsLocally(std::size_t step, const DirectedGraphVertex& host) const {
    const PlanStep& plan = plan_.steps()[step];
    if (plan.outDegree > host.outDegree() || plan.inDegree > host.inDegree())
        return false;
    if (!labelFits(labels_.vertexText(plan.vertex), host))
        return false;
    const auto mapped = buffers_.images.begin() + static_cast<std::ptrdiff_t>(step);
    return std::find(buffers_.images.begin(), mapped, &host) == mapped;
}

bool OccurrenceSearch::fitsLinks(std::size_t step, int skipLink,
                                 const DirectedGraphVertex& host) const {
    const PlanStep& plan = plan_.steps()[step];
    if (plan.hasLoop && !hasEdge(host, host))
        return false;
    for (std::size_t i = 0; i < plan.links.size(); ++i) {
        if (static_cast<int>(i) == skipLink)
            continue;
        const DirectedGraphVertex& other = *buffers_.images[plan.links[i].step];
        const bool linked =
            plan.links[i].tie == Tie::FromEarlier ? hasEdge(other, host) : hasEdge(host, other);
        if (!linked)
            return false;
    }
    return true;
}

DirectedGraphEdge* OccurrenceSearch::chooseEdge(const DirectedGraphVertex& from,
                                                const DirectedGraphVertex& to) const {
    // Both lists keep creation order, so either gives the edges from -> to in the order of the
    // outgoing list. One edge is taken even when already paired; of several, the first that is
    // not yet paired.
    std::size_t count = 0;
    DirectedGraphEdge* single = nullptr;
    DirectedGraphEdge* firstFree = nullptr;
    auto see = [&](DirectedGraphEdge& edge) {
        if (++count == 1)
            single = &edge;
        if (firstFree == nullptr &&
            std::find(buffers_.edgeImages.begin(), buffers_.edgeImages.end(), &edge) ==
                buffers_.edgeImages.end())
            firstFree = &edge;
    };
    if (from.outDegree() <= to.inDegree()) {
        for (DirectedGraphEdge& edge : from.outgoing()) {
            if (edge.target() == &to)
                see(edge);
        }
    } else {
        for (DirectedGraphEdge& edge : to.incoming()) {
            if (edge.source() == &from && edge.inGraph())
                see(edge);
        }
    }
    return count == 1 ? single : firstFree;
}

bool OccurrenceSearch::mapEdges(GraphMorphism& occurrence) {
    const auto& steps = plan_.steps();
    auto& vertexImages = buffers_.vertexImages;
    auto& edgeImages = buffers_.edgeImages;
    for (std::size_t s = 0; s < steps.size(); ++s)
        vertexImages[static_cast<std::size_t>(steps[s].vertex)] = buffers_.images[s];
    const auto& edges = pattern_.edges();
    edgeImages.assign(edges.size(), nullptr);
    // Seeded edges first, so that no other edge takes them as a first free parallel edge.
    if (seeds_ != nullptr && !mapSeededEdges())
        return false;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (edgeImages[i] != nullptr)
            continue;
        const DirectedGraphVertex& from = *vertexImages[static_cast<std::size_t>(edges[i].source)];
        const DirectedGraphVertex& to = *vertexImages[static_cast<std::size_t>(edges[i].target)];
        DirectedGraphEdge* image = chooseEdge(from, to);
        if (image == nullptr || !labelFits(labels_.edgeText(static_cast<int>(i)), *image))
            return false;
        edgeImages[i] = image;
    }
    occurrence.clear();
    const auto& vertices = pattern_.vertices();
    occurrence.vertexPairs().reserve(vertices.size());
    occurrence.edgePairs().reserve(edges.size());
    for (std::size_t i = 0; i < vertices.size(); ++i)
        occurrence.addVertexPair(vertices[i], vertexImages[i]);
    for (std::size_t i = 0; i < edges.size(); ++i)
        occurrence.addEdgePair(edges[i].edge, edgeImages[i]);
    return true;
}

bool OccurrenceSearch::mapSeededEdges() {
    const auto& edges = pattern_.edges();
    for (std::size_t i = 0; i < edges.size() && i < seeds_->edges.size(); ++i) {
        DirectedGraphEdge* seed = seeds_->edges[i];
        if (seed == nullptr)
            continue;
        const bool joins =
            seed->source() == buffers_.vertexImages[static_cast<std::size_t>(edges[i].source)] &&
            seed->target() == buffers_.vertexImages[static_cast<std::size_t>(edges[i].target)];
        if (!joins || !seed->inGraph() || !labelFits(labels_.edgeText(static_cast<int>(i)), *seed))
            return false;
        buffers_.edgeImages[i] = seed;
    }
    return true;
}

}  // namespace vellum
