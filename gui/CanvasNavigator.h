// CanvasNavigator: the cameras of a canvas and how the mouse and keys move them. It holds the
// four standard cameras, knows which view is current, and turns drags, wheel notches and
// movement keys into camera motion the way users of 3D programs expect: orbit and pan in the
// perspective view, pan and zoom in the elevation views, walking on the ground and flying. It
// knows no window system: the canvas translates its events into these calls.
#pragma once

#include <map>
#include <string>

#include "gui/view/TPXcamera.h"
#include "tpx/TPXgeometry.h"

namespace vellum {

// The views of the toolbar's view buttons. Walk and Fly move the perspective camera.
enum class TPXviewMode { Perspective, Top, Front, Left, Walk, Fly };

// What a drag does: the primary drag (left button) orbits, pans or turns depending on the view;
// the secondary drag (middle or right button, or the left with Shift) always pans.
enum class TPXdrag { Primary, Secondary };

// The movement keys of Walk and Fly.
enum class TPXmove { Forward, Back, Left, Right, Up, Down };

class CanvasNavigator {
  public:
    static constexpr double degreesPerPixel = 0.4;
    // Each wheel notch brings the camera this fraction of the way to what it looks at.
    static constexpr double zoomPerNotch = 0.15;
    // Zoom-to-fit leaves this fraction of the scene's size free on each side.
    static constexpr double fitMargin = 0.1;
    // The tilt of orbiting and turning stays within this many degrees of level, so the view
    // never flips over the pole.
    static constexpr double maxTilt = 89.0;

    // The four standard cameras, the perspective view current.
    CanvasNavigator();

    TPXviewMode mode() const { return m_mode; }
    void setMode(TPXviewMode mode) { m_mode = mode; }
    // The camera the current view draws through.
    TPXcamera& camera();
    const TPXcamera& camera() const;
    // The standard camera of that name, or null.
    TPXcamera* camera(const std::string& name);
    // The name of the current view's camera ("perspective" for Walk and Fly).
    const std::string& cameraName() const;
    // Makes `name` current: the standard names switch to their view (Perspective for
    // "perspective"); false, with nothing changed, for any other name.
    bool selectCamera(const std::string& name);

    // The box the scene occupies in world space: orbiting turns about its centre, and walking
    // and panning scale their steps with its size. An empty box means an empty scene.
    void setSceneBounds(const TPXboundingBox& bounds) { m_bounds = bounds; }

    // A drag by dx, dy pixels (y downwards) in a viewport `height` pixels high; false when the
    // current view does nothing with that drag.
    bool drag(TPXdrag kind, double dx, double dy, int height);
    // Wheel notches at window point (x, y) of a width x height viewport: positive notches come
    // closer to what lies under the point, negative ones move away.
    void zoom(double notches, double x, double y, int width, int height);
    // One step of a movement key; false outside Walk and Fly, and for Up and Down in Walk.
    bool move(TPXmove direction);
    // Keeps the current camera's direction and moves it back or forth until the whole scene,
    // with a margin, is in view of a width x height viewport; false for an empty scene.
    bool zoomToFit(int width, int height);

    // The length of one Walk or Fly step.
    double stepLength() const;

  private:
    // What the camera turns about and pans at: the scene's centre, or a point ahead of the
    // camera in an empty scene.
    TPXp3 focus() const;
    // The distance from the camera to the plane through the focus facing it, at least 1.
    double depth() const;
    void orbit(double dx, double dy);
    void pan(double dx, double dy, int height);
    void turn(double dx, double dy);

    std::map<std::string, TPXcamera> m_cameras;
    TPXviewMode m_mode = TPXviewMode::Perspective;
    TPXboundingBox m_bounds;
};

}  // namespace vellum
