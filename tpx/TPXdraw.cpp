#include "tpx/TPXdraw.h"

#include <GL/gl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "tpx/TPXflatBatch.h"
#include "tpx/TPXnode.h"
#include "tpx/TPXstandIns.h"
#include "tpx/TPXtext.h"

namespace vellum {

namespace {

// A 4 x 4 matrix column by column, on the stack: the scene walk composes one per node, and
// TPXmatrix (which checks every access and lives on the heap) would dominate a frame of 10^5
// nodes.
struct Mat4 {
    std::array<double, 16> m{};

    static Mat4 identity() {
        Mat4 r;
        r.m[0] = r.m[5] = r.m[10] = r.m[15] = 1.0;
        return r;
    }
    static Mat4 of(const TPXmatrix& matrix) {
        Mat4 r = identity();
        if (matrix.rows() == 4 && matrix.columns() == 4)
            std::copy(matrix.data(), matrix.data() + 16, r.m.begin());
        return r;
    }
    double operator()(int row, int column) const { return m[column * 4 + row]; }

    Mat4 operator*(const Mat4& b) const {
        Mat4 r;
        for (int c = 0; c < 4; ++c)
            for (int row = 0; row < 4; ++row)
                r.m[c * 4 + row] = (*this)(row, 0) * b(0, c) + (*this)(row, 1) * b(1, c) +
                                   (*this)(row, 2) * b(2, c) + (*this)(row, 3) * b(3, c);
        return r;
    }
    // The image of (x, y, z, 1).
    std::array<double, 4> apply(double x, double y, double z) const {
        std::array<double, 4> r{};
        for (int row = 0; row < 4; ++row)
            r[row] =
                (*this)(row, 0) * x + (*this)(row, 1) * y + (*this)(row, 2) * z + (*this)(row, 3);
        return r;
    }
};

// T(position + pivot) * R * S * T(-pivot), as TPXplacement::matrix() composes it.
Mat4 placementMatrix(const TPXplacement& p) {
    // Most nodes of a graph's scene are only moved (labels, edges, unturned vertices): their
    // matrix is a translation, without the rotation's square root and products.
    if (p.onlyMoves()) {
        Mat4 result = Mat4::identity();
        result.m[12] = p.position.x();
        result.m[13] = p.position.y();
        result.m[14] = p.position.z();
        return result;
    }
    const TPXrotation r = p.orientation.toRotation();
    Mat4 result = Mat4::identity();
    for (int row = 0; row < 3; ++row) {
        double moved = 0.0;
        for (int c = 0; c < 3; ++c) {
            const double rs = r[row][c] * p.scale[c];
            result.m[c * 4 + row] = rs;
            moved += rs * p.pivot[c];
        }
        result.m[12 + row] = p.position[row] + p.pivot[row] - moved;
    }
    return result;
}

std::array<std::array<double, 4>, 8> corners(const TPXboundingBox& box, const Mat4& m) {
    std::array<std::array<double, 4>, 8> result{};
    for (int i = 0; i < 8; ++i)
        result[i] = m.apply(i & 1 ? box.max.x() : box.min.x(), i & 2 ? box.max.y() : box.min.y(),
                            i & 4 ? box.max.z() : box.min.z());
    return result;
}

// Whether the points, in clip space, all lie outside one of the six clip planes.
template <std::size_t N>
bool allBeyondOnePlane(const std::array<std::array<double, 4>, N>& clip) {
    for (int axis = 0; axis < 3; ++axis)
        for (double side : {-1.0, 1.0}) {
            bool allOut = true;
            // With a margin: OpenGL clips in single precision, and what lies on a plane (a
            // flat graph seen edge-on) may count as inside for it.
            for (const auto& c : clip)
                allOut = allOut && side * c[axis] > c[3] + 1e-5 * std::abs(c[3]) + 1e-9;
            if (allOut)
                return true;
        }
    return false;
}

// Whether the box, taken to clip space by `m`, lies wholly outside one of the six clip planes.
bool outside(const TPXboundingBox& box, const Mat4& m) {
    return allBeyondOnePlane(corners(box, m));
}

// The six planes of a view (world to clip space `m`), each scaled to a unit normal pointing
// inside: a cheap first test of a node's bounding sphere before the box's eight corners.
class Frustum {
  public:
    explicit Frustum(const Mat4& m) {
        int i = 0;
        for (int axis = 0; axis < 3; ++axis)
            for (double side : {1.0, -1.0}) {
                std::array<double, 4>& plane = m_planes[static_cast<std::size_t>(i++)];
                for (int c = 0; c < 4; ++c)
                    plane[c] = m(3, c) + side * m(axis, c);
                const double length = std::hypot(plane[0], plane[1], plane[2]);
                if (length > 0.0)
                    for (double& v : plane)
                        v /= length;
            }
    }

