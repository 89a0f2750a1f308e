// EditingTool: what the mouse does to a graph shown in a canvas, by the toolbar's current tool:
// Select picks an object, Translate/Rotate/Scale drag one vertex as one undoable gesture, the
// insert tools put a vertex where the click meets the ground, Connect joins a source to a
// target. It hears the canvas's mouse events before the canvas navigates, and leaves the camera
// to the canvas whenever it does not use an event. The graph editor uses it, as will any editor
// that edits a GraphDocument in a canvas.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "gui/TPXCanvas.h"
#include "gui/edit/GraphDocument.h"

namespace vellum {

enum class EditMode {
    Select,
    Move,
    Rotate,
    Scale,
    InsertSphere,
    InsertCone,
    InsertCylinder,
    InsertCube,
    InsertUser,
    Connect
};

class EditingTool : public TPXCanvasMouseHandler {
  public:
    // Degrees of rotation per pixel dragged, and the scale's growth per pixel dragged upwards.
    static constexpr double degreesPerPixel = 0.5;
    static constexpr double scalePerPixel = 0.01;

    struct Hooks {
        // After every change of the document or the selection; the canvas is repainted anyway.
        std::function<void()> changed;
        // The model file of a user-defined vertex; none when the user cancels.
        std::function<std::optional<std::string>()> chooseModel;
        // A right click over an object, which the tool has selected; the point is the window
        // point of the click.
        std::function<void(const wxPoint&)> contextMenu;
    };

    EditingTool(GraphDocument& document, Hooks hooks);

    EditMode mode() const { return m_mode; }
    // Changing the mode cancels a gesture or a half-made connection.
    void setMode(EditMode mode);
    // Ends a gesture in progress without a trace, and forgets a connection's source (Escape).
    void cancel();
    // The source vertex of a connection waiting for its target, or null.
    DirectedGraphVertex* connectionSource() const { return m_source; }
    // The edge preview of a connection waiting for its target, in window points: from the
    // source to the mouse; none while nothing is previewed.
    struct Preview {
        wxPoint from, to;
    };
    const std::optional<Preview>& preview() const { return m_preview; }

    bool onCanvasMouse(TPXCanvas& canvas, const wxMouseEvent& event) override;

    // Where a click at window point (x, y) puts a new vertex: where its ray meets the ground
    // plane y = 0 in the perspective views and the top view, the origin in the elevation views
    // or when the ray runs parallel to or away from the ground.
    static TPXp3 insertionPoint(const TPXcamera& camera, TPXviewMode mode, double x, double y,
                                int width, int height);
    // The gesture's whole offset for a drag of (dx, dy) pixels (y downwards) in a viewport
    // `height` pixels high, `depth` units in front of the camera: a move follows the mouse in the
    // view plane, a rotation turns about y with horizontal and about x with vertical motion, a
    // scale grows with upward motion.
    static TPXp3 gestureOffset(Gesture gesture, const TPXcamera& camera, double dx, double dy,
                               int height, double depth);

    // Where the world point `point` appears in a viewport `width` x `height` pixels; none
    // behind the viewer.
    static std::optional<wxPoint> windowPoint(const TPXcamera& camera, const TPXp3& point,
                                              int width, int height);

  private:
    bool press(TPXCanvas& canvas, const wxPoint& at);
    bool startGesture(TPXCanvas& canvas, const wxPoint& at, Gesture gesture);
    void insertAt(TPXCanvas& canvas, const wxPoint& at);
    void connectAt(TPXCanvas& canvas, const wxPoint& at);
    // Draws the picture with the line from the connection's source to the mouse over it.
    void showPreview(TPXCanvas& canvas, const wxPoint& mouse);
    // The vertex under window point `at`, or null; selects what it picks.
    DirectedGraphVertex* vertexAt(TPXCanvas& canvas, const wxPoint& at);
    void changed(TPXCanvas& canvas);

    GraphDocument& m_document;
    Hooks m_hooks;
    EditMode m_mode = EditMode::Select;
    // A drag's start and depth while a gesture runs.
    std::optional<wxPoint> m_dragFrom;
    double m_depth = 1.0;
    DirectedGraphVertex* m_source = nullptr;  // cleared by cancel() before it could dangle
    std::optional<Preview> m_preview;
};

}  // namespace vellum
