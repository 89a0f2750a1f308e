#include "gui/GraphPane.h"

namespace vellum {

GraphPane::GraphPane(wxWindow* parent, GraphDocument& document, EditingTool::Hooks hooks,
                     std::function<void()> pressed)
    : m_document(document), m_tool(document, std::move(hooks)), m_pressed(std::move(pressed)) {
    m_canvas = new TPXCanvas(parent);
    m_canvas->setMouseHandler(this);
    sceneReplaced();
}

GraphPane::~GraphPane() {
    // Whatever the editor gave the canvas may refer to the editor, which goes before the canvas.
    m_canvas->setMouseHandler(nullptr);
    m_canvas->setScene(nullptr);
    m_canvas->setBoundsProvider({});
    m_canvas->setCameraListener({});
}

void GraphPane::sceneReplaced() {
    m_canvas->setScene(m_document.scene().root());
    m_canvas->requestRepaint();
}

void GraphPane::setView(TPXviewMode mode) {
    m_canvas->setViewMode(mode);
    m_canvas->requestRepaint();
}

void GraphPane::zoomToFit() {
    m_canvas->zoomToFit();
    m_canvas->requestRepaint();
}

bool GraphPane::onCanvasMouse(TPXCanvas& canvas, const wxMouseEvent& event) {
    if (m_pressed && event.ButtonDown())
        m_pressed();
    return m_tool.onCanvasMouse(canvas, event);
}

}  // namespace vellum
