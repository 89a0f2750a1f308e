#include "gui/view/GraphEdgeObject.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

#include "tpx/TPXdraw.h"
#include "tpx/TPXflatBatch.h"
#include "tpx/TPXtransform.h"

namespace vellum {

namespace {

constexpr double longEdge = 3.0;     // from this length an edge also shows a middle arrowhead
constexpr double arrowHalf = 0.25;   // half the arrowhead's height
constexpr double arrowRadius = 0.2;  // the radius of its base
constexpr double loopRadius = 0.45;  // the circle a self-loop draws above its vertex

TPXp3 worldPosition(const TPXnode& node) {
    return node.worldPoint(TPXp3());
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
    if (m_source == m_target) {
        // A loop: a circle standing on its vertex, turned about y by the bend so that parallel
        // loops fan out.
        const double turn = std::atan2(m_bend.y(), m_bend.z());
        const double a = t * 2 * 3.14159265359;
        const TPXp3 centre = m_from + TPXp3(0, loopRadius + m_sourceRadius * 0.5, 0);
        const double across = loopRadius * std::sin(a);
        return centre +
               TPXp3(across * std::cos(turn), -loopRadius * std::cos(a), across * std::sin(turn));
    }
    return m_from + (m_to - m_from) * t + m_offset * (4 * t * (1 - t));
}

void GraphEdgeObject::followEnds() {
    m_from = worldPosition(*m_source);
    m_to = worldPosition(*m_target);
    m_sourceRadius = radiusOf(*m_source);
    m_targetRadius = radiusOf(*m_target);
    // The bend is read in the edge's own frame (z across the edge, y up from it), so that two
    // edges running opposite ways with the same bend vector curve to opposite sides.
    const TPXp3 along = (m_to - m_from).normalised();
    TPXp3 across = along.cross(TPXp3(0, 1, 0));
    if (across.length() < 1e-9)
        across = along.cross(TPXp3(1, 0, 0));
    across = across.normalised();
    const TPXp3 up = across.cross(along);
    m_offset = up * m_bend.y() + across * m_bend.z() + along * m_bend.x();
    setPosition(pointAt(0.5));
    placeArrowheads();

    // The box: the line's points and a cube round each head's centre that holds the cone.
    const TPXp3 origin = placement().position;
    m_bounds = TPXboundingBox();
    auto include = [this](const TPXp3& p, double margin) {
        const TPXp3 low = p - TPXp3(margin, margin, margin);
        const TPXp3 high = p + TPXp3(margin, margin, margin);
        if (m_bounds.empty) {
            m_bounds.min = low;
            m_bounds.max = high;
            m_bounds.empty = false;
            return;
        }
        for (int c = TPXp3::X; c <= TPXp3::Z; ++c) {
            m_bounds.min[c] = std::min(m_bounds.min[c], low[c]);
            m_bounds.max[c] = std::max(m_bounds.max[c], high[c]);
        }
    };
    for (int i = 0; i <= curveSteps; ++i)
        include(pointAt(static_cast<double>(i) / curveSteps) - origin, 0.0);
    for (int i = 0; i < m_headCount; ++i) {
        const std::array<float, 16>& m = m_heads[static_cast<std::size_t>(i)].matrix;
        include(TPXp3(m[12], m[13], m[14]) - origin, 2 * arrowHalf);
    }
}

void GraphEdgeObject::placeArrowheads() {
    m_headCount = 0;
    if (!m_arrowhead)
        return;
    auto place = [&](double t, double backOff, bool middle) {
        // The cone stands at t along the line, pointing along it, its tip `backOff` short.
        const double dt = 1e-3;
        const TPXp3 tangent = pointAt(std::min(t + dt, 1.0)) - pointAt(std::max(t - dt, 0.0));
        if (tangent.length() < 1e-12)
            return;
        const TPXp3 direction = tangent.normalised();
        const TPXp3 centre = pointAt(t) - direction * (backOff + arrowHalf);
        const TPXrotation r = towards(direction).toRotation();
        Arrowhead& head = m_heads[static_cast<std::size_t>(m_headCount++)];
        head.middle = middle;
        head.matrix = {};
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column)
                head.matrix[column * 4 + row] = static_cast<float>(r[row][column]);
            head.matrix[12 + row] = static_cast<float>(centre[row]);
        }
        head.matrix[15] = 1.0f;
    };
    if (m_source == m_target) {
        place(0.75, -arrowHalf, false);
        return;
    }
    const double length = (m_to - m_from).length();
    // Where the line leaves the target's surface: the head sits just outside it.
    const double t = length > 0 ? std::clamp(1.0 - m_targetRadius / length, 0.5, 1.0) : 1.0;
    place(t, 0.0, false);
    if (length >= longEdge)
        place(0.5, -arrowHalf, true);
}

