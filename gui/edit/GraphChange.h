// GraphChange: one undoable step of the graph editor, recorded while a command changes the
// graph: elements added, elements taken out (kept alive here, so they come back as the very same
// objects in their places) and the label and attributes of elements before and after. Undo and
// redo replay the record backwards and forwards and say what the scene must catch up with.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "graph/Attribute.h"
#include "graph/DirectedGraph.h"
#include "gui/view/SceneChanges.h"

namespace vellum {

// An element's label and attributes, copied, in list order, with the client data of the
// element and its attributes (a rule's variables, references and expressions).
struct ElementContents {
    std::string label;
    std::vector<std::unique_ptr<Attribute>> attributes;
    std::unique_ptr<ObjectExtension> extension;

    static ElementContents of(const GraphObject& element);
    // Gives `element` exactly this label and these attributes (copies of them).
    void applyTo(GraphObject& element) const;
    bool operator==(const ElementContents& other) const;
};

// The elements a change touched, turned into what the scene must catch up with.
class TouchedElements {
  public:
    void add(GraphObject& element);
    // Those still in the graph as changed (vertices first, each kind in graph order), the others
    // as removed. Every element added must still exist.
    SceneChanges sceneChanges() const;

  private:
    std::vector<GraphObject*> m_elements;
    std::unordered_set<GraphObject*> m_seen;
};

class GraphChange {
  public:
    GraphChange();
    ~GraphChange();
    GraphChange(GraphChange&&) noexcept;
    GraphChange& operator=(GraphChange&&) noexcept;

    bool empty() const { return m_steps.empty(); }

    // Recording, as the command goes: `element` was just created in the graph.
    void added(GraphObject& element, TouchedElements& touched);
    // Takes `element` (an edge, or a vertex whose edges were taken) out of the graph and keeps
    // it; false, recording nothing, when the graph refuses.
    bool take(DirectedGraph& graph, GraphObject& element, TouchedElements& touched);
    // `element`'s label or attributes were changed; `before` is what they were.
    void contents(GraphObject& element, ElementContents before, TouchedElements& touched);

    // Replays the step backwards or forwards on the graph it was recorded on. False (and the
    // graph partly replayed) only when the graph no longer is as the record left it, which the
    // history's order rules out.
    bool undo(DirectedGraph& graph, TouchedElements& touched);
    bool redo(DirectedGraph& graph, TouchedElements& touched);

  private:
    struct Step;
    static bool putBack(DirectedGraph& graph, Step& step, TouchedElements& touched);
    static bool putOut(DirectedGraph& graph, Step& step, TouchedElements& touched);

    std::vector<std::unique_ptr<Step>> m_steps;
};

}  // namespace vellum
