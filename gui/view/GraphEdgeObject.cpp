#include "gui/view/GraphEdgeObject.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

#include "tpx/TPXtransform.h"

namespace vellum {

namespace {

constexpr int curveSteps = 12;       // segments of a bent edge
constexpr double longEdge = 3.0;     // from this length an edge also shows a middle arrowhead
constexpr double arrowHalf = 0.25;   // half the arrowhead's height
constexpr double loopRadius = 0.45;  // the circle a self-loop draws above its vertex

TPXp3 worldPosition(const TPXnode& node) {
    return TPXtransformPoint(node.worldMatrix(), TPXp3());
}

// How far from its centre an end object's surface lies, roughly: half its largest extent.
double radiusOf(const TPXnode& node) {
    const TPXp3& s = node.placement().scale;
    const double scale = std::max({std::abs(s.x()), std::abs(s.y()), std::abs(s.z())});
    if (const TPXgeometry* geometry = node.geometry(); geometry && !geometry->boundingBox().empty) {
        const TPXp3 extent = geometry->boundingBox().max - geometry->boundingBox().min;
        return 0.5 * std::max({extent.x(), extent.y(), extent.z()}) * scale;
    }
    return 0.375 * scale;
}

// The rotation that turns +y (the cone's axis) onto `direction`.
TPXquaternion towards(const TPXp3& direction) {
    const TPXp3 up(0, 1, 0);
    const TPXp3 d = direction.normalised();
    const TPXp3 axis = up.cross(d);
    const double angle = std::atan2(axis.length(), up.dot(d)) * 180.0 / 3.14159265359;
    if (axis.length() < 1e-12)
        return d.y() < 0 ? TPXquaternion::fromAxisAngle({1, 0, 0}, 180) : TPXquaternion();
    return TPXquaternion::fromAxisAngle(axis, angle);
}

}  // namespace

GraphEdgeObject::GraphEdgeObject(const TPXnode* source, const TPXnode* target,
                                 TPXref<TPXgeometry> arrowhead)
    : TPXnode(TPXkind::EdgeObject, "edge"),
      m_source(source),
      m_target(target),
      m_arrowhead(std::move(arrowhead)) {
    followEnds();
}

void GraphEdgeObject::setEnds(const TPXnode* source, const TPXnode* target) {
    m_source = source;
    m_target = target;
    followEnds();
}

void GraphEdgeObject::setColour(const TPXrgb& colour, double opacity) {
    m_colour = colour;
    m_opacity = opacity;
}

void GraphEdgeObject::setBend(const TPXp3& bend) {
    m_bend = bend;
    followEnds();
}

std::uint16_t GraphEdgeObject::nextStipplePattern() const {
    m_pattern = static_cast<std::uint16_t>((m_pattern << 1) | (m_pattern >> 15));
    return m_pattern;
}

TPXp3 GraphEdgeObject::pointAt(double t) const {
    const TPXp3 from = worldPosition(*m_source);
    if (m_source == m_target) {
        // A loop: a circle standing on its vertex, turned about y by the bend so that parallel
        // loops fan out.
        const double turn = std::atan2(m_bend.y(), m_bend.z());
        const double a = t * 2 * 3.14159265359;
        const TPXp3 centre = from + TPXp3(0, loopRadius + radiusOf(*m_source) * 0.5, 0);
        const double across = loopRadius * std::sin(a);
        return centre +
               TPXp3(across * std::cos(turn), -loopRadius * std::cos(a), across * std::sin(turn));
    }
    const TPXp3 to = worldPosition(*m_target);
    // The bend is read in the edge's own frame (z across the edge, y up from it), so that two
    // edges running opposite ways with the same bend vector curve to opposite sides.
    const TPXp3 along = (to - from).normalised();
    TPXp3 across = along.cross(TPXp3(0, 1, 0));
    if (across.length() < 1e-9)
        across = along.cross(TPXp3(1, 0, 0));
    across = across.normalised();
    const TPXp3 up = across.cross(along);
    const TPXp3 offset = up * m_bend.y() + across * m_bend.z() + along * m_bend.x();
    return from + (to - from) * t + offset * (4 * t * (1 - t));
}

void GraphEdgeObject::followEnds() {
    setPosition(pointAt(0.5));
}

void GraphEdgeObject::drawSelf(TPXdrawContext& context) const {
    glDisable(GL_LIGHTING);
    glColor4d(m_colour.r, m_colour.g, m_colour.b, m_opacity);
    if (m_opacity < 1.0) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    }
    glLineWidth(static_cast<GLfloat>(m_width));
    if (m_highlighted) {
        glEnable(GL_LINE_STIPPLE);
        const std::uint16_t pattern = context.picking ? m_pattern : nextStipplePattern();
        glLineStipple(3, pattern);
    }
    drawLine(context);
    glLineWidth(1.0f);
    glDisable(GL_LINE_STIPPLE);
    drawArrowheads(context);
    glDisable(GL_BLEND);
    glEnable(GL_LIGHTING);
}

void GraphEdgeObject::drawLine(const TPXdrawContext&) const {
    const TPXp3 origin = placement().position;
    const bool straight = m_source != m_target && m_bend.length() == 0.0;
    const int steps = straight ? 1 : curveSteps;
    glBegin(straight ? GL_LINES : GL_LINE_STRIP);
    for (int i = 0; i <= steps; ++i) {
        const TPXp3 p = pointAt(static_cast<double>(i) / steps) - origin;
        glVertex3d(p.x(), p.y(), p.z());
    }
    glEnd();
}

void GraphEdgeObject::drawArrowheads(TPXdrawContext& context) const {
    if (!m_arrowhead)
        return;
    const TPXp3 origin = placement().position;
    const TPXdrawStyle style = context.style;
    context.style = TPXdrawStyle::Solid;
    auto drawCone = [&](double t, double backOff) {
        // The cone stands at t along the line, pointing along it, its tip `backOff` short.
        const double dt = 1e-3;
        const TPXp3 tangent = pointAt(std::min(t + dt, 1.0)) - pointAt(std::max(t - dt, 0.0));
        if (tangent.length() < 1e-12)
            return;
        const TPXp3 direction = tangent.normalised();
        const TPXp3 centre = pointAt(t) - direction * (backOff + arrowHalf) - origin;
        TPXplacement place;
        place.position = centre;
        place.orientation = towards(direction);
        glPushMatrix();
        glMultMatrixd(place.matrix().data());
        m_arrowhead->draw(context);
        glPopMatrix();
    };
    if (m_source == m_target) {
        drawCone(0.75, -arrowHalf);
    } else {
        const double length = (worldPosition(*m_target) - worldPosition(*m_source)).length();
        const double reach = radiusOf(*m_target);
        // Where the line leaves the target's surface: the head sits just outside it.
        const double t = length > 0 ? std::clamp(1.0 - reach / length, 0.5, 1.0) : 1.0;
        drawCone(t, 0.0);
        if (length >= longEdge && !context.light)
            drawCone(0.5, -arrowHalf);
    }
    context.style = style;
}

}  // namespace vellum
