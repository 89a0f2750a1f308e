// SceneChanges: what rewriting steps did to a graph, in the terms a scene needs to catch up:
// the elements that left the graph (by serial, since they may be destroyed) and the live
// elements that were created or may have changed (label, attributes, an end that left). A
// recorder collects them from the rule-application events, in time proportional to the
// steps' occurrences and the degrees of deleted vertices, not to the graph.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/GraphMorphism.h"
#include "graph/PreparedRule.h"

namespace vellum {

struct SceneChanges {
    std::vector<std::uint64_t> removed;  // serials of elements no longer in the graph
    std::vector<GraphObject*> changed;   // live elements, vertices first, each in graph order
    bool empty() const { return removed.empty() && changed.empty(); }
};

class StepRecorder {
  public:
    // Feed every rule-application event here (a RuleCallback may forward to it). Events other
    // than "occurrence chosen" and "applied" are ignored.
    void onEvent(int event, DirectedGraph* host, const GraphMorphism* occurrence);
    // The occurrence `rule` is about to rewrite, in place of the "occurrence chosen" event:
    // knowing what the rule deletes, the recorder can also follow the step's first half.
    void chosen(DirectedGraph& host, const GraphMorphism& occurrence, const PreparedRule& rule);
    // At the intermediate event, after such a chosen(): records the elements the step has
    // deleted and the edges that lost an end, so that the deletion can be shown on its own.
    void deleted();
    // Everything recorded since the last take, and forgets it.
    SceneChanges take();

  private:
    void chosen(DirectedGraph& host, const GraphMorphism& occurrence, const PreparedRule* rule);
    void applied(DirectedGraph& host, const GraphMorphism& survivors);
    void touch(GraphObject& object);
    void remove(std::uint64_t serial);

    // The step under way: the host objects of its occurrence, with the edges of its vertices
    // (alive until the step removes them), and the last serials before it.
    std::vector<std::pair<GraphObject*, std::uint64_t>> m_images;
    std::vector<std::pair<GraphObject*, std::uint64_t>> m_neighbours;
    // The serials of the images the rule deletes (known only when it was given).
    std::unordered_set<std::uint64_t> m_doomed;
    std::uint64_t m_lastVertexSerial = 0;
    std::uint64_t m_lastEdgeSerial = 0;

    std::unordered_map<std::uint64_t, GraphObject*> m_changed;
    std::unordered_set<std::uint64_t> m_removed;
};

}  // namespace vellum
