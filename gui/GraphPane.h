// GraphPane: one edited graph in one canvas, the pairing every editor repeats: a TPXCanvas
// showing a GraphDocument's scene and an EditingTool that turns the canvas's mouse events into
// the document's commands. An editor with two sides has two panes; a press of a mouse button in
// a pane's canvas makes that pane the one the editor's toolbar acts on.
#pragma once

#include <functional>

#include "gui/EditingTool.h"
#include "gui/TPXCanvas.h"
#include "gui/edit/GraphDocument.h"

namespace vellum {

class GraphPane : public TPXCanvasMouseHandler {
  public:
    // The canvas is a child window of `parent`, owned by it. `pressed` (may be empty) hears
    // every button press in the canvas before the tool does.
    GraphPane(wxWindow* parent, GraphDocument& document, EditingTool::Hooks hooks,
              std::function<void()> pressed = {});
    // Leaves the canvas without a scene, a mouse handler, a bounds provider and a camera
    // listener: it is destroyed after the pane.
    ~GraphPane() override;
    GraphPane(const GraphPane&) = delete;
    GraphPane& operator=(const GraphPane&) = delete;

    TPXCanvas& canvas() { return *m_canvas; }
    EditingTool& tool() { return m_tool; }
    GraphDocument& document() { return m_document; }

    // The canvas shows the document's scene again (after load() or newGraph() made a new one).
    void sceneReplaced();
    void setView(TPXviewMode mode);
    void zoomToFit();

    bool onCanvasMouse(TPXCanvas& canvas, const wxMouseEvent& event) override;

  private:
    GraphDocument& m_document;
    EditingTool m_tool;
    std::function<void()> m_pressed;
    TPXCanvas* m_canvas;  // child window of the parent
};

}  // namespace vellum