    enum class Side { Outside, Inside, Across };
    Side classify(const std::array<double, 4>& centre, double radius) const {
        Side result = Side::Inside;
        for (const auto& p : m_planes) {
            const double distance = p[0] * centre[0] + p[1] * centre[1] + p[2] * centre[2] + p[3];
            // The margin as in allBeyondOnePlane: what lies on a plane counts as inside.
            if (distance < -radius - 1e-6 * (1.0 + std::abs(radius)))
                return Side::Outside;
            if (distance < radius)
                result = Side::Across;
        }
        return result;
    }

  private:
    std::array<std::array<double, 4>, 6> m_planes{};
};

// The largest factor by which `m` stretches a length.
double largestScale(const Mat4& m) {
    double scale = 0.0;
    for (int column = 0; column < 3; ++column)
        scale = std::max(scale, std::hypot(m(0, column), m(1, column), m(2, column)));
    return scale;
}

// About how many pixels the box spans on screen, `eye` taking it to eye space.
double pixelsOf(const TPXboundingBox& box, const Mat4& eye, double pixelsPerUnit) {
    const TPXp3 c = box.centre();
    const auto centre = eye.apply(c.x(), c.y(), c.z());
    const double radius = (box.max - box.min).length() * 0.5 * largestScale(eye);
    const double distance = -centre[2];
    if (distance <= radius)
        return std::numeric_limits<double>::infinity();
    return 2.0 * radius * pixelsPerUnit / distance;
}

// The selection name of a node: its identity, or its nearest ancestor's; 0 for none.
std::uint32_t inheritedIdentity(const TPXnode* node) {
    for (; node; node = node->parent())
        if (node->identity() != 0)
            return node->identity();
    return 0;
}

// What the walk keeps of a node's parent while it is below it.
struct Level {
    Mat4 world;
    std::uint32_t identity;
};

// Walks the scene depth first without recursion (a graph's vertices form one long chain of
// siblings), calling visit(node, world matrix, inherited identity) for each node.
// Nodes for which skip(node) holds are passed over with their subtrees, at no cost.
template <typename Visit, typename Skip>
void walk(const TPXnode* first, Visit visit, Skip skip) {
    if (!first)
        return;
    const TPXnode* parent = first->parent();
    Level level{parent ? Mat4::of(parent->worldMatrix()) : Mat4::identity(),
                inheritedIdentity(parent)};
    std::vector<Level> stack;
    for (const TPXnode* node = first; node;) {
        if (!skip(*node)) {
            const Mat4 world = level.world * placementMatrix(node->placement());
            const std::uint32_t identity = node->identity() ? node->identity() : level.identity;
            visit(*node, world, identity);
            if (node->firstChild()) {
                stack.push_back(level);
                level = {world, identity};
                node = node->firstChild();
                continue;
            }
        }
        while (!node->nextSibling() && !stack.empty()) {
            node = node->parent();
            level = stack.back();
            stack.pop_back();
        }
        node = node->nextSibling();
    }
}

template <typename Visit>
void walk(const TPXnode* first, Visit visit) {
    walk(first, visit, [](const TPXnode&) { return false; });
}

void setColour(GLenum which, const TPXrgb& colour, GLenum light, GLfloat alpha = 1.0f) {
    const GLfloat values[4] = {static_cast<GLfloat>(colour.r), static_cast<GLfloat>(colour.g),
                               static_cast<GLfloat>(colour.b), alpha};
    glLightfv(light, which, values);
}

}  // namespace

void TPXdrawScene(const TPXnode* first, TPXdrawContext& context) {
    const Mat4 view = Mat4::of(context.view);
    const std::optional<Mat4> clip =
        context.clip ? std::optional<Mat4>(Mat4::of(*context.clip)) : std::nullopt;
    const std::optional<std::array<double, 16>> outerWorldToClip = context.worldToClip;
    context.worldToClip =
        clip ? std::optional<std::array<double, 16>>((*clip * view).m) : std::nullopt;
    const std::optional<Frustum> frustum =
        clip ? std::optional<Frustum>(Frustum(*clip * view)) : std::nullopt;
    std::uint32_t loadedName = 0;
    TPXbatches own;
    TPXbatches& batches = context.batches ? *context.batches : own;
    TPXstandIns& standIns = batches.standIns;
    TPXtextBatch& texts = batches.texts;
    TPXflatBatch& flat = batches.flat;
    flat.setView(context.view);
    TPXstandIns* const outer = context.standIns;
    if (context.light && !context.picking)
        context.standIns = &standIns;
    TPXtextBatch* const outerTexts = std::exchange(context.texts, &texts);
    TPXflatBatch* const outerFlat = std::exchange(context.flat, context.picking ? nullptr : &flat);
    glMatrixMode(GL_MODELVIEW);
    // Texts are never picked; in a picking pass they and what hangs below them are skipped.
    const auto skip = [&context](const TPXnode& node) {
        return context.picking && node.kind() == TPXkind::Text;
    };
    const auto visit = [&](const TPXnode& node, const Mat4& world, std::uint32_t identity) {
        if (context.picking && identity == 0)
            return;  // nothing to report: it must not hide what lies behind it
        const std::optional<TPXboundingBox> bounds = node.drawnBounds();
        if (bounds && frustum && !bounds->empty) {
            // The sphere round the box settles most nodes; the box's corners the rest.
            const TPXp3 c = bounds->centre();
            const double radius = (bounds->max - bounds->min).length() * 0.5 * largestScale(world);
            const Frustum::Side side = frustum->classify(world.apply(c.x(), c.y(), c.z()), radius);
            if (side == Frustum::Side::Outside ||
                (side == Frustum::Side::Across && outside(*bounds, *clip * view * world)))
                return;
        }
        const Mat4 eye = view * world;
        context.nodePixels =
            context.light && bounds ? pixelsOf(*bounds, eye, context.pixelsPerUnit) : -1.0;
        glLoadMatrixd(eye.m.data());
        if (context.standIns)
            context.standIns->setTransform(eye.m);
        if (context.picking && identity != loadedName) {
            glLoadName(identity);
            loadedName = identity;
        }
        node.drawSelf(context);
    };
    walk(first, visit, skip);
    context.nodePixels = -1.0;
    context.standIns = outer;
    context.texts = outerTexts;
    context.flat = outerFlat;
    context.worldToClip = outerWorldToClip;
    flat.draw();
    standIns.draw();
    texts.draw(context);
}

bool TPXsegmentMayShow(const std::array<double, 16>& worldToClip, const TPXp3& a, const TPXp3& b) {
    const Mat4 m{worldToClip};
    return !allBeyondOnePlane(std::array<std::array<double, 4>, 2>{m.apply(a.x(), a.y(), a.z()),
                                                                   m.apply(b.x(), b.y(), b.z())});
}

bool TPXboxMayShow(const std::array<double, 16>& worldToClip, const TPXboundingBox& box) {
    return !outside(box, Mat4{worldToClip});
}

TPXboundingBox TPXsceneBounds(const TPXnode* first) {
    TPXboundingBox result;
    walk(first, [&](const TPXnode& node, const Mat4& world, std::uint32_t) {
        const std::optional<TPXboundingBox> bounds = node.drawnBounds();
        if (!bounds || bounds->empty)
            return;
        for (const auto& c : corners(*bounds, world)) {
            const TPXp3 p(c[0], c[1], c[2]);
            if (result.empty) {
                result.min = result.max = p;
                result.empty = false;
                continue;
            }
            for (int axis = TPXp3::X; axis <= TPXp3::Z; ++axis) {
                result.min[axis] = std::min(result.min[axis], p[axis]);
                result.max[axis] = std::max(result.max[axis], p[axis]);
            }
        }
    });
    return result;
}

void TPXboundingBox::draw() const {
    if (empty)
        return;
    // Lines in the current colour, whatever the lighting and texturing around them.
    glPushAttrib(GL_ENABLE_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glBegin(GL_LINES);
    for (int i = 0; i < 8; ++i)
        for (int axis = 0; axis < 3; ++axis) {
            const int j = i | (1 << axis);
            if (j == i)
                continue;
            for (int end : {i, j})
                glVertex3d(end & 1 ? max.x() : min.x(), end & 2 ? max.y() : min.y(),
                           end & 4 ? max.z() : min.z());
        }
    glEnd();
    glPopAttrib();
}

void TPXfog::apply() const {
    glEnable(GL_FOG);
    const GLint glMode = mode == TPXfogMode::Linear        ? GL_LINEAR
                         : mode == TPXfogMode::Exponential ? GL_EXP
                                                           : GL_EXP2;
    glFogi(GL_FOG_MODE, glMode);
    const GLfloat values[4] = {static_cast<GLfloat>(colour.r), static_cast<GLfloat>(colour.g),
                               static_cast<GLfloat>(colour.b), 1.0f};
    glFogfv(GL_FOG_COLOR, values);
    if (glMode == GL_LINEAR) {
        glFogf(GL_FOG_START, static_cast<GLfloat>(start));
        glFogf(GL_FOG_END, static_cast<GLfloat>(end));
        return;
    }
    glFogf(GL_FOG_DENSITY, static_cast<GLfloat>(density));
}

void TPXdisableFog() {
    glDisable(GL_FOG);
}

TPXlight TPXlight::headlight() {
    TPXlight light;
    light.position = TPXp3(-0.3, 0.4, 1.0).normalised();
    light.followsViewer = true;
    light.specular = TPXrgb{0.4, 0.4, 0.4};
    return light;
}

void TPXlight::apply(int index) const {
    const GLenum light = static_cast<GLenum>(GL_LIGHT0 + index);
    const GLfloat where[4] = {static_cast<GLfloat>(position.x()),
                              static_cast<GLfloat>(position.y()),
                              static_cast<GLfloat>(position.z()), directional ? 0.0f : 1.0f};
    glLightfv(light, GL_POSITION, where);
    setColour(GL_AMBIENT, ambient, light);
    setColour(GL_DIFFUSE, diffuse, light);
    setColour(GL_SPECULAR, specular, light);
    glLightf(light, GL_CONSTANT_ATTENUATION, static_cast<GLfloat>(constantAttenuation));
    glLightf(light, GL_LINEAR_ATTENUATION, static_cast<GLfloat>(linearAttenuation));
    glLightf(light, GL_QUADRATIC_ATTENUATION, static_cast<GLfloat>(quadraticAttenuation));
    glEnable(light);
}

void TPXsetLights(const std::vector<TPXlight>& lights, const TPXmatrix& view) {
    GLint available = 8;
    glGetIntegerv(GL_MAX_LIGHTS, &available);
    const int count = std::min(static_cast<int>(lights.size()), static_cast<int>(available));
    glMatrixMode(GL_MODELVIEW);
    const Mat4 world = Mat4::of(view);
    for (int i = 0; i < count; ++i) {
        const TPXlight& light = lights[static_cast<std::size_t>(i)];
        if (light.followsViewer)
            glLoadIdentity();
        else
            glLoadMatrixd(world.m.data());
        light.apply(i);
    }
    for (int i = count; i < available; ++i)
        glDisable(static_cast<GLenum>(GL_LIGHT0 + i));
    if (count > 0)
        glEnable(GL_LIGHTING);
    else
        glDisable(GL_LIGHTING);
    glLoadMatrixd(world.m.data());
}

}  // namespace vellum
