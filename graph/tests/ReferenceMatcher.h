// The matching tests' independent references: the occurrence search exactly as the definition
// states it, and random graphs with few labels, loops, parallel edges and lingering loops.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/GraphMorphism.h"

namespace vellum::test {

// The occurrence search exactly as defined: depth-first over the pattern vertices in list
// order, host vertices in list order, then the edge pairing with its parallel-edge rule.
class ReferenceMatcher {
  public:
    ReferenceMatcher(DirectedGraph& pattern, DirectedGraph& host) : host_(host) {
        for (DirectedGraphVertex& vertex : pattern.vertices())
            left_.push_back(&vertex);
    }
    std::vector<GraphMorphism> run() {
        search(0);
        return found_;
    }

  private:
    bool adjacent(DirectedGraphVertex& l, DirectedGraphVertex& h) const {
        for (const VertexPair& pair : work_.vertexPairs()) {
            if (pair.left->findOutgoingTo(l) != nullptr && pair.right->findOutgoingTo(h) == nullptr)
                return false;
            if (l.findOutgoingTo(*pair.left) != nullptr && h.findOutgoingTo(*pair.right) == nullptr)
                return false;
        }
        return true;
    }
    void search(std::size_t k) {
        if (k == left_.size())
            return mapEdges();
        DirectedGraphVertex& l = *left_[k];
        for (DirectedGraphVertex& h : host_.vertices()) {
            if (l.outDegree() > h.outDegree() || l.inDegree() > h.inDegree() || work_.isImage(&h))
                continue;
            if ((l.label() != "*" && l.label() != h.label()) || !adjacent(l, h))
                continue;
            work_.addVertexPair(&l, &h);
            search(k + 1);
            work_.removeVertexPair(&l);
        }
    }
    DirectedGraphEdge* choose(DirectedGraphVertex& h, DirectedGraphVertex& n) const {
        if (!h.hasSeveralOutgoingTo(n))
            return h.findOutgoingTo(n);
        for (DirectedGraphEdge& edge : h.outgoing()) {
            if (edge.target() == &n && !work_.isImage(&edge))
                return &edge;
        }
        return nullptr;
    }
    void mapEdges() {
        for (const VertexPair& pair : work_.vertexPairs()) {
            for (DirectedGraphEdge& e : pair.left->outgoing()) {
                DirectedGraphEdge* image = choose(*pair.right, *work_.imageOf(e.target()));
                if (image == nullptr || (e.label() != "*" && e.label() != image->label())) {
                    work_.clearEdgePairs();
                    return;
                }
                work_.addEdgePair(&e, image);
            }
        }
        found_.push_back(work_);
        work_.clearEdgePairs();
    }

    DirectedGraph& host_;
    std::vector<DirectedGraphVertex*> left_;
    GraphMorphism work_;
    std::vector<GraphMorphism> found_;
};

// Random hosts and patterns with few labels, loops, parallel edges and removed loops that
// linger in the incoming lists.
class RandomGraphs {
  public:
    explicit RandomGraphs(unsigned seed) : random_(seed) {}

    void fill(DirectedGraph& graph, int maxVertices, int maxEdges,
              const std::vector<std::string>& vertexLabels,
              const std::vector<std::string>& edgeLabels, bool removeLoops) {
        std::vector<DirectedGraphVertex*> vertices;
        for (int i = pick(maxVertices + 1); i > 0; --i) {
            vertices.push_back(graph.createVertex());
            vertices.back()->setLabel(vertexLabels[pick(static_cast<int>(vertexLabels.size()))]);
        }
        if (vertices.empty())
            return;
        const int n = static_cast<int>(vertices.size());
        std::vector<DirectedGraphEdge*> loops;
        for (int i = pick(maxEdges + 1); i > 0; --i) {
            auto* edge = graph.createEdge(vertices[pick(n)], vertices[pick(n)]);
            edge->setLabel(edgeLabels[pick(static_cast<int>(edgeLabels.size()))]);
            if (edge->isLoop())
                loops.push_back(edge);
        }
        for (DirectedGraphEdge* loop : loops) {
            if (removeLoops && pick(3) == 0)
                graph.removeEdge(loop);
        }
    }
    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random_); }

  private:
    std::mt19937 random_;
};

}  // namespace vellum::test
