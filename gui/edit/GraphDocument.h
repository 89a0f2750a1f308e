// GraphDocument: the graph editor's document without any window: the graph, its scene, its
// file and an unlimited undo history, its own or one it shares with other parts of a larger
// document (a rule's sides). Every command is one undo step and brings the scene up to
// date incrementally; a gesture (move, rotate, scale) moves the scene at once while the mouse
// moves and becomes one step when it ends. Undo and redo restore the very elements that were
// there, in their places, so a save after undo writes the file that was there before.
//
// Element pointers handed out stay valid while the element is in the graph or the history can
// bring it back; load() and newGraph() invalidate them all.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/FileSpelling.h"
#include "gui/edit/EditHistory.h"
#include "gui/edit/EditResult.h"
#include "gui/edit/GraphChange.h"
#include "gui/view/GraphScene.h"
#include "koral/LayoutLibrary.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXp3.h"

namespace vellum {

enum class Gesture { Move, Rotate, Scale };

// Axes a gesture may not change: translation locks hold a move's x, y or z, rotation locks a
// rotation's angle about x, y or z.
struct AxisLocks {
    std::array<bool, 3> translation{};
    std::array<bool, 3> rotation{};
};

class GraphDocument {
  public:
    // How far a copy stands from its original, along x.
    static constexpr double copyOffset = 1.0;

    GraphDocument();
    // A document whose steps go into `history`, which its owner clears before the document is
    // destroyed.
    explicit GraphDocument(EditHistory& history);
    ~GraphDocument();
    GraphDocument(const GraphDocument&) = delete;
    GraphDocument& operator=(const GraphDocument&) = delete;

    DirectedGraph& graph() { return m_graph; }
    GraphScene& scene() { return *m_scene; }
    const std::string& fileName() const { return m_fileName; }  // empty: untitled
    bool modified() const;

    // An empty, untitled, unmodified graph with no history.
    void newGraph();
    // Reads the file; on success it replaces the graph, names the document and forgets the
    // history. On failure the graph, name, history and modified state stay as they were and
    // the result carries the reader's report (also on the console).
    EditResult load(const std::string& fileName);
    // Writes the graph to the file, replacing it only when all was written, and reads it back;
    // then the document has that name and is unmodified. On failure the result says why (a
    // value the format cannot carry, an unwritable file, a file that does not read back).
    EditResult save(const std::string& fileName);
    // Reads a graph of another tool (GraphML, GXL, DOT; a graph file too) into the document
    // as an untitled graph, as load() does otherwise. `rename` changes what a graph file cannot
    // spell instead of refusing the file; after a refusal `renamable` tells whether renaming
    // would read it.
    EditResult importGraph(const std::string& fileName, bool rename, bool* renamable = nullptr);
    // Writes the graph in the format of the file's extension; the document keeps its name and
    // its modified state.
    EditResult exportGraph(const std::string& fileName) const;

    // Commands, each one undo step. Null or false when the arguments are no elements of the
    // graph, and then nothing changed.
    // A vertex whose "representation" is `representation` ("sphere", "cone", "cylinder",
    // "cube" or a model file name), at `position`.
    DirectedGraphVertex* insertVertex(const std::string& representation, const TPXp3& position);
    DirectedGraphEdge* connect(DirectedGraphVertex& source, DirectedGraphVertex& target);
    // Deletes a vertex with its edges, or an edge.
    bool remove(GraphObject& element);
    // A new vertex with the label and visible attributes of `vertex`, copyOffset beside it.
    DirectedGraphVertex* copy(DirectedGraphVertex& vertex);
    // Any change of the element's label, attributes or rule data made by `edit`, as one step
    // (none when nothing changed). Refused when the element is not in the graph.
    EditResult changeContents(GraphObject& element, const std::function<void(GraphObject&)>& edit);
    // Takes the elements of `graph` (which gets this document's) and shows them; forgets the
    // history, the selection and the file name.
    void adopt(DirectedGraph& graph);
    EditHistory& history() { return m_history; }
    // How the scene decorates elements, kept for every scene the document makes from now on.
    void setDecorator(GraphScene::Decorator decorator);
    // Shows every element again, after what the decorator reads has changed.
    void refreshAll();

    // Label and attributes: refused, with the reason, when a graph file could not carry them.
    EditResult setLabel(GraphObject& element, const std::string& label);
    // Adds the attribute or replaces the one of its name in its place.
    EditResult setAttribute(GraphObject& element, std::unique_ptr<Attribute> attribute);
    EditResult removeAttribute(GraphObject& element, const std::string& name);
    // The vertex's "representation" and, when given, its "color".
    EditResult setLook(DirectedGraphVertex& vertex, const std::string& representation,
                       const std::optional<TPXrgb>& colour);
    // lyConfigure, then lyCompleteLayout on the graph; `redraw` is called whenever the layout
    // reports progress, after the scene has followed the vertices. A failure (a missing entry,
    // the layout's own) changes nothing and says why.
    EditResult layout(const LayoutLibrary& library, std::function<void()> redraw = {});

    // A gesture on one vertex: begin, update with the gesture's whole offset from its start as
    // often as the mouse moves (a move's distance, a rotation's angles in degrees, a scale's
    // factors), then commit as one undo step or cancel. Locks apply to moves and rotations.
    bool beginGesture(DirectedGraphVertex& vertex, Gesture gesture);
    void updateGesture(const TPXp3& offset);
    void commitGesture();
    void cancelGesture();
    bool gestureActive() const { return m_gesture.has_value(); }
    void setLocks(const AxisLocks& locks) { m_locks = locks; }
    const AxisLocks& locks() const { return m_locks; }

    bool canUndo() const { return m_history.canUndo(); }
    bool canRedo() const { return m_history.canRedo(); }
    bool undo();
    bool redo();

    // Selection by picked identity (0: nothing). The element behind an identity, or null.
    void select(std::uint32_t identity) { m_selected = identity; }
    std::uint32_t selected() const { return m_selected; }
    GraphObject* elementOf(std::uint32_t identity) const;
    // The selected vertex; null with "No vertex selected" (Warning) when nothing is selected,
    // or "Could not find the vertex in the graph!!!" (Alert) when the selection is no vertex
    // of the graph.
    DirectedGraphVertex* selectedVertex(EditResult& result) const;

  private:
    class Replay;
    struct ActiveGesture {
        DirectedGraphVertex* vertex;
        Gesture kind;
        ElementContents before;
        TPXp3 position, orientation, scale;  // at the start
    };

    // Ends a command: its change becomes the newest step (unless empty), the redo list goes,
    // and the scene catches up with what it touched.
    void finish(GraphChange change, const TouchedElements& touched);
    void record(GraphChange change);
    void forgetHistory();
    void rebuildScene();
    bool isElement(const GraphObject& element) const { return m_graph.contains(element); }
    // The vertex object takes the placement its attributes say, and its edges follow.
    void followPlacement(DirectedGraphVertex& vertex);

    // Declared first so that it outlives the elements the history holds.
    DirectedGraph m_graph;
    std::unique_ptr<GraphScene> m_scene;
    std::string m_fileName;
    // Declared after the graph: the taken elements it holds go before the graph does.
    EditHistory m_ownHistory;
    EditHistory& m_history;  // m_ownHistory or a shared one
    std::optional<ActiveGesture> m_gesture;
    AxisLocks m_locks;
    std::uint32_t m_selected = 0;
    FileSpelling m_spelling{FileSpelling::Format::Graph};
    GraphScene::Decorator m_decorator;
};

}  // namespace vellum
