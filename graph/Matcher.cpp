#include "graph/Matcher.h"

#include <algorithm>
#include <limits>

#include "graph/OccurrenceSearch.h"

namespace vellum {

Matcher::Matcher(DirectedGraph& pattern)
    : pattern_(pattern), plans_(std::max<std::size_t>(1, pattern_.vertexCount())) {}

Matcher::~Matcher() = default;

const SearchPlan& Matcher::planFor(const DirectedGraph& host) const {
    std::size_t start = 0;
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    for (std::size_t i = 0; i < pattern_.vertexCount(); ++i) {
        const std::string& label = pattern_.vertices()[i]->label();
        const std::size_t count = isWildcard(label) ? host.vertexCount() : host.vertexCount(label);
        if (count < fewest) {
            start = i;
            fewest = count;
        }
    }
    if (!plans_[start])
        plans_[start] = std::make_unique<SearchPlan>(pattern_, static_cast<int>(start));
    return *plans_[start];
}

std::vector<GraphMorphism> Matcher::findAll(DirectedGraph& host) const {
    std::vector<GraphMorphism> found;
    OccurrenceSearch search(pattern_, planFor(host), host);
    GraphMorphism occurrence;
    while (search.next(occurrence))
        found.push_back(occurrence);
    std::sort(found.begin(), found.end(), precedes);
    return found;
}

bool Matcher::findFirst(DirectedGraph& host, GraphMorphism& occurrence,
                        const Acceptor& accept) const {
    OccurrenceSearch search(pattern_, planFor(host), host);
    while (search.next(occurrence)) {
        if (accept(occurrence))
            return true;
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
