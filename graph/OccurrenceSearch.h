// A resumable depth-first search for the occurrences of a pattern in a host graph along a
// search plan: each call of next() yields one more occurrence, in the plan's order. The host
// must not change while a search is in progress. Its working storage is lent by the caller,
// so that repeated searches allocate nothing once it has grown.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "graph/GraphMorphism.h"
#include "graph/HostLabels.h"
#include "graph/SearchPlan.h"

namespace vellum {

// Candidates for a step come from the neighbours of an earlier step's image (the shortest such
// list), else from the host's label index (the step's label, or for a plan anchored at an edge
// the sources of the edges with its label, each source once), else from the whole vertex list;
// each is tested as an occurrence requires (degrees, injectivity, label, adjacency to every
// earlier image). The edges are then paired exactly as the occurrence definition says, parallel
// edges included. A seeded step has its one candidate given, as a seeded edge has its image.
class OccurrenceSearch {
    struct Level;

  public:
    // Given images: by pattern vertex (for the plan's seeded steps) and by pattern edge in pair
    // order (null for an edge to be paired as usual). A seeded edge must join the images of its
    // ends and carry its label, else there is no occurrence.
    struct Seeds {
        std::vector<DirectedGraphVertex*> vertices;
        std::vector<DirectedGraphEdge*> edges;
    };

    // The working storage of a search; one search at a time may use it.
    struct Buffers {
        std::vector<Level> levels;
        std::vector<DirectedGraphVertex*> images;        // by step, valid up to the depth
        std::vector<DirectedGraphVertex*> vertexImages;  // by pattern vertex, for the edge pairing
        std::vector<DirectedGraphEdge*> edgeImages;      // by pattern edge, as paired so far
        // Sources of anchor edges already given out, kept only for sources of many edges.
        std::unordered_set<const DirectedGraphVertex*> anchorSources;
    };

    // `labels` must have been resolved for this pattern and host; it, the plan, the buffers and
    // the seeds (needed when the plan has seeded steps, else null) must outlive the search.
    OccurrenceSearch(const PatternStructure& pattern, const SearchPlan& plan, DirectedGraph& host,
                     const HostLabels& labels, Buffers& buffers, const Seeds* seeds = nullptr);

    // Fills `occurrence` with the next occurrence (vertex pairs in pattern order, edge pairs in
    // pair order) and returns true; false once there are no more. An empty pattern has exactly
    // one occurrence, the empty morphism.
    bool next(GraphMorphism& occurrence);

    // After next() has yielded an occurrence, and ending the search: turns the label list of
    // each step whose candidates came from it so that the step's image comes last (see
    // DirectedGraph::rotateLabelList).
    void rotateLabelLists();

  private:
    enum class Source { Neighbours, Seed, Label, EdgeLabel, All };
    struct Level {
        Source source = Source::All;
        int anchor = -1;  // the link whose neighbour list gave the candidates
        std::vector<DirectedGraphVertex*> candidates;
        std::size_t next = 0;
        VerticesWithLabel::iterator labelAt, labelEnd;
        EdgesWithLabel::iterator edgeAt, edgeEnd;
        VertexList::iterator allAt, allEnd;
    };
    enum class State { Fresh, Searching, Done };

    bool start();
    void open(std::size_t step);
    void collectNeighbours(std::size_t step, Level& level);
    DirectedGraphVertex* rawCandidate(Level& level);
    DirectedGraphVertex* nextAnchorSource(Level& level);
    bool firstOfItsSource(const DirectedGraphEdge& edge);
    DirectedGraphVertex* take(std::size_t step);
    bool fitsLocally(std::size_t step, const DirectedGraphVertex& host) const;
    bool fitsLinks(std::size_t step, int skipLink, const DirectedGraphVertex& host) const;
    bool mapEdges(GraphMorphism& occurrence);
    bool mapSeededEdges();
    DirectedGraphEdge* chooseEdge(const DirectedGraphVertex& from,
                                  const DirectedGraphVertex& to) const;

    const PatternStructure& pattern_;
    const SearchPlan& plan_;
    DirectedGraph& host_;
    // The host's own text of each pattern label (a label test compares addresses).
    const HostLabels& labels_;
    Buffers& buffers_;
    const Seeds* seeds_;
    State state_ = State::Fresh;
    int depth_ = 0;
};

}  // namespace vellum
