// TPXcamera: where a scene is seen from and how it is projected. A camera holds a position (a
// translation applied to the world), three orientation angles in degrees (about x, then y, then
// z), a vertical field of view, an aspect ratio and the near and far planes. It sets the OpenGL
// matrices for drawing and for picking, and answers the geometry questions of the canvas:
// the viewer's place and directions, the ray through a window point, a placement that shows a
// whole box. The four standard cameras are "perspective", "top", "front" and "left".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tpx/TPXdraw.h"
#include "tpx/TPXgeometry.h"
#include "tpx/TPXmatrix.h"
#include "tpx/TPXp3.h"

namespace vellum {

// A half-line in world space: the points origin + t * direction for t >= 0.
struct TPXray {
    TPXp3 origin;
    TPXp3 direction;  // of unit length
};

class TPXcamera {
  public:
    // Looks along -z from the origin: field of view 45, aspect 1, near 0.1, far 1000.
    TPXcamera() = default;

    // The standard camera of that name ("perspective", "top", "front" or "left"), its aspect
    // 1; none for any other name.
    static std::optional<TPXcamera> standard(const std::string& name);
    static const std::vector<std::string>& standardNames();

    const TPXp3& position() const { return m_position; }
    void setPosition(const TPXp3& position) { m_position = position; }
    const TPXp3& angles() const { return m_angles; }
    void setAngles(const TPXp3& degrees) { m_angles = degrees; }
    double fieldOfView() const { return m_fieldOfView; }
    void setFieldOfView(double degrees) { m_fieldOfView = degrees; }
    double aspect() const { return m_aspect; }
    void setAspect(double aspect) { m_aspect = aspect; }
    double nearPlane() const { return m_near; }
    double farPlane() const { return m_far; }
    void setPlanes(double nearPlane, double farPlane);
    // The aspect of a viewport of that size; a height of 0 (a window not yet laid out) counts
    // as 1, so there is no division by zero.
    void setViewport(int width, int height);

    // World to eye space: Rx * Ry * Rz * T(position).
    TPXmatrix viewMatrix() const;
    // Eye to clip space, as gluPerspective makes it.
    TPXmatrix projectionMatrix() const;
    // The viewer in world space, and the directions of the picture's right, up and depth
    // (forward: where the camera looks), each of unit length.
    TPXp3 eye() const;
    TPXp3 right() const;
    TPXp3 up() const;
    TPXp3 forward() const;
    // Pixels covered by one world unit at distance 1, for a viewport `height` pixels high.
    double pixelsPerUnit(int height) const;

    // With a context current: the projection identity then gluPerspective; the model-view
    // identity, rotated about x, y and z and translated by the position; then the lights
    // (TPXsetLights). The model-view matrix is left holding the view.
    void apply(const std::vector<TPXlight>& lights) const;
    // The same for a selection pass: multiplies the projection the picking step has set up
    // instead of replacing it, and sets no lights.
    void applyForPicking() const;

    // Keeps the orientation and moves the camera so that it looks at the centre of `box`
    // (world space) from just far enough to have all of it in view; extends the far plane when
    // the box would reach beyond it. An empty box changes nothing.
    void fit(const TPXboundingBox& box);

    // The ray from the viewer through the window point (x, y) of a viewport `width` x `height`
    // pixels, y counted from the top as window systems do.
    TPXray ray(double x, double y, int width, int height) const;

  private:
    void applyView() const;

    TPXp3 m_position;
    TPXp3 m_angles;
    double m_fieldOfView = 45.0;
    double m_aspect = 1.0;
    double m_near = 0.1;
    double m_far = 1000.0;
};

}  // namespace vellum
