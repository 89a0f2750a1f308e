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
    // Six corners shared by the eight triangles (drawn by index, so that each corner is lit
    // once): +x, -x, +y, -y, +z, -z, each with its axis as the normal.
    const auto first = static_cast<GLuint>(m_cornerCount);
    for (int axis = 0; axis < 3; ++axis)
        for (double sign : {1.0, -1.0}) {
            TPXp3 direction;
            direction[axis] = sign;
            push(m_corners, c.x() + direction.x() * h.x(), c.y() + direction.y() * h.y(),
                 c.z() + direction.z() * h.z());
            push(m_normals, direction.x(), direction.y(), direction.z(), true);
            m_colours.insert(m_colours.end(), colour, colour + 3);
        }
    m_cornerCount += 6;
    for (int octant = 0; octant < 8; ++octant) {
        const GLuint x = first + (octant & 1 ? 0 : 1);
        const GLuint y = first + (octant & 2 ? 2 : 3);
        const GLuint z = first + (octant & 4 ? 4 : 5);
        // x, y, z run counter-clockwise seen from outside when the octant's sign product is
        // positive; otherwise y and z swap.
        const bool even = ((octant ^ (octant >> 1) ^ (octant >> 2)) & 1) != 0;
        m_indices.insert(m_indices.end(), {x, even ? y : z, even ? z : y});
    }
}

void TPXstandIns::draw() {
    if (m_pointCount == 0 && m_indices.empty())
        return;
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glPushAttrib(GL_ENABLE_BIT | GL_LIGHTING_BIT | GL_CURRENT_BIT | GL_POINT_BIT);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    if (!m_indices.empty()) {
        // Lit like the objects they stand for: the colour array is their ambient and diffuse.
        const GLfloat none[4] = {0, 0, 0, 1};
        glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, none);
        glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, none);
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        glEnableClientState(GL_NORMAL_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, m_corners.data());
        glNormalPointer(GL_FLOAT, 0, m_normals.data());
        glColorPointer(3, GL_FLOAT, 0, m_colours.data());
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(m_indices.size()), GL_UNSIGNED_INT,
                       m_indices.data());
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
    m_corners.clear();
    m_normals.clear();
    m_colours.clear();
    m_indices.clear();
    m_pointCount = 0;
    m_cornerCount = 0;
}

}  // namespace vellum
