// The directed graph: owns its vertices and edges and keeps, in step with every change, the
// vertex and edge lists (insertion order), each vertex's incoming and outgoing lists and the
// label index (with the edge counts by label of vertices with many edges). Creating, relabelling
// and removing an element take constant time; removeVertex is linear in the vertex's degree,
// clear() in the size of the graph.
//
// Removal rules, kept because rewriting and the files' behaviour depend on them:
// - removeEdge() cleans the source's outgoing list or else the target's incoming list. For a
//   self-loop only the outgoing list is cleaned: the loop leaves the graph (edge list, label
//   index, counts) but lingers as an inert entry in its vertex's incoming list, counted by
//   inDegree(), owned by that vertex and destroyed with it. Such an edge is not inGraph().
// - removeVertex() removes the edges of the vertex's incoming list, then those of its outgoing
//   list, each with removeEdge(), and fails (returning false, having removed the edges before)
//   at an entry that is no edge of the graph, i.e. a lingering self-loop. A live self-loop is
//   met first in the incoming list and so handled once; it lingers and goes with the vertex.
// - removeVertexOnly() takes the vertex out without touching any edge. Rule application calls
//   it when no live edge remains; should some remain, the vertex stays alive outside the graph
//   (not inGraph()) until the last of them is removed, so those edges never dangle.
// Removing an element destroys it (bar the two cases above): pointers to it become invalid and
// must not be handed to the graph again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "graph/DirectedGraphVertex.h"
#include "graph/LabelIndex.h"
#include "graph/ObjectPool.h"

namespace vellum {

using VertexList = ListView<DirectedGraphVertex, GraphListTag>;
using ConstVertexList = ListView<const DirectedGraphVertex, GraphListTag>;
using EdgeList = ListView<DirectedGraphEdge, GraphListTag>;
using ConstEdgeList = ListView<const DirectedGraphEdge, GraphListTag>;
using VerticesWithLabel = ListView<DirectedGraphVertex, LabelTag>;
using ConstVerticesWithLabel = ListView<const DirectedGraphVertex, LabelTag>;
using EdgesWithLabel = ListView<DirectedGraphEdge, LabelTag>;
using ConstEdgesWithLabel = ListView<const DirectedGraphEdge, LabelTag>;
// An element taken out of its graph for undo; dropping it destroys the element.
using TakenVertex = std::unique_ptr<DirectedGraphVertex, PooledDelete<DirectedGraphVertex>>;
using TakenEdge = std::unique_ptr<DirectedGraphEdge, PooledDelete<DirectedGraphEdge>>;

class DirectedGraph {
  public:
    DirectedGraph();
    virtual ~DirectedGraph();
    DirectedGraph(const DirectedGraph&) = delete;
    DirectedGraph& operator=(const DirectedGraph&) = delete;

    // "DirectedGraph"; graph classes of extension libraries name themselves.
    virtual const std::string& className() const;

    // Whether rules may be applied to the graph now; graph classes of extension libraries may
    // refuse (rule application then gives result 2). Always true here.
    virtual bool isReady() const { return true; }

    // A new vertex with the label (empty by default) and no attributes, appended to the vertex
    // list.
    DirectedGraphVertex* createVertex(std::string_view label = {});
    // A new edge with the label (empty by default) appended to the edge list, the source's
    // outgoing list and the target's incoming list. Null when either endpoint is not a vertex
    // of this graph.
    DirectedGraphEdge* createEdge(DirectedGraphVertex* source, DirectedGraphVertex* target,
                                  std::string_view label = {});

    // False when the argument is not an element of this graph (see the rules above).
    bool removeEdge(DirectedGraphEdge* edge);
    bool removeVertex(DirectedGraphVertex* vertex);
    bool removeVertexOnly(DirectedGraphVertex* vertex);
    // Destroys every vertex and edge; invalidates every pointer into the graph.
    void clear();
    // Exchanges the contents (elements, label index, cursors, serial counter) of the two graphs
    // in time linear in the number of labels; the elements then belong to the other graph and
    // pointers to them stay valid. Each graph keeps its class and any state a derived class adds.
    void swap(DirectedGraph& other) noexcept;

    // Taking elements out and putting them back, for an editor's undo: a taken element is not
    // destroyed but handed to the caller, unchanged (label, attributes, serial), and restore
    // puts it back in its place by serial in every list it was in, so the graph is as before.
    // A taken element must be restored or destroyed before this graph is cleared or swapped,
    // and only ever restored into this graph; it may outlive the graph.
    // takeEdge: null when the edge is not in the graph; a loop leaves both of its vertex's lists.
    TakenEdge takeEdge(DirectedGraphEdge* edge);
    // takeVertex: null unless the vertex is in the graph with no edges (take those first).
    TakenVertex takeVertex(DirectedGraphVertex* vertex);
    // restore: the element back in the graph; null, with `element` left to the caller, when it
    // is not a taken element of this graph or (an edge) one of its ends is not in the graph.
    DirectedGraphVertex* restoreVertex(TakenVertex& vertex);
    DirectedGraphEdge* restoreEdge(TakenEdge& edge);

