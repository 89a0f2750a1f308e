#include "gui/EditingTool.h"

#include <wx/dcclient.h>

#include <cmath>

#include "graph/DirectedGraphVertex.h"

namespace vellum {
namespace {

std::optional<std::string> shapeOf(EditMode mode) {
    switch (mode) {
        case EditMode::InsertSphere:
            return "sphere";
        case EditMode::InsertCone:
            return "cone";
        case EditMode::InsertCylinder:
            return "cylinder";
        case EditMode::InsertCube:
            return "cube";
        default:
            return std::nullopt;
    }
}

std::optional<Gesture> gestureOf(EditMode mode) {
    switch (mode) {
        case EditMode::Move:
            return Gesture::Move;
        case EditMode::Rotate:
            return Gesture::Rotate;
        case EditMode::Scale:
            return Gesture::Scale;
        default:
            return std::nullopt;
    }
}

double dot(const TPXp3& a, const TPXp3& b) {
    return a.x() * b.x() + a.y() * b.y() + a.z() * b.z();
}

TPXray rayAt(const TPXCanvas& canvas, const wxPoint& at) {
    const wxSize size = canvas.GetClientSize();
    return canvas.camera().ray(at.x, at.y, size.x, size.y);
}

}  // namespace

EditingTool::EditingTool(GraphDocument& document, Hooks hooks)
    : m_document(document), m_hooks(std::move(hooks)) {}

void EditingTool::setMode(EditMode mode) {
    cancel();
    m_mode = mode;
}

void EditingTool::cancel() {
    if (m_document.gestureActive())
        m_document.cancelGesture();
    m_dragFrom.reset();
    m_source = nullptr;
    m_preview.reset();
}

bool EditingTool::onCanvasMouse(TPXCanvas& canvas, const wxMouseEvent& event) {
    const wxPoint at = event.GetPosition();
    if (event.RightDown()) {
        // Only over an object: elsewhere the right button pans as usual.
        const auto identity = canvas.pick(at.x, at.y);
        if (!identity || !m_hooks.contextMenu)
            return false;
        m_document.select(*identity);
        changed(canvas);
        m_hooks.contextMenu(at);
        return true;
    }
    if (event.LeftDown() && !event.ShiftDown())
        return press(canvas, at);
    if (m_source && event.Moving()) {
        showPreview(canvas, at);
        return false;  // the canvas still sees the mouse move
    }
    if (m_dragFrom && event.Dragging() && event.LeftIsDown()) {
        const wxSize size = canvas.GetClientSize();
        const TPXp3 offset =
            gestureOffset(*gestureOf(m_mode), canvas.camera(), at.x - m_dragFrom->x,
                          at.y - m_dragFrom->y, size.y, m_depth);
        m_document.updateGesture(offset);
        canvas.requestRepaint();
        return true;
    }
    if (m_dragFrom && event.LeftUp()) {
        m_dragFrom.reset();
        m_document.commitGesture();
        changed(canvas);
        return true;
    }
    return false;
}

bool EditingTool::press(TPXCanvas& canvas, const wxPoint& at) {
    if (m_mode == EditMode::Select) {
        const auto identity = canvas.pick(at.x, at.y);
        m_document.select(identity.value_or(0));
        changed(canvas);
        // A press on empty space still orbits the camera.
        return identity.has_value();
    }
    if (const auto gesture = gestureOf(m_mode))
        return startGesture(canvas, at, *gesture);
    if (m_mode == EditMode::Connect) {
        connectAt(canvas, at);
        return true;
    }
    insertAt(canvas, at);
    return true;
}

bool EditingTool::startGesture(TPXCanvas& canvas, const wxPoint& at, Gesture gesture) {
    DirectedGraphVertex* vertex = vertexAt(canvas, at);
    if (!vertex || !m_document.beginGesture(*vertex, gesture))
        return false;
    // The drag moves the object at the depth where it was grabbed, so it stays under the mouse.
    const TPXray ray = rayAt(canvas, at);
    const auto grabbed = CanvasHelpers::markPointOn(canvas.scene(), m_document.selected(), ray);
    const TPXcamera& camera = canvas.camera();
    m_depth = grabbed ? std::max(camera.nearPlane(), dot(*grabbed - camera.eye(), camera.forward()))
                      : 1.0;
    m_dragFrom = at;
    return true;
}

void EditingTool::insertAt(TPXCanvas& canvas, const wxPoint& at) {
    std::optional<std::string> shape = shapeOf(m_mode);
    if (!shape && m_mode == EditMode::InsertUser && m_hooks.chooseModel)
        shape = m_hooks.chooseModel();
    if (!shape)
        return;
    const wxSize size = canvas.GetClientSize();
    const TPXp3 where =
        insertionPoint(canvas.camera(), canvas.viewMode(), at.x, at.y, size.x, size.y);
    if (DirectedGraphVertex* vertex = m_document.insertVertex(*shape, where)) {
        if (const TPXnode* object = m_document.scene().objectOf(*vertex))
            m_document.select(object->identity());
    }
    changed(canvas);
}

void EditingTool::connectAt(TPXCanvas& canvas, const wxPoint& at) {
    DirectedGraphVertex* vertex = vertexAt(canvas, at);
    m_preview.reset();
    if (!vertex) {
        m_source = nullptr;  // a click beside every vertex starts over
    } else if (!m_source) {
        m_source = vertex;
    } else {
        DirectedGraphVertex* source = m_source;
        m_source = nullptr;
        if (DirectedGraphEdge* edge = m_document.connect(*source, *vertex)) {
            if (const GraphEdgeObject* object = m_document.scene().objectOf(*edge))
                m_document.select(object->identity());
        }
    }
    changed(canvas);
}

void EditingTool::showPreview(TPXCanvas& canvas, const wxPoint& mouse) {
    const TPXnode* object = m_document.scene().objectOf(*m_source);
    const wxSize size = canvas.GetClientSize();
    const auto from =
        object ? windowPoint(canvas.camera(), object->placement().position, size.x, size.y)
               : std::nullopt;
    if (!from)
        return;
    m_preview = Preview{*from, mouse};
    // Drawn over the finished picture: the scene and its history stay as they are.
    canvas.paintNow();
    wxClientDC dc(&canvas);
    dc.SetPen(wxPen(*wxYELLOW, 2, wxPENSTYLE_SHORT_DASH));
    dc.DrawLine(m_preview->from, m_preview->to);
}

DirectedGraphVertex* EditingTool::vertexAt(TPXCanvas& canvas, const wxPoint& at) {
    const auto identity = canvas.pick(at.x, at.y);
    m_document.select(identity.value_or(0));
    GraphObject* element = identity ? m_document.elementOf(*identity) : nullptr;
    if (!element || element->kind() != GraphObjectKind::Vertex)
        return nullptr;
    return static_cast<DirectedGraphVertex*>(element);
}

void EditingTool::changed(TPXCanvas& canvas) {
    canvas.requestRepaint();
    if (m_hooks.changed)
        m_hooks.changed();
}

TPXp3 EditingTool::insertionPoint(const TPXcamera& camera, TPXviewMode mode, double x, double y,
                                  int width, int height) {
    if (mode == TPXviewMode::Front || mode == TPXviewMode::Left)
        return {};
    const TPXray ray = camera.ray(x, y, width, height);
    // Rays that never come down to the ground (or only far behind the viewer) put it at the
    // origin rather than at infinity.
    if (std::abs(ray.direction.y()) < 1e-9)
        return {};
    const double t = -ray.origin.y() / ray.direction.y();
    if (t <= 0)
        return {};
    const TPXp3 point = ray.origin + ray.direction * t;
    return {point.x(), 0.0, point.z()};
}

std::optional<wxPoint> EditingTool::windowPoint(const TPXcamera& camera, const TPXp3& point,
                                                int width, int height) {
    const TPXp3 seen = point - camera.eye();
    const double depth = dot(seen, camera.forward());
    if (depth <= camera.nearPlane())
        return std::nullopt;
    const double scale = camera.pixelsPerUnit(std::max(height, 1)) / depth;
    return wxPoint(static_cast<int>(std::lround(width / 2.0 + dot(seen, camera.right()) * scale)),
                   static_cast<int>(std::lround(height / 2.0 - dot(seen, camera.up()) * scale)));
}

TPXp3 EditingTool::gestureOffset(Gesture gesture, const TPXcamera& camera, double dx, double dy,
                                 int height, double depth) {
    switch (gesture) {
        case Gesture::Move: {
            const double unitsPerPixel = depth / camera.pixelsPerUnit(std::max(height, 1));
            return camera.right() * (dx * unitsPerPixel) - camera.up() * (dy * unitsPerPixel);
        }
        case Gesture::Rotate:
            return {dy * degreesPerPixel, dx * degreesPerPixel, 0.0};
        case Gesture::Scale: {
            const double factor = std::exp(-dy * scalePerPixel);
            return {factor, factor, factor};
        }
    }
    return {};
}

}  // namespace vellum
