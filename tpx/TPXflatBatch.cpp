#include "tpx/TPXflatBatch.h"

#include <GL/gl.h>

#include <algorithm>

#include "tpx/TPXgeometry.h"

namespace vellum {

namespace {

void pushColour(std::vector<float>& to, const TPXrgb& colour, double opacity, std::size_t times) {
    const float rgba[4] = {static_cast<float>(colour.r), static_cast<float>(colour.g),
                           static_cast<float>(colour.b), static_cast<float>(opacity)};
    for (std::size_t i = 0; i < times; ++i)
        to.insert(to.end(), rgba, rgba + 4);
}

}  // namespace

TPXflatBatch::TPXflatBatch() {
    m_view[0] = m_view[5] = m_view[10] = m_view[15] = 1.0;
}

void TPXflatBatch::setView(const TPXmatrix& view) {
    if (view.rows() == 4 && view.columns() == 4)
        std::copy(view.data(), view.data() + 16, m_view.begin());
}

TPXflatBatch::~TPXflatBatch() = default;

TPXflatBatch::Lines& TPXflatBatch::linesOf(double width) {
    const auto w = static_cast<float>(width);
    for (Lines& lines : m_lines)
        if (lines.width == w)
            return lines;
    m_lines.push_back({w, {}, {}});
    return m_lines.back();
}

void TPXflatBatch::addLine(const TPXp3* points, int count, const TPXrgb& colour, double opacity,
                           double width) {
    if (count < 2)
        return;
    // A strip becomes separate segments, so that every line of the batch shares one draw.
    const std::size_t vertices = 2 * static_cast<std::size_t>(count - 1);
    flushWhenFull(vertices);
    Lines& lines = linesOf(width);
    for (int i = 0; i + 1 < count; ++i)
        for (const TPXp3* p : {&points[i], &points[i + 1]})
            lines.positions.insert(lines.positions.end(),
                                   {static_cast<float>(p->x()), static_cast<float>(p->y()),
                                    static_cast<float>(p->z())});
    pushColour(lines.colours, colour, opacity, vertices);
    m_blends = m_blends || opacity < 1.0;
    m_vertices += vertices;
}

const std::vector<float>& TPXflatBatch::cornersOf(const TPXgeometry& shape) {
    auto found = m_shapes.find(&shape);
    if (found != m_shapes.end())
        return found->second;
    std::vector<float>& corners = m_shapes[&shape];
    const std::vector<TPXvertex>& vertices = shape.vertices();
    auto push = [&](int index) {
        const TPXp3& p = vertices[static_cast<std::size_t>(index)].position;
        corners.insert(corners.end(), {static_cast<float>(p.x()), static_cast<float>(p.y()),
                                       static_cast<float>(p.z())});
    };
    for (const TPXpolygon& polygon : shape.polygons()) {
        const std::vector<int>& c = polygon.corners();
        const bool valid = std::all_of(c.begin(), c.end(), [&](int i) {
            return i >= 0 && static_cast<std::size_t>(i) < vertices.size();
        });
        for (std::size_t i = 1; valid && i + 1 < c.size(); ++i) {
            push(c[0]);
            push(c[i]);
            push(c[i + 1]);
        }
    }
    return corners;
}

void TPXflatBatch::addShape(const TPXgeometry& shape, const std::array<float, 16>& world,
                            const TPXrgb& colour, double opacity) {
    // A chunk drawn forgets the shapes' triangles: look them up after it.
    flushWhenFull(cornersOf(shape).size() / 3);
    const std::vector<float>& corners = cornersOf(shape);
    const std::size_t vertices = corners.size() / 3;
    std::vector<float>& to = m_triangles.positions;
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        const float x = corners[i], y = corners[i + 1], z = corners[i + 2];
        for (int row = 0; row < 3; ++row)
            to.push_back(world[row] * x + world[4 + row] * y + world[8 + row] * z +
                         world[12 + row]);
    }
    pushColour(m_triangles.colours, colour, opacity, vertices);
    m_blends = m_blends || opacity < 1.0;
    m_vertices += vertices;
}

void TPXflatBatch::addTriangle(const TPXp3& a, const TPXp3& b, const TPXp3& c, const TPXrgb& colour,
                               double opacity) {
    flushWhenFull(3);
    for (const TPXp3* p : {&a, &b, &c})
        m_triangles.positions.insert(
            m_triangles.positions.end(),
            {static_cast<float>(p->x()), static_cast<float>(p->y()), static_cast<float>(p->z())});
    pushColour(m_triangles.colours, colour, opacity, 3);
    m_blends = m_blends || opacity < 1.0;
    m_vertices += 3;
}

void TPXflatBatch::flushWhenFull(std::size_t vertices) {
    if (m_vertices > 0 && m_vertices + vertices > chunkVertices)
        draw();
}

void TPXflatBatch::drawChunk(GLenum mode, const std::vector<float>& positions,
                             const std::vector<float>& colours, float width) {
    if (positions.empty())
        return;
    glLineWidth(width);
    glVertexPointer(3, GL_FLOAT, 0, positions.data());
    glColorPointer(4, GL_FLOAT, 0, colours.data());
    glDrawArrays(mode, 0, static_cast<GLsizei>(positions.size() / 3));
}

void TPXflatBatch::draw() {
    if (m_vertices == 0)
        return;
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadMatrixd(m_view.data());
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LINE_BIT | GL_COLOR_BUFFER_BIT);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LINE_STIPPLE);
    if (m_blends) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    } else {
        glDisable(GL_BLEND);
    }
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    for (const Lines& lines : m_lines)
        drawChunk(GL_LINES, lines.positions, lines.colours, lines.width);
    drawChunk(GL_TRIANGLES, m_triangles.positions, m_triangles.colours, 1.0f);
    glPopClientAttrib();
    glPopAttrib();
    glPopMatrix();
    for (Lines& lines : m_lines) {
        lines.positions.clear();
        lines.colours.clear();
    }
    m_triangles.positions.clear();
    m_triangles.colours.clear();
    m_shapes.clear();
    m_vertices = 0;
    m_blends = false;
}

}  // namespace vellum
