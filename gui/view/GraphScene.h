// GraphScene: a graph shown as a 3D scene. Each vertex becomes a vertex object (kind 4) whose
// shape, colour and placement come from its attributes, each edge an edge object (kind 8)
// between its ends' objects, each non-empty label an orange text child. The link from an
// element to its object runs both ways in constant time: the element's serial and "__link__"
// attribute name the object, the object's identity names the element.
//
// build() shows a graph anew; update() catches up with rewriting steps in time proportional to
// what they changed and gives the same scene as a fresh build. Elements whose end vertex has
// left the graph (a dangling edge) are not shown.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraph.h"
#include "gui/view/GraphEdgeObject.h"
#include "gui/view/SceneChanges.h"
#include "gui/view/ShapeLibrary.h"
#include "tpx/TPXfont.h"
#include "tpx/TPXnode.h"

namespace vellum {

// What an editor shows of an element beyond its attributes, without changing them: a colour
// in place of its own and a text before its label.
struct ElementDecoration {
    std::optional<TPXrgb> colour;
    std::string labelPrefix;
};

class GraphScene {
  public:
    using Decorator = std::function<ElementDecoration(const GraphObject& element)>;

    static constexpr double vertexLabelSize = 0.5;
    static constexpr double edgeLabelSize = 0.4;
    static constexpr const char* labelName = "__label__";
    static constexpr const char* fontName = "VellumFont";

    // Relative model file names are looked up in `modelFolder` first (the graph file's folder).
    explicit GraphScene(std::string modelFolder = {});
    ~GraphScene();
    GraphScene(const GraphScene&) = delete;
    GraphScene& operator=(const GraphScene&) = delete;

    // Shows `graph` anew: every element gets a new object and its "__link__"; vertices gain the
    // attributes a shown vertex carries. The graph must outlive the scene or the next build. The
    // root stays the same node from the first build on.
    void build(DirectedGraph& graph);
    // Catches up with `changes` made to the graph of the last build. A created vertex without
    // a "position" is placed among its neighbours that were shown before (on the line between
    // two, in the middle of more, beside a single one) and keeps that place as its attribute,
    // so that a step leaves the rest of the picture where it was.
    void update(const SceneChanges& changes);
    // How elements are decorated from their next build or update on; empty: not at all.
    void setDecorator(Decorator decorator) { m_decorator = std::move(decorator); }
    // Places the vertex objects where the vertices' attributes say again (after a layout wrote
    // them); edges follow.
    void followPlacements();
    void followPlacement(const DirectedGraphVertex& vertex);
    // Highlights the object of `element` until clearHighlights(): an edge runs dashed, a vertex
    // wears a yellow halo. False when the element is not shown.
    bool highlight(const GraphObject& element);
    void clearHighlights();
    static constexpr const char* haloName = "__halo__";

    // The position of every vertex object, by vertex serial.
    std::unordered_map<std::uint64_t, TPXp3> vertexPositions() const;
    // Shows the vertex `serial` at `position` without changing its attributes (an animation's
    // frame); false when it is not shown.
    bool showVertexAt(std::uint64_t serial, const TPXp3& position);

    // The scene to draw: a chain of two group nodes, the vertices' and then the edges'.
    TPXnode* root() const { return m_root.get(); }
    std::size_t vertexCount() const { return m_vertices.size(); }
    std::size_t edgeCount() const { return m_edges.size(); }

    // The object showing `vertex` (`edge`), or null when it is not shown.
    TPXnode* objectOf(const DirectedGraphVertex& vertex) const;
    GraphEdgeObject* objectOf(const DirectedGraphEdge& edge) const;
    // The element an object identity (a picking result, a "__link__" value) stands for, or null.
    GraphObject* elementOf(std::uint32_t identity) const;

    // The bounding box of every vertex object in world space (empty without vertices).
    TPXboundingBox bounds() const;

    // Marks the element of the object `identity` with `text` in a "__mark__" attribute; false
    // when no element has that identity.
    bool mark(std::uint32_t identity, const std::string& text);
    // Writes the placement of the vertex object `identity` back into its vertex's attributes
    // after it was moved, turned or scaled in the scene; false when it is no vertex object.
    bool writeBack(std::uint32_t identity);

