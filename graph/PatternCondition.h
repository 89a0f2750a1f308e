// A rule's left-hand side used as a condition of another rule, the main rule: the pattern's
// vertices and edges that carry a variable name of the main rule stand for that variable's host
// object, and the pattern occurs when the rest of it is found around those objects, under the
// rules of matching (vertices injective within the pattern, labels, degrees, parallel edges first
// come first served). The search starts at the bound objects and walks only their
// neighbourhood, so its cost does not grow with the host graph.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "graph/DirectedGraphRule.h"
#include "graph/HostLabels.h"
#include "graph/OccurrenceSearch.h"
#include "graph/PatternStructure.h"
#include "graph/SearchPlan.h"
#include "graph/VariableBinding.h"

namespace vellum {

class PatternCondition {
  public:
    // Why `pattern` cannot serve as a condition of a rule with `variables`, worded to follow
    // "the pattern ..."; empty when it can. It cannot when it is empty, names a variable the
    // rule does not declare (or names one twice, or names a vertex by an edge's variable and
    // the other way round), or has a vertex that no chain of edges joins to a named element:
    // finding that one would mean searching the whole graph.
    static std::string problemOf(const DirectedGraph& pattern,
                                 const std::vector<RuleVariable>& variables);

    // The pattern of `rule`'s left-hand side for `variables`; null, with `problem` set as
    // problemOf() says, when it cannot serve. `variables` must outlive the result.
    static std::unique_ptr<PatternCondition> prepare(std::unique_ptr<DirectedGraphRule> rule,
                                                     const std::vector<RuleVariable>& variables,
                                                     std::string& problem);

    // True when an occurrence of the pattern in `host` maps each named element to the object
    // bound to its variable: `bound` holds those objects by the index of their variable (each
    // a vertex or an edge as its variable's declaration is; every one the pattern names must be
    // there and in the host). Not for concurrent use: the search's storage is kept.
    bool occurs(DirectedGraph& host, const std::vector<GraphObject*>& bound);

    // The indices of the variables the pattern names, each once.
    const std::vector<int>& namedVariables() const { return named_; }

  private:
    PatternCondition(std::unique_ptr<DirectedGraphRule> rule,
                     const std::vector<RuleVariable>& variables);

    // How a seeded pattern vertex finds its image: its own variable, or an end of a seeded edge.
    struct VertexSeed {
        int vertex = 0;         // pattern vertex index
        int variable = -1;      // its variable's index, or -1
        int edgeVariable = -1;  // else the variable of an edge it ends
        bool source = false;    // whether it is that edge's source
    };

    std::unique_ptr<DirectedGraphRule> rule_;  // owns the pattern graph
    PatternStructure structure_;
    std::vector<VertexSeed> vertexSeeds_;
    std::vector<int> edgeVariables_;  // by pattern edge in pair order; -1 when not named
    std::vector<int> named_;
    SearchPlan plan_;
    HostLabels labels_;
    OccurrenceSearch::Buffers buffers_;
    OccurrenceSearch::Seeds seeds_;
    GraphMorphism found_;
};

}  // namespace vellum