    // True when the object is a vertex or edge of this graph (and not removed).
    bool contains(const GraphObject& object) const;

    VertexList vertices() { return VertexList(vertices_); }
    ConstVertexList vertices() const { return ConstVertexList(vertices_); }
    EdgeList edges() { return EdgeList(edges_); }
    ConstEdgeList edges() const { return ConstEdgeList(edges_); }
    std::size_t vertexCount() const { return vertices_.size(); }
    std::size_t edgeCount() const { return edges_.size(); }

    // first/next iteration with the cursor kept in the graph, one per list: a nested iteration
    // of the same list restarts the outer one. Removing the element just returned is safe.
    DirectedGraphVertex* firstVertex();
    DirectedGraphVertex* nextVertex();
    DirectedGraphEdge* firstEdge();
    DirectedGraphEdge* nextEdge();

    // The label index (read-only): the vertices (edges) with this label, in the order they
    // took it (turned round by rotateLabelList()); empty for a label that no element has.
    VerticesWithLabel verticesWithLabel(std::string_view label);
    ConstVerticesWithLabel verticesWithLabel(std::string_view label) const;
    EdgesWithLabel edgesWithLabel(std::string_view label);
    ConstEdgesWithLabel edgesWithLabel(std::string_view label) const;
    std::size_t vertexCount(std::string_view label) const;
    std::size_t edgeCount(std::string_view label) const;

    // The label index itself, for callers that keep bucket pointers (see LabelIndex).
    const LabelIndex& labelIndex() const { return labels_; }

    // The edges of the graph that leave (enter) `vertex`: all of them, or those labelled
    // `label`. Constant time (a vertex with many edges has its counts kept by the label index).
    // Unlike inDegree(), lingering self-loops do not count: they are no edges of the graph.
    std::size_t outgoingCount(const DirectedGraphVertex& vertex) const;
    std::size_t outgoingCount(const DirectedGraphVertex& vertex, std::string_view label) const;
    std::size_t incomingCount(const DirectedGraphVertex& vertex) const;
    std::size_t incomingCount(const DirectedGraphVertex& vertex, std::string_view label) const;

    // Turns the list of the vertices with the vertex's label round so that the vertex comes
    // last: those after it come first, then those up to it. The matcher does so when its search
    // for one occurrence has taken a vertex from that list, so that the next search starts
    // where this one ended instead of meeting the vertices it has just passed over again.
    // False when the vertex is not in this graph. Constant time.
    bool rotateLabelList(DirectedGraphVertex& vertex);

    // The first vertex in list order that has an attribute of the same name whose equality
    // test with `attribute` holds; null if none. Linear in the number of vertices.
    DirectedGraphVertex* findVertexByAttribute(const Attribute& attribute) const;

  private:
    ObjectPool& pool();
    // Destroys an element that is in no list of the graph.
    template <typename T>
    void destroy(T& object);
    void unlinkVertex(DirectedGraphVertex& vertex);
    void unlinkEdge(DirectedGraphEdge& edge);
    // Destroys a vertex that is in no list of the graph, with its lingering self-loops.
    void destroyVertex(DirectedGraphVertex& vertex);
    // Destroys a vertex outside the graph once no live edge points at it any more.
    void reclaimIfDetached(DirectedGraphVertex& vertex);
    static bool hasLiveEdges(const DirectedGraphVertex& vertex);
    // Whether `object` was taken out of this graph (its label bucket is one of this graph's).
    bool took(const GraphObject& object) const;
    const IntrusiveList<DirectedGraphVertex, LabelTag>& labelled(std::string_view label) const;
    const IntrusiveList<DirectedGraphEdge, LabelTag>& labelledEdges(std::string_view label) const;

    // Declared first so that it outlives the objects that point at its buckets.
    LabelIndex labels_;
    // Where the elements live; made with the first element, shared with elements taken out.
    std::shared_ptr<ObjectPool> pool_;
    // The lists own their elements (made in the pool, destroyed there on removal).
    IntrusiveList<DirectedGraphVertex, GraphListTag> vertices_;
    IntrusiveList<DirectedGraphEdge, GraphListTag> edges_;
    // Vertices taken out by removeVertexOnly() while live edges still pointed at them.
    IntrusiveList<DirectedGraphVertex, GraphListTag> detached_;
    DirectedGraphVertex* vertexCursor_ = nullptr;  // the vertex nextVertex() returns
    DirectedGraphEdge* edgeCursor_ = nullptr;      // the edge nextEdge() returns
    std::uint64_t nextSerial_ = 1;                 // the serial of the next element created
};

}  // namespace vellum
