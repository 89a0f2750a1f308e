#include "tpx/TPXstandIns.h"

#include <GL/gl.h>

#include "tpx/TPXgeometry.h"

namespace vellum {

namespace {

const TPXmaterial* firstMaterial(const TPXgeometry& geometry) {
    for (const TPXpolygon& polygon : geometry.polygons())
        if (polygon.material())
            return polygon.material().get();
    return nullptr;
}

// About as bright as a small lit object on average.
constexpr float kPointShade = 0.7f;
constexpr double kDiamondGrowth = 1.2;

}  // namespace

void TPXstandIns::push(std::vector<float>& to, double x, double y, double z, bool direction) const {
    const double w = direction ? 0.0 : 1.0;
    for (int row = 0; row < 3; ++row)
        to.push_back(static_cast<float>(m_eye[row] * x + m_eye[4 + row] * y + m_eye[8 + row] * z +
                                        m_eye[12 + row] * w));
}

void TPXstandIns::add(const TPXgeometry& geometry, double pixels) {
    const TPXmaterial* material = firstMaterial(geometry);
    const TPXrgb colour = material ? material->diffuse() : TPXrgb{1, 1, 1};
    const float rgb[3] = {static_cast<float>(colour.r), static_cast<float>(colour.g),
                          static_cast<float>(colour.b)};
    if (pixels < pointPixels)
        addPoint(geometry, rgb);
    else
        addDiamond(geometry, rgb);
}

void TPXstandIns::addPoint(const TPXgeometry& geometry, const float colour[3]) {
    const TPXp3 c = geometry.boundingBox().centre();
    push(m_points, c.x(), c.y(), c.z());
    for (int i = 0; i < 3; ++i)
        m_pointColours.push_back(colour[i] * kPointShade);
    ++m_pointCount;
}

void TPXstandIns::addDiamond(const TPXgeometry& geometry, const float colour[3]) {
    const TPXboundingBox& box = geometry.boundingBox();
    const TPXp3 c = box.centre();
    // A diamond inside the box shows less than the round shape it stands for.
    const TPXp3 h = (box.max - box.min) * (0.5 * kDiamondGrowth);
    for (int octant = 0; octant < 8; ++octant) {
        const double sx = octant & 1 ? 1 : -1;
        const double sy = octant & 2 ? 1 : -1;
        const double sz = octant & 4 ? 1 : -1;
        // The corners on the x, y and z axes run counter-clockwise seen from outside when the
        // octant's sign product is positive; otherwise y and z swap.
        const TPXp3 x(sx, 0, 0), y(0, sy, 0), z(0, 0, sz);
        const bool even = sx * sy * sz > 0;
        for (const TPXp3& axis : {x, even ? y : z, even ? z : y}) {
            push(m_triangles, c.x() + axis.x() * h.x(), c.y() + axis.y() * h.y(),
                 c.z() + axis.z() * h.z());
            push(m_normals, axis.x(), axis.y(), axis.z(), true);
            m_colours.insert(m_colours.end(), colour, colour + 3);
        }
        ++m_triangleCount;
    }
}

void TPXstandIns::draw() {
    if (m_pointCount == 0 && m_triangleCount == 0)
        return;
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glPushAttrib(GL_ENABLE_BIT | GL_LIGHTING_BIT | GL_CURRENT_BIT | GL_POINT_BIT);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    if (m_triangleCount > 0) {
        // Lit like the objects they stand for: the colour array is their ambient and diffuse.
        const GLfloat none[4] = {0, 0, 0, 1};
        glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, none);
        glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, none);
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        glEnableClientState(GL_NORMAL_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, m_triangles.data());
        glNormalPointer(GL_FLOAT, 0, m_normals.data());
        glColorPointer(3, GL_FLOAT, 0, m_colours.data());
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(m_triangleCount * 3));
        glDisableClientState(GL_NORMAL_ARRAY);
        glDisable(GL_COLOR_MATERIAL);
    }
    if (m_pointCount > 0) {
        glDisable(GL_LIGHTING);
        glPointSize(1.0f);
        glVertexPointer(3, GL_FLOAT, 0, m_points.data());
        glColorPointer(3, GL_FLOAT, 0, m_pointColours.data());
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(m_pointCount));
    }
    glPopClientAttrib();
    glPopAttrib();
    m_points.clear();
    m_pointColours.clear();
    m_triangles.clear();
    m_normals.clear();
    m_colours.clear();
    m_pointCount = 0;
    m_triangleCount = 0;
}

}  // namespace vellum
