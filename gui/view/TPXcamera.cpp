#include "gui/view/TPXcamera.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cmath>

#include "tpx/TPXquaternion.h"
#include "tpx/TPXtransform.h"

namespace vellum {

namespace {

constexpr double kRadians = 3.14159265358979323846 / 180.0;
// The free camera starts above, in front of and to the right of the origin, looking down at it.
constexpr double kObliqueDown = 30.0;
constexpr double kObliqueTurn = -45.0;
constexpr double kStandardDistance = 10.0;

double aspectOf(int width, int height) {
    return static_cast<double>(width) / static_cast<double>(std::max(height, 1));
}

}  // namespace

std::optional<TPXcamera> TPXcamera::standard(const std::string& name) {
    TPXcamera camera;
    if (name == "perspective") {
        camera.m_angles = TPXp3(kObliqueDown, kObliqueTurn, 0);
        camera.m_position = camera.forward() * kStandardDistance;
    } else if (name == "top") {
        camera.m_angles = TPXp3(90, 0, 0);
        camera.m_position = TPXp3(0, -10, 0);
    } else if (name == "front") {
        camera.m_position = TPXp3(0, 0, -10);
    } else if (name == "left") {
        camera.m_angles = TPXp3(0, 90, 0);
        camera.m_position = TPXp3(10, 0, 0);
    } else {
        return std::nullopt;
    }
    return camera;
}

const std::vector<std::string>& TPXcamera::standardNames() {
    static const std::vector<std::string> names{"perspective", "top", "front", "left"};
    return names;
}

void TPXcamera::setPlanes(double nearPlane, double farPlane) {
    m_near = nearPlane;
    m_far = farPlane;
}

void TPXcamera::setViewport(int width, int height) {
    m_aspect = aspectOf(width, height);
}

TPXmatrix TPXcamera::viewMatrix() const {
    return TPXrotationMatrix(TPXquaternion::fromAngles(m_angles)) * TPXtranslation(m_position);
}

TPXmatrix TPXcamera::projectionMatrix() const {
    const double f = 1.0 / std::tan(m_fieldOfView * kRadians / 2.0);
    TPXmatrix m(4, 4);
    m(0, 0) = f / m_aspect;
    m(1, 1) = f;
    m(2, 2) = (m_far + m_near) / (m_near - m_far);
    m(2, 3) = 2.0 * m_far * m_near / (m_near - m_far);
    m(3, 2) = -1.0;
    return m;
}

TPXp3 TPXcamera::eye() const {
    // The view maps the eye to the origin: R (eye + position) = 0.
    return -m_position;
}

TPXp3 TPXcamera::right() const {
    const TPXrotation r = TPXquaternion::fromAngles(m_angles).toRotation();
    return {r[0][0], r[0][1], r[0][2]};
}

TPXp3 TPXcamera::up() const {
    const TPXrotation r = TPXquaternion::fromAngles(m_angles).toRotation();
    return {r[1][0], r[1][1], r[1][2]};
}

TPXp3 TPXcamera::forward() const {
    const TPXrotation r = TPXquaternion::fromAngles(m_angles).toRotation();
    return {-r[2][0], -r[2][1], -r[2][2]};
}

double TPXcamera::pixelsPerUnit(int height) const {
    return std::max(height, 1) / (2.0 * std::tan(m_fieldOfView * kRadians / 2.0));
}

void TPXcamera::applyView() const {
    gluPerspective(m_fieldOfView, m_aspect, m_near, m_far);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotated(m_angles.x(), 1, 0, 0);
    glRotated(m_angles.y(), 0, 1, 0);
    glRotated(m_angles.z(), 0, 0, 1);
    glTranslated(m_position.x(), m_position.y(), m_position.z());
}

void TPXcamera::apply(const std::vector<TPXlight>& lights) const {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    applyView();
    TPXsetLights(lights, viewMatrix());
}

void TPXcamera::applyForPicking() const {
    glMatrixMode(GL_PROJECTION);
    applyView();
}

void TPXcamera::fit(const TPXboundingBox& box) {
    if (box.empty)
        return;
    const double radius = std::max((box.max - box.min).length() / 2.0, 1e-6);
    const double halfHeight = m_fieldOfView * kRadians / 2.0;
    const double halfWidth = std::atan(std::tan(halfHeight) * m_aspect);
    const double half = std::min(halfHeight, halfWidth);
    // The sphere round the box touches the narrower pair of sides of the view.
    const double distance = std::max(radius / std::sin(half), radius + 2.0 * m_near);
    m_position = -(box.centre() - forward() * distance);
    if (distance + radius > m_far)
        m_far = (distance + radius) * 1.1;
}

TPXray TPXcamera::ray(double x, double y, int width, int height) const {
    const double spread = std::tan(m_fieldOfView * kRadians / 2.0);
    const double across = (2.0 * x / std::max(width, 1) - 1.0) * spread * aspectOf(width, height);
    const double upward = (1.0 - 2.0 * y / std::max(height, 1)) * spread;
    return {eye(), (right() * across + up() * upward + forward()).normalised()};
}

}  // namespace vellum
