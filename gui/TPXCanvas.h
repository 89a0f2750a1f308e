// TPXCanvas: the OpenGL window a scene is shown in, by the graph editor, the rule editor and the
// interpreter frame. It owns the GL context (double-buffered RGBA, 16 colour and 16 depth bits),
// draws the scene through TPXrenderer (the same drawing as offscreen pictures) with the ground
// and mark helpers, picks objects under the mouse, takes screenshots, and moves its cameras with
// the mouse and keys (CanvasNavigator). The scene is its owner's: the canvas only reads it, under
// the lock the owner shares with a worker thread that may change it.
#pragma once

#include <wx/glcanvas.h>
#include <wx/timer.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "gui/CanvasHelpers.h"
#include "gui/CanvasNavigator.h"
#include "gui/view/TPXpicker.h"
#include "gui/view/TPXrenderer.h"
#include "tpx/TPXimage.h"

namespace vellum {

class TPXCanvas;

// Whoever edits what a canvas shows (the graph editor) hears its mouse events first.
class TPXCanvasMouseHandler {
  public:
    virtual ~TPXCanvasMouseHandler() = default;
    // Every mouse event over the canvas (buttons, motion, wheel), before the canvas navigates
    // with it; true when the handler used the event, and the canvas then leaves its camera alone.
    virtual bool onCanvasMouse(TPXCanvas& canvas, const wxMouseEvent& event) = 0;
};

// How a canvas is made; the defaults are what every frame uses.
struct TPXCanvasSetup {
    // Double-buffered RGBA pixels, at least 16 colour and 16 depth bits, in a window.
    static wxGLAttributes standardPixelFormat();

    wxGLAttributes pixelFormat = standardPixelFormat();
    // The context's attributes; none takes the platform's legacy context, which the scene's
    // display lists need.
    std::optional<wxGLContextAttrs> contextAttributes;
    // Tells the user that the canvas cannot draw; null shows a message box.
    std::function<void(const wxString& message, const wxString& caption)> report;
};

class TPXCanvas : public wxGLCanvas {
  public:
    static constexpr const char* vrNotice = "*** VR Interface disabled ***";
    // How long after the camera's last move the exact picture replaces the light one.
    static constexpr int stillAfterMs = 200;

    // A canvas in `parent`. When the pixel format cannot be had or set, says so through
    // setup.report ("ChoosePixelFormat failed." or "SetPixelFormat failed.", titled "Error")
    // and becomes a canvas without a context, which draws nothing.
    explicit TPXCanvas(wxWindow* parent, TPXCanvasSetup setup = {});
    ~TPXCanvas() override;

    // Whether the canvas has a GL context and so draws.
    bool hasContext() const { return m_context != nullptr; }

    // The scene to show: `root` and its siblings, not owned; null shows none. The owner keeps it
    // alive until it sets another or destroys the canvas.
    void setScene(const TPXnode* root);
    const TPXnode* scene() const { return m_scene; }
    // Where the scene lies, for orbiting, walking and zoom-to-fit; by default the bounds of
    // everything the scene draws. Called under the lock.
    void setBoundsProvider(std::function<TPXboundingBox()> bounds) { m_bounds = std::move(bounds); }
    // The lock a worker thread holds while it changes the scene; null: none. Painting, picking
    // and screenshots take it.
    void setLock(std::mutex* lock) { m_lock = lock; }
    // Asks for a repaint from any thread; requests made before the paint come as one.
    void requestRepaint();

    // Cameras and views.
    CanvasNavigator& navigator() { return m_navigator; }
    TPXviewMode viewMode() const { return m_navigator.mode(); }
    void setViewMode(TPXviewMode mode);
    // Switches to the standard camera `name`; false for other names.
    bool selectCamera(const std::string& name);
    const TPXcamera& camera() const { return m_navigator.camera(); }
    // Moves the current camera until the whole scene is in view; false for an empty scene.
    bool zoomToFit();
    // Called after each time the user moves the camera (drag, wheel, keys); empty: nobody.
    void setCameraListener(std::function<void()> moved) { m_cameraListener = std::move(moved); }
    // How often the user has moved the camera (drag, wheel, keys) since the canvas was made.
    unsigned long cameraMoves() const { return m_cameraMoves; }
    // Whether the camera moved within the last stillAfterMs: the canvas then draws the light
    // picture.
    bool moving() const { return m_moving; }