  private:
    struct VertexRecord {
        DirectedGraphVertex* vertex;
        TPXnode* object;
    };
    struct EdgeRecord {
        DirectedGraphEdge* edge;
        GraphEdgeObject* object;
        std::pair<std::uint64_t, std::uint64_t> pair;  // its end vertices' serials, ordered
    };
    struct PairHash {
        std::size_t operator()(const std::pair<std::uint64_t, std::uint64_t>& p) const {
            return std::hash<std::uint64_t>()(p.first * 0x9E3779B97F4A7C15ULL ^ p.second);
        }
    };
    using Pair = std::pair<std::uint64_t, std::uint64_t>;

    void addVertex(DirectedGraphVertex& vertex);
    // Gives the created `vertices` without a position one near their shown neighbours.
    void placeAmongNeighbours(const std::vector<DirectedGraphVertex*>& vertices);
    void refreshVertex(VertexRecord& record);
    // Adds the edge's object if both ends are shown; returns its pair of ends to bend.
    void addEdge(DirectedGraphEdge& edge, std::vector<Pair>& bent);
    void refreshEdge(EdgeRecord& record);
    void removeVertex(std::uint64_t serial);
    void removeEdge(std::uint64_t serial, std::vector<Pair>& bent);
    bool shown(const DirectedGraphEdge& edge) const;
    void bendPair(const Pair& pair);
    void followVertex(const DirectedGraphVertex& vertex);
    std::unique_ptr<TPXnode> makeVertexObject(DirectedGraphVertex& vertex);
    ElementDecoration decorationOf(const GraphObject& element) const;
    void decorateEdge(GraphEdgeObject& object, const DirectedGraphEdge& edge);
    void setLabel(TPXnode& owner, const std::string& text, double size, double height);
    // The object of the nearest element before `element` in its graph list that is shown, or
    // null: where a new object goes so that each group keeps graph order, also when an element
    // comes back into the middle of its list (an editor's undo).
    TPXnode* shownBefore(const DirectedGraphVertex& vertex) const;
    TPXnode* shownBefore(const DirectedGraphEdge& edge) const;
    // Puts `node` after `previous` in `group`, or first when `previous` is null.
    static void insertAfter(TPXnode& group, TPXnode*& last, TPXnode* previous,
                            std::unique_ptr<TPXnode> node);
    // Takes `node` out of its group, whose last child `last` is kept up to date.
    static std::unique_ptr<TPXnode> detach(TPXnode* node, TPXnode*& last);
    std::uint32_t newIdentity() { return ++m_lastIdentity; }

    ShapeLibrary m_shapes;
    TPXfontCache m_fonts;
    TPXref<TPXfont> m_font;  // empty when the font cannot be loaded: labels are left out
    TPXref<TPXgeometry> m_arrowhead;
    TPXref<TPXgeometry> m_halo;                // made on first use
    std::vector<std::uint64_t> m_highlighted;  // serials; some may have left since
    DirectedGraph* m_graph = nullptr;

    std::unique_ptr<TPXnode> m_root;  // the vertices' group; its sibling is the edges' group
    TPXnode* m_vertexGroup = nullptr;
    TPXnode* m_edgeGroup = nullptr;
    TPXnode* m_lastVertex = nullptr;  // the last child of each group, to append in order
    TPXnode* m_lastEdge = nullptr;

    std::uint32_t m_lastIdentity = 0;
    Decorator m_decorator;
    std::unordered_map<std::uint64_t, VertexRecord> m_vertices;  // by element serial
    std::unordered_map<std::uint64_t, EdgeRecord> m_edges;
    std::unordered_map<std::uint32_t, std::uint64_t> m_serialOf;  // by object identity
    // The edges joining each pair of vertices, in graph order (by serial).
    std::unordered_map<Pair, std::vector<std::uint64_t>, PairHash> m_pairs;
};

// Gives each of the created `vertices` (without a "position") a place among its neighbours whose
// place `placeOf` knows (none: not placed), kept as its "position": on the line between two, in
// the middle of more, beside a single one; round by round, so that a vertex joined only to other
// new ones goes near those, and in a row beside the origin when it touches nothing placed.
void placeAmongNeighbours(
    const std::vector<DirectedGraphVertex*>& vertices,
    const std::function<std::optional<TPXp3>(const DirectedGraphVertex&)>& placeOf);

}  // namespace vellum