void GraphEdgeObject::drawSelf(TPXdrawContext& context) const {
    if (context.worldToClip && !mayShow(*context.worldToClip))
        return;
    // Dashes are the one thing the shared draw of all edges cannot give.
    if (context.flat && !m_highlighted) {
        gather(context);
        return;
    }
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
    drawLine();
    glLineWidth(1.0f);
    glDisable(GL_LINE_STIPPLE);
    drawArrowheads(context);
    glDisable(GL_BLEND);
    glEnable(GL_LIGHTING);
}

int GraphEdgeObject::linePoints(std::array<TPXp3, curveSteps + 1>& points) const {
    const int steps = straight() ? 1 : curveSteps;
    for (int i = 0; i <= steps; ++i)
        points[static_cast<std::size_t>(i)] = pointAt(static_cast<double>(i) / steps);
    return steps + 1;
}

bool GraphEdgeObject::mayShow(const std::array<double, 16>& worldToClip) const {
    // The box of a long edge across the scene meets almost any view: its segments tell better.
    std::array<TPXp3, curveSteps + 1> points;
    const int count = linePoints(points);
    for (int i = 0; i + 1 < count; ++i)
        if (TPXsegmentMayShow(worldToClip, points[static_cast<std::size_t>(i)],
                              points[static_cast<std::size_t>(i) + 1]))
            return true;
    for (int i = 0; i < m_headCount; ++i) {
        const std::array<float, 16>& m = m_heads[static_cast<std::size_t>(i)].matrix;
        const TPXp3 centre(m[12], m[13], m[14]);
        // The farthest a turned cone reaches from its centre: a corner of its base.
        const double far = std::hypot(arrowHalf, arrowRadius);
        const TPXp3 reach(far, far, far);
        TPXboundingBox box;
        box.min = centre - reach;
        box.max = centre + reach;
        box.empty = false;
        if (TPXboxMayShow(worldToClip, box))
            return true;
    }
    return false;
}

void GraphEdgeObject::gather(const TPXdrawContext& context) const {
    std::array<TPXp3, curveSteps + 1> points;
    const int count = linePoints(points);
    // While the camera moves lines are one pixel wide: a software renderer shades the blocks
    // of pixels a line crosses, and a line twice as wide crosses about twice as many.
    context.flat->addLine(points.data(), count, m_colour, m_opacity, context.light ? 1.0 : m_width);
    for (int i = 0; i < m_headCount; ++i) {
        const Arrowhead& head = m_heads[static_cast<std::size_t>(i)];
        if (!context.light) {
            context.flat->addShape(*m_arrowhead, head.matrix, m_colour, m_opacity);
            continue;
        }
        if (head.middle)
            continue;
        // While the camera moves a head is a flat triangle facing the viewer: a tenth of the
        // cone's corners and, at the size of a head, much the same picture.
        const TPXp3 centre(head.matrix[12], head.matrix[13], head.matrix[14]);
        const TPXp3 along(head.matrix[4], head.matrix[5], head.matrix[6]);
        TPXp3 side = along.cross(centre - context.viewerPosition);
        if (side.length() < 1e-12)
            side = along.cross(context.viewerUp);
        side = side.normalised() * arrowRadius;
        const TPXp3 tip = centre + along * arrowHalf;
        const TPXp3 base = centre - along * arrowHalf;
        // Counter-clockwise as the viewer sees it, or face culling would drop it.
        const TPXp3 facing = (base - side - tip).cross(base + side - tip);
        if (facing.dot(context.viewerPosition - centre) < 0)
            side = side * -1.0;
        context.flat->addTriangle(tip, base - side, base + side, m_colour, m_opacity);
    }
}

bool GraphEdgeObject::straight() const {
    return m_source != m_target && m_bend.length() == 0.0;
}

void GraphEdgeObject::drawLine() const {
    const TPXp3 origin = placement().position;
    std::array<TPXp3, curveSteps + 1> points;
    const int count = linePoints(points);
    glBegin(GL_LINE_STRIP);
    for (int i = 0; i < count; ++i) {
        const TPXp3 p = points[static_cast<std::size_t>(i)] - origin;
        glVertex3d(p.x(), p.y(), p.z());
    }
    glEnd();
}

void GraphEdgeObject::drawArrowheads(TPXdrawContext& context) const {
    const TPXdrawStyle style = context.style;
    const double pixels = context.nodePixels;
    context.style = TPXdrawStyle::Solid;
    // The light picture's stand-ins would take the edge's box for the head's.
    context.nodePixels = -1.0;
    // The heads are placed in world space; this node's matrix, loaded, moves by its position.
    const TPXp3 origin = placement().position;
    for (int i = 0; i < m_headCount; ++i) {
        const Arrowhead& head = m_heads[static_cast<std::size_t>(i)];
        if (head.middle && context.light)
            continue;
        glPushMatrix();
        glTranslated(-origin.x(), -origin.y(), -origin.z());
        glMultMatrixf(head.matrix.data());
        m_arrowhead->draw(context);
        glPopMatrix();
    }
    context.style = style;
    context.nodePixels = pixels;
}

}  // namespace vellum
