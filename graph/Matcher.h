// Finds the occurrences of a pattern (a rule's left-hand side) in host graphs: all of them in
// the defined order, or the first one, in search-plan order, that a caller's test accepts.
// The pattern graph must outlive the matcher and stay unchanged. Not for concurrent use: the
// matcher keeps its search's working storage from one search to the next.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "graph/GraphMorphism.h"
#include "graph/HostLabels.h"
#include "graph/OccurrenceSearch.h"
#include "graph/PatternStructure.h"
#include "graph/SearchPlan.h"

namespace vellum {

// An occurrence maps the pattern's vertices injectively to host vertices with the same label
// ("*" matches any), no fewer incoming and outgoing edges, and an edge wherever the pattern has
// one; the pattern's edges are then paired with host edges, first come first served among
// parallel edges (a single host edge may serve several parallel pattern edges).
class Matcher {
  public:
    explicit Matcher(DirectedGraph& pattern);
    ~Matcher();
    Matcher(const Matcher&) = delete;
    Matcher& operator=(const Matcher&) = delete;

    // Every occurrence, ordered lexicographically by the host list positions of the images of
    // the pattern vertices, taken in pattern order. An empty pattern gives one empty morphism.
    std::vector<GraphMorphism> findAll(DirectedGraph& host) const;

    using Acceptor = std::function<bool(const GraphMorphism& occurrence)>;
    // The first occurrence in search-plan order that `accept` takes, into `occurrence`; false
    // when there is none (then `occurrence` is unspecified). Deterministic for a given host.
    // The label lists whose vertices the search went through are then turned round to end with
    // the vertex it took (DirectedGraph::rotateLabelList): the next search for the rule, as in
    // applying it as long as possible, goes on after it instead of testing again every vertex
    // that `accept` has just turned down.
    bool findFirst(DirectedGraph& host, GraphMorphism& occurrence, const Acceptor& accept) const;

    const PatternStructure& pattern() const { return pattern_; }

  private:
    // The plan whose start has the fewest candidates in `host`: the vertices of the rarest
    // vertex label, or the sources of the rarest edge label's edges when that is rarer still.
    // `labels_` must have been resolved for `host`.
    const SearchPlan& planFor(const DirectedGraph& host) const;

    PatternStructure pattern_;
    // Made on use: one per start vertex, then one per anchor edge (in pattern edge order).
    mutable std::vector<std::unique_ptr<SearchPlan>> plans_;
    mutable HostLabels labels_;  // of the host of the current search
    mutable OccurrenceSearch::Buffers buffers_;
};

// Orders occurrences as findAll() does; both must pair the same pattern vertices in order.
bool precedes(const GraphMorphism& a, const GraphMorphism& b);

}  // namespace vellum
