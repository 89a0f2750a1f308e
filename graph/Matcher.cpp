#include "graph/Matcher.h"

#include <algorithm>
#include <limits>

namespace vellum {

Matcher::Matcher(DirectedGraph& pattern)
    : pattern_(pattern),
      plans_(std::max<std::size_t>(1, pattern_.vertexCount()) + pattern_.edges().size()) {}

Matcher::~Matcher() = default;

const SearchPlan& Matcher::planFor(const DirectedGraph& host) const {
    // Estimated partial occurrences once the start and one neighbour are placed: a start vertex
    // gives the vertices with its label times the host's average degree, an anchor edge the
    // edges with its label (which fix both of its ends). Ties go to the edge, whose label
    // filters the neighbour too; a rule that consumes its anchor edges (such as one that splits
    // marked triangles) then finds its next occurrence at the front of their list.
    const double fan = host.vertexCount() == 0
                           ? 1.0
                           : std::max(1.0, static_cast<double>(host.edgeCount()) /
                                               static_cast<double>(host.vertexCount()));
    std::size_t start = 0;
    double fewest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < pattern_.vertexCount(); ++i) {
        const double cost = static_cast<double>(labels_.vertexCount(static_cast<int>(i))) * fan;
        if (cost < fewest) {
            start = i;
            fewest = cost;
        }
    }
    int anchor = -1;
    const auto& edges = pattern_.edges();
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (isWildcard(edges[i].edge->label()))
            continue;
        const double cost = static_cast<double>(labels_.edgeCount(static_cast<int>(i)));
        if (cost <= fewest) {
            anchor = static_cast<int>(i);
            fewest = cost;
        }
    }
    const std::size_t vertexSlots = plans_.size() - edges.size();
    if (anchor < 0) {
        if (!plans_[start])
            plans_[start] = std::make_unique<SearchPlan>(pattern_, static_cast<int>(start));
        return *plans_[start];
    }
    std::unique_ptr<SearchPlan>& plan = plans_[vertexSlots + static_cast<std::size_t>(anchor)];
    if (!plan)
        plan = std::make_unique<SearchPlan>(SearchPlan::anchoredAtEdge(pattern_, anchor));
    return *plan;
}

std::vector<GraphMorphism> Matcher::findAll(DirectedGraph& host) const {
    std::vector<GraphMorphism> found;
    labels_.resolve(pattern_, host);
    OccurrenceSearch search(pattern_, planFor(host), host, labels_, buffers_);
    GraphMorphism occurrence;
    while (search.next(occurrence))
        found.push_back(occurrence);
    std::sort(found.begin(), found.end(), precedes);
    return found;
}

bool Matcher::findFirst(DirectedGraph& host, GraphMorphism& occurrence,
                        const Acceptor& accept) const {
    labels_.resolve(pattern_, host);
    OccurrenceSearch search(pattern_, planFor(host), host, labels_, buffers_);
    while (search.next(occurrence)) {
        if (accept(occurrence)) {
            search.rotateLabelLists();
            return true;
        }
    }
    return false;
}

bool precedes(const GraphMorphism& a, const GraphMorphism& b) {
    // Serials order the vertex list, which only ever appends.
    const auto& x = a.vertexPairs();
    const auto& y = b.vertexPairs();
    return std::lexicographical_compare(x.begin(), x.end(), y.begin(), y.end(),
                                        [](const VertexPair& p, const VertexPair& q) {
                                            return p.right->serial() < q.right->serial();
                                        });
}

}  // namespace vellum
