// The order in which the matcher maps the vertices of a pattern, made once per pattern and
// starting point: the start first, then always the vertex with the most edges to vertices
// already placed (so that its candidates come from the neighbours of their images), a vertex
// with a label before a wildcard. Each step lists the tests that tie it to the earlier steps.
// The start's candidates come from the label index: of its own label, or of an anchor edge.
// A plan may instead start at several seeded vertices, whose images the caller gives.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "graph/PatternStructure.h"

namespace vellum {

// How the vertex of a step is tied to the vertex of an earlier step.
enum class Tie {
    FromEarlier,  // the earlier vertex has an edge to this one
    ToEarlier,    // this vertex has an edge to the earlier one
};

struct PlanLink {
    int step = 0;  // the earlier step
    Tie tie = Tie::FromEarlier;
};

struct PlanStep {
    int vertex = 0;                      // index among the pattern's vertices
    const std::string* label = nullptr;  // the pattern vertex's label; null for the wildcard
    std::size_t outDegree = 0;
    std::size_t inDegree = 0;
    bool hasLoop = false;
    bool seeded = false;          // the image is given, not searched for
    std::vector<PlanLink> links;  // each (earlier step, direction) once
};

class SearchPlan {
  public:
    // Starts at the pattern vertex `start`.
    SearchPlan(const PatternStructure& pattern, int start);
    // Starts at the source of the pattern edge `anchorEdge` (an index into pattern.edges() whose
    // label is no wildcard): its candidates are the sources of the host edges with that label.
    static SearchPlan anchoredAtEdge(const PatternStructure& pattern, int anchorEdge);
    // Starts with the pattern vertices `seeded` (indices, in that order, at least one), whose
    // images the search is given; the others follow as usual.
    static SearchPlan seeded(const PatternStructure& pattern, const std::vector<int>& seeded);

    const std::vector<PlanStep>& steps() const { return steps_; }
    // The anchor edge's label; null when the start's candidates come from its own label.
    const std::string* anchorLabel() const { return anchorLabel_; }

  private:
    SearchPlan(const PatternStructure& pattern, const std::vector<int>& starts);
    std::vector<int> placementOrder(const PatternStructure& pattern,
                                    const std::vector<int>& starts) const;
    void addStep(const PatternStructure& pattern, int vertex, const std::vector<int>& stepOf);

    std::vector<PlanStep> steps_;
    const std::string* anchorLabel_ = nullptr;  // the pattern edge's own label text
};

}  // namespace vellum