    // The identity of the object under window point (x, y), or none; makes the context current
    // and leaves the picture to be drawn again.
    std::optional<std::uint32_t> pick(int x, int y);
    // Shows the mark on the object `identity` where the ray through window point (x, y) meets
    // it; false, with the mark unchanged, when the scene has no such object.
    bool markAt(std::uint32_t identity, int x, int y);
    void clearMark();

    CanvasHelpers& helpers() { return m_helpers; }
    void setGroundMode(TPXgroundMode mode);
    void setBackground(const TPXrgb& colour);
    const TPXrgb& background() const { return m_renderer.look().background; }
    // The VR interface; while it is disabled the canvas shows vrNotice at its top-left corner.
    bool vrEnabled() const { return m_vrEnabled; }
    void setVrEnabled(bool enabled);

    // Draws the exact picture, reads it from the back buffer before showing it, with the notice
    // over it as on screen while the VR interface is disabled; an empty image without a context
    // or while the window is not shown.
    TPXimage screenshot();

    // The handler that hears mouse events first (not owned); null: none.
    void setMouseHandler(TPXCanvasMouseHandler* handler) { m_mouseHandler = handler; }

    // Leaves no canvas's context current on this thread, so that an offscreen picture (whose
    // context is of another kind) can be drawn; the next paint or pick makes its own current.
    static void releaseCurrentContext();

    // Paints now rather than at the next paint event (what the paint handler does).
    void paintNow();

    // The paints made since the last reset and how long each held the scene lock (drawing and
    // swap), for benchmarks. GUI thread only: plain members, updated by paintNow().
    struct PaintStatistics {
        long paints = 0;
        double seconds = 0.0;     // of all of them together
        double maxSeconds = 0.0;  // of the longest
    };
    const PaintStatistics& paintStatistics() const { return m_paintStatistics; }
    void resetPaintStatistics() { m_paintStatistics = {}; }

  private:
    TPXCanvas(wxWindow* parent, TPXCanvasSetup& setup, bool formatSupported);
    void createContext(const TPXCanvasSetup& setup);
    std::unique_lock<std::mutex> lockScene() const;
    bool makeCurrent();
    // The picture's size in pixels, and a window point in pixels.
    wxSize pictureSize() const;
    wxPoint toPixels(const wxPoint& point) const;
    TPXboundingBox sceneBounds() const;
    // Draws the scene and helpers into the back buffer; the context must be current.
    void drawPicture(const wxSize& size, bool light);
    void drawNotice(wxDC& dc) const;
    void addNotice(TPXimage& image) const;
    void cameraMoved();
    unsigned long m_cameraMoves = 0;
    std::function<void()> m_cameraListener;

    void onPaint(wxPaintEvent& event);
    void onMouse(wxMouseEvent& event);
    void onKey(wxKeyEvent& event);
    void onStill(wxTimerEvent& event);

    std::function<void(const wxString&, const wxString&)> m_report;
    std::unique_ptr<wxGLContext> m_context;  // null when the pixel format failed
    TPXrenderer m_renderer;
    TPXpicker m_picker;
    CanvasNavigator m_navigator;
    CanvasHelpers m_helpers;
    const TPXnode* m_scene = nullptr;
    std::function<TPXboundingBox()> m_bounds;
    std::mutex* m_lock = nullptr;
    std::atomic<bool> m_repaintPosted{false};
    PaintStatistics m_paintStatistics;
    TPXCanvasMouseHandler* m_mouseHandler = nullptr;
    bool m_vrEnabled = true;
    bool m_moving = false;
    wxTimer m_still;
    // The last window point of a drag in progress; none when no button is down.
    std::optional<wxPoint> m_dragFrom;
};

}  // namespace vellum
