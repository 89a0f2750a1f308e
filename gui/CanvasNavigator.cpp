#include "gui/CanvasNavigator.h"

#include <algorithm>
#include <cmath>

#include "tpx/TPXtransform.h"

namespace vellum {

namespace {

// Where the camera looks at in an empty scene, and the shortest Walk and Fly step.
constexpr double kEmptySceneDistance = 10.0;
constexpr double kMinimumStep = 0.1;
// A step is this fraction of the scene's diagonal.
constexpr double kStepsAcrossScene = 50.0;

const std::string kPerspective = "perspective";

TPXmatrix rotationOf(const TPXp3& angles) {
    TPXcamera turned;
    turned.setAngles(angles);
    return turned.viewMatrix();
}

double clampTilt(double degrees) {
    return std::clamp(degrees, -CanvasNavigator::maxTilt, CanvasNavigator::maxTilt);
}

// `v` in the ground plane (y dropped), of unit length; `fallback` when `v` is vertical.
TPXp3 level(const TPXp3& v, const TPXp3& fallback) {
    const TPXp3 flat(v.x(), 0, v.z());
    return flat.length() > 1e-9 ? flat.normalised() : fallback;
}

}  // namespace

CanvasNavigator::CanvasNavigator() {
    for (const std::string& name : TPXcamera::standardNames())
        m_cameras.emplace(name, *TPXcamera::standard(name));
}

const std::string& CanvasNavigator::cameraName() const {
    static const std::string names[] = {"top", "front", "left"};
    switch (m_mode) {
        case TPXviewMode::Top:
            return names[0];
        case TPXviewMode::Front:
            return names[1];
        case TPXviewMode::Left:
            return names[2];
        default:
            return kPerspective;
    }
}

TPXcamera& CanvasNavigator::camera() {
    return m_cameras.at(cameraName());
}

const TPXcamera& CanvasNavigator::camera() const {
    return m_cameras.at(cameraName());
}

TPXcamera* CanvasNavigator::camera(const std::string& name) {
    const auto found = m_cameras.find(name);
    return found == m_cameras.end() ? nullptr : &found->second;
}

bool CanvasNavigator::selectCamera(const std::string& name) {
    static const std::map<std::string, TPXviewMode> modes{{"perspective", TPXviewMode::Perspective},
                                                          {"top", TPXviewMode::Top},
                                                          {"front", TPXviewMode::Front},
                                                          {"left", TPXviewMode::Left}};
    const auto found = modes.find(name);
    if (found == modes.end())
        return false;
    m_mode = found->second;
    return true;
}

TPXp3 CanvasNavigator::focus() const {
    if (!m_bounds.empty)
        return m_bounds.centre();
    const TPXcamera& current = camera();
    return current.eye() + current.forward() * kEmptySceneDistance;
}

double CanvasNavigator::depth() const {
    const TPXcamera& current = camera();
    return std::max((focus() - current.eye()).dot(current.forward()), 1.0);
}

double CanvasNavigator::stepLength() const {
    if (m_bounds.empty)
        return kMinimumStep;
    return std::max((m_bounds.max - m_bounds.min).length() / kStepsAcrossScene, kMinimumStep);
}

bool CanvasNavigator::drag(TPXdrag kind, double dx, double dy, int height) {
    if (kind == TPXdrag::Secondary) {
        pan(dx, dy, height);
        return true;
    }
    switch (m_mode) {
        case TPXviewMode::Perspective:
            orbit(dx, dy);
            return true;
        case TPXviewMode::Walk:
        case TPXviewMode::Fly:
            turn(dx, dy);
            return true;
        default:
            pan(dx, dy, height);
            return true;
    }
}

void CanvasNavigator::orbit(double dx, double dy) {
    TPXcamera& current = camera();
    const TPXp3 centre = focus();
    const TPXp3 before = current.angles();
    const TPXp3 after(clampTilt(before.x() + dy * degreesPerPixel),
                      before.y() + dx * degreesPerPixel, before.z());
    // The centre keeps its place in the picture: it lies where it lay in eye space, seen
    // through the new orientation.
    const TPXp3 inEye = TPXtransformPoint(rotationOf(before), centre - current.eye());
    const TPXp3 offset = TPXtransformPoint(*TPXinverseAffine(rotationOf(after)), inEye);
    current.setAngles(after);
    current.setPosition(-(centre - offset));
}

void CanvasNavigator::turn(double dx, double dy) {
    TPXcamera& current = camera();
    const TPXp3 angles = current.angles();
    // The eye stays where it is: only the orientation changes (position is the eye negated).
    current.setAngles(TPXp3(clampTilt(angles.x() + dy * degreesPerPixel),
                            angles.y() + dx * degreesPerPixel, angles.z()));
}

void CanvasNavigator::pan(double dx, double dy, int height) {
    TPXcamera& current = camera();
    // What lies at the focus's depth follows the mouse.
    const double unitsPerPixel = depth() / current.pixelsPerUnit(height);
    const TPXp3 eye = current.eye() - current.right() * (dx * unitsPerPixel) +
                      current.up() * (dy * unitsPerPixel);
    current.setPosition(-eye);
}

void CanvasNavigator::zoom(double notches, double x, double y, int width, int height) {
    TPXcamera& current = camera();
    current.setViewport(width, height);
    const TPXray ray = current.ray(x, y, width, height);
    // The distance along the ray to the plane through the focus that faces the camera; each
    // notch covers a fixed fraction of what is left, so zooming in never overshoots.
    const double along = depth() / std::max(ray.direction.dot(current.forward()), 1e-3);
    const double fraction = 1.0 - std::pow(1.0 - zoomPerNotch, notches);
    current.setPosition(-(current.eye() + ray.direction * (along * fraction)));
}

bool CanvasNavigator::move(TPXmove direction) {
    if (m_mode != TPXviewMode::Walk && m_mode != TPXviewMode::Fly)
        return false;
    const bool fly = m_mode == TPXviewMode::Fly;
    if (!fly && (direction == TPXmove::Up || direction == TPXmove::Down))
        return false;
    TPXcamera& current = camera();
    // Walking keeps the eye's height: it goes along the heading, not where the eye looks.
    const TPXp3 ahead = fly ? current.forward() : level(current.forward(), -current.up());
    const TPXp3 aside = fly ? current.right() : level(current.right(), TPXp3(1, 0, 0));
    const TPXp3 step = [&] {
        switch (direction) {
            case TPXmove::Forward:
                return ahead;
            case TPXmove::Back:
                return -ahead;
            case TPXmove::Left:
                return -aside;
            case TPXmove::Right:
                return aside;
            case TPXmove::Up:
                return TPXp3(0, 1, 0);
            case TPXmove::Down:
                break;
        }
        return TPXp3(0, -1, 0);
    }();
    current.setPosition(-(current.eye() + step * stepLength()));
    return true;
}

bool CanvasNavigator::zoomToFit(int width, int height) {
    if (m_bounds.empty)
        return false;
    TPXcamera& current = camera();
    current.setViewport(width, height);
    TPXboundingBox framed = m_bounds;
    const TPXp3 margin = (m_bounds.max - m_bounds.min) * fitMargin;
    framed.min -= margin;
    framed.max += margin;
    current.fit(framed);
    return true;
}

}  // namespace vellum
