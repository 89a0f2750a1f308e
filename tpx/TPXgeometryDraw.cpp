// Drawing a geometry: each style is compiled into a display list of the current context the
// first time it is drawn there, and replayed afterwards.
#include <GL/gl.h>

#include "tpx/TPXgeometry.h"

namespace vellum {

namespace {

std::size_t slotOf(TPXdrawStyle style) {
    return static_cast<std::size_t>(style) - 1;
}

void sendCorners(const TPXgeometry& geometry, const TPXpolygon& polygon) {
    const auto& vertices = geometry.vertices();
    for (int corner : polygon.corners()) {
        // The model reader never stores an index outside the vertex array; a hand-built
        // geometry that does is skipped rather than read out of bounds.
        if (corner < 0 || static_cast<std::size_t>(corner) >= vertices.size())
            continue;
        const TPXvertex& v = vertices[static_cast<std::size_t>(corner)];
        glNormal3d(v.normal.x(), v.normal.y(), v.normal.z());
        glVertex3d(v.position.x(), v.position.y(), v.position.z());
    }
}

void drawOutline(const TPXgeometry& geometry) {
    for (const TPXpolygon& polygon : geometry.polygons()) {
        glBegin(GL_LINE_LOOP);
        sendCorners(geometry, polygon);
        glEnd();
    }
}

void drawFilled(const TPXgeometry& geometry, TPXdrawContext& context) {
    for (const TPXpolygon& polygon : geometry.polygons()) {
        const TPXmaterial* material = polygon.material().get();
        if (material)
            material->apply(context);
        glBegin(polygon.size() == 3 ? GL_TRIANGLES : GL_POLYGON);
        sendCorners(geometry, polygon);
        glEnd();
        if (material)
            material->unapply(context);
    }
}

}  // namespace

GLuint TPXgeometry::displayList(const TPXlistStore& store, TPXdrawStyle style) const {
    return m_lists.get(store, slotOf(style));
}

void TPXgeometry::compile(TPXdrawContext& context) const {
    const GLuint list = glGenLists(1);
    if (list == 0)
        return;
    glNewList(list, GL_COMPILE);
    switch (context.style) {
        case TPXdrawStyle::Outline:
            drawOutline(*this);
            break;
        case TPXdrawStyle::Wireframe:
            glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
            drawFilled(*this, context);
            glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
            break;
        case TPXdrawStyle::Solid:
            drawFilled(*this, context);
            break;
    }
    glEndList();
    m_lists.set(context.lists, slotOf(context.style), list);
}

void TPXgeometry::draw(TPXdrawContext& context) const {
    if (displayList(*context.lists, context.style) == 0)
        compile(context);
    if (const GLuint list = displayList(*context.lists, context.style))
        glCallList(list);
}

}  // namespace vellum
