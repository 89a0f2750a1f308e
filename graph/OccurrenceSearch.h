// A resumable depth-first search for the occurrences of a pattern in a host graph along a
// search plan: each call of next() yields one more occurrence, in the plan's order. The host
// must not change while a search is in progress.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "graph/GraphMorphism.h"
#include "graph/SearchPlan.h"

namespace vellum {

// Candidates for a step come from the neighbours of an earlier step's image (the shortest such
// list), else from the host's label index, else from the whole vertex list; each is tested as an
// occurrence requires (degrees, injectivity, label, adjacency to every earlier image). The
// edges are then paired exactly as the occurrence definition says, parallel edges included.
class OccurrenceSearch {
  public:
    OccurrenceSearch(const PatternStructure& pattern, const SearchPlan& plan, DirectedGraph& host);

    // Fills `occurrence` with the next occurrence (vertex pairs in pattern order, edge pairs in
    // pair order) and returns true; false once there are no more. An empty pattern has exactly
    // one occurrence, the empty morphism.
    bool next(GraphMorphism& occurrence);

  private:
    enum class Source { Neighbours, Label, All };
    struct Level {
        Source source = Source::All;
        int anchor = -1;  // the link whose neighbour list gave the candidates
        std::vector<DirectedGraphVertex*> candidates;
        std::size_t next = 0;
        VerticesWithLabel::iterator labelAt, labelEnd;
        VertexList::iterator allAt, allEnd;
    };
    enum class State { Fresh, Searching, Done };

    bool start();
    bool resolveLabels();
    void open(std::size_t step);
    void collectNeighbours(std::size_t step, Level& level);
    DirectedGraphVertex* rawCandidate(Level& level);
    DirectedGraphVertex* take(std::size_t step);
    bool fitsLocally(std::size_t step, const DirectedGraphVertex& host) const;
    bool fitsLinks(std::size_t step, int skipLink, const DirectedGraphVertex& host) const;
    bool mapEdges(GraphMorphism& occurrence);
    DirectedGraphEdge* chooseEdge(const DirectedGraphVertex& from,
                                  const DirectedGraphVertex& to) const;

    const PatternStructure& pattern_;
    const SearchPlan& plan_;
    DirectedGraph& host_;
    State state_ = State::Fresh;
    int depth_ = 0;
    // The host's own text of each step's label (so that a label test compares addresses);
    // null for the wildcard.
    std::vector<const std::string*> stepLabels_;
    std::vector<const std::string*> edgeLabels_;  // likewise, per pattern edge in pair order
    std::vector<Level> levels_;
    std::vector<DirectedGraphVertex*> images_;        // by step, valid up to depth_
    std::vector<DirectedGraphVertex*> vertexImages_;  // by pattern vertex, for the edge pairing
    std::vector<DirectedGraphEdge*> edgeImages_;      // by pattern edge, as paired so far
};

}  // namespace vellum
