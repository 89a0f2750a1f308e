// Drawing a geometry: each style is compiled into a display list of the current context the
// first time it is drawn there, and replayed afterwards. Triangles and convex quads go to OpenGL
// as they are; concave and many-cornered polygons through the GLU tessellator. Textured
// polygons get their texture coordinates by a planar mapping over the geometry's box. Small
// geometries in the light picture become stand-ins (TPXstandIns).
#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <deque>

#include "tpx/TPXgeometry.h"
#include "tpx/TPXstandIns.h"
#include "tpx/TPXtexture.h"

namespace vellum {

namespace {

std::size_t slotOf(TPXdrawStyle style) {
    return static_cast<std::size_t>(style) - 1;
}

const TPXvertex* vertexOf(const TPXgeometry& geometry, int corner) {
    // The model reader never stores an index outside the vertex array; a hand-built geometry
    // that does has that corner skipped rather than read out of bounds.
    const auto& vertices = geometry.vertices();
    if (corner < 0 || static_cast<std::size_t>(corner) >= vertices.size())
        return nullptr;
    return &vertices[static_cast<std::size_t>(corner)];
}

// The polygon's normal by Newell's method from its corners: it follows the corner order
// (counter-clockwise seen from where it points) and does not depend on the stored face normal.
TPXp3 cornerNormal(const TPXgeometry& geometry, const TPXpolygon& polygon) {
    TPXp3 normal;
    const int n = polygon.size();
    for (int i = 0; i < n; ++i) {
        const TPXvertex* a = vertexOf(geometry, polygon.corner(i));
        const TPXvertex* b = vertexOf(geometry, polygon.corner((i + 1) % n));
        if (!a || !b)
            continue;
        const TPXp3& p = a->position;
        const TPXp3& q = b->position;
        normal += TPXp3((p.y() - q.y()) * (p.z() + q.z()), (p.z() - q.z()) * (p.x() + q.x()),
                        (p.x() - q.x()) * (p.y() + q.y()));
    }
    return normal.normalised();
}

// Whether every corner turns the same way round `normal` (a zero turn counts as convex).
bool isConvex(const TPXgeometry& geometry, const TPXpolygon& polygon, const TPXp3& normal) {
    const int n = polygon.size();
    for (int i = 0; i < n; ++i) {
        const TPXvertex* a = vertexOf(geometry, polygon.corner(i));
        const TPXvertex* b = vertexOf(geometry, polygon.corner((i + 1) % n));
        const TPXvertex* c = vertexOf(geometry, polygon.corner((i + 2) % n));
        if (!a || !b || !c)
            return false;
        const TPXp3 turn = (b->position - a->position).cross(c->position - b->position);
        if (turn.dot(normal) < -1e-12)
            return false;
    }
    return true;
}

bool needsTessellation(const TPXgeometry& geometry, const TPXpolygon& polygon,
                       const TPXp3& normal) {
    if (polygon.size() <= 3)
        return false;
    return polygon.size() > 4 || !isConvex(geometry, polygon, normal);
}

// Texture coordinates of a polygon's corners: the geometry's box seen along the axis the
// polygon faces most, stretched over the whole texture.
class TexturePlane {
  public:
    TexturePlane(const TPXboundingBox& box, const TPXp3& normal) : m_box(box) {
        const double ax = std::abs(normal.x()), ay = std::abs(normal.y()),
                     az = std::abs(normal.z());
        if (ax >= ay && ax >= az) {
            m_s = TPXp3::Z;
            m_t = TPXp3::Y;
        } else if (ay >= az) {
            m_s = TPXp3::X;
            m_t = TPXp3::Z;
        }
    }
    double s(const TPXp3& p) const { return along(p, m_s); }
    double t(const TPXp3& p) const { return along(p, m_t); }

  private:
    double along(const TPXp3& p, int axis) const {
        const double extent = m_box.max[axis] - m_box.min[axis];
        return extent > 0.0 ? (p[axis] - m_box.min[axis]) / extent : 0.0;
    }

    TPXboundingBox m_box;
    int m_s = TPXp3::X;
    int m_t = TPXp3::Y;
};

void sendVertex(const TPXp3& position, const TPXp3& normal, const TexturePlane* plane) {
    glNormal3d(normal.x(), normal.y(), normal.z());
    if (plane)
        glTexCoord2d(plane->s(position), plane->t(position));
    glVertex3d(position.x(), position.y(), position.z());
}

// A vertex whose file gave it no normal (the zero vector) is lit with the face it belongs to;
// a zero normal would leave it unlit, almost black.
const TPXp3& litNormal(const TPXvertex& vertex, const TPXp3& faceNormal) {
    const TPXp3& n = vertex.normal;
    return n.x() == 0.0 && n.y() == 0.0 && n.z() == 0.0 ? faceNormal : n;
}

void sendCorners(const TPXgeometry& geometry, const TPXpolygon& polygon, const TPXp3& faceNormal,
                 const TexturePlane* plane) {
    for (int corner : polygon.corners())
        if (const TPXvertex* v = vertexOf(geometry, corner))
            sendVertex(v->position, litNormal(*v, faceNormal), plane);
}

// The GLU tessellator for one compilation (RAII). Its edge-flag callback makes GLU send plain
// triangles (no fans or strips, see drawFilled). For a wireframe the flags mark the polygon's
// own edges, so that the outline shows and not the cuts; filled polygons ignore them: Mesa
// (22.3) draws nothing of a later wireframe list with edge flags once a filled list with edge
// flags has been drawn.
class Tessellator {
  public:
    explicit Tessellator(bool outlineOnly) : m_tess(gluNewTess()) {
        if (!m_tess)
            return;
        gluTessCallback(m_tess, GLU_TESS_BEGIN, reinterpret_cast<_GLUfuncptr>(&begin));
        gluTessCallback(m_tess, GLU_TESS_VERTEX, reinterpret_cast<_GLUfuncptr>(&vertex));
        gluTessCallback(m_tess, GLU_TESS_END, reinterpret_cast<_GLUfuncptr>(&end));
        gluTessCallback(m_tess, GLU_TESS_COMBINE, reinterpret_cast<_GLUfuncptr>(&combine));
        gluTessCallback(m_tess, GLU_TESS_EDGE_FLAG,
                        reinterpret_cast<_GLUfuncptr>(outlineOnly ? &edgeFlag : &ignoreEdgeFlag));
        m_edgeFlags = outlineOnly;
    }
    ~Tessellator() {
        if (m_tess)
            gluDeleteTess(m_tess);
    }
    Tessellator(const Tessellator&) = delete;
    Tessellator& operator=(const Tessellator&) = delete;

    // Sends the polygon as triangles; false when GLU has no tessellator to offer.
    bool draw(const TPXgeometry& geometry, const TPXpolygon& polygon, const TPXp3& normal,
              const TexturePlane* plane) {
        if (!m_tess)
            return false;
        m_corners.clear();
        for (int corner : polygon.corners())
            if (const TPXvertex* v = vertexOf(geometry, corner))
                m_corners.push_back({{v->position.x(), v->position.y(), v->position.z()},
                                     litNormal(*v, normal),
                                     plane,
                                     this});
        // Given the normal, GLU turns every triangle counter-clockwise round it, as the polygon.
        gluTessNormal(m_tess, normal.x(), normal.y(), normal.z());
        gluBeginPolygon(m_tess);
        for (Corner& corner : m_corners)
            gluTessVertex(m_tess, corner.position, &corner);
        gluEndPolygon(m_tess);
        // Later polygons of the list are drawn with every edge.
        if (m_edgeFlags)
            glEdgeFlag(GL_TRUE);
        return true;
    }

  private:
    // A corner as the tessellator sees it; GLU hands back the pointers it was given, and the
    // deque keeps them valid while corners are added at crossings.
    struct Corner {
        GLdouble position[3];
        TPXp3 normal;
        const TexturePlane* plane;
        Tessellator* owner;
    };

    static void GLAPIENTRY begin(GLenum type) { glBegin(type); }
    static void GLAPIENTRY end() { glEnd(); }
    static void GLAPIENTRY edgeFlag(GLboolean flag) { glEdgeFlag(flag); }
    static void GLAPIENTRY ignoreEdgeFlag(GLboolean) {}
    static void GLAPIENTRY vertex(void* data) {
        const Corner& c = *static_cast<const Corner*>(data);
        sendVertex(TPXp3(c.position[0], c.position[1], c.position[2]), c.normal, c.plane);
    }
    // Where edges cross, a new corner with the normal weighted from its neighbours.
    static void GLAPIENTRY combine(GLdouble position[3], void* data[4], GLfloat weight[4],
                                   void** out) {
        const Corner* first = nullptr;
        TPXp3 normal;
        for (int i = 0; i < 4; ++i) {
            const Corner* corner = static_cast<const Corner*>(data[i]);
            if (!corner)
                continue;
            first = first ? first : corner;
            normal += corner->normal * weight[i];
        }
        if (!first)
            return;  // GLU always names at least one; without it there is nowhere to keep one
        first->owner->m_corners.push_back({{position[0], position[1], position[2]},
                                           normal.normalised(),
                                           first->plane,
                                           first->owner});
        *out = &first->owner->m_corners.back();
    }

    GLUtesselator* m_tess;
    bool m_edgeFlags = false;
    std::deque<Corner> m_corners;
};

void drawOutline(const TPXgeometry& geometry) {
    for (const TPXpolygon& polygon : geometry.polygons()) {
        glBegin(GL_LINE_LOOP);
        sendCorners(geometry, polygon, cornerNormal(geometry, polygon), nullptr);
        glEnd();
    }
}

// How a polygon goes to OpenGL.
struct PolygonPlan {
    TPXp3 normal;
    bool tessellated;
    GLenum mode;  // GL_TRIANGLES (also for tessellated ones) or GL_POLYGON
};

PolygonPlan planOf(const TPXgeometry& geometry, const TPXpolygon& polygon) {
    const TPXp3 normal = cornerNormal(geometry, polygon);
    const bool tessellated = needsTessellation(geometry, polygon, normal);
    const bool triangles = tessellated || polygon.size() == 3;
    return {normal, tessellated, static_cast<GLenum>(triangles ? GL_TRIANGLES : GL_POLYGON)};
}

void drawPolygon(const TPXgeometry& geometry, const TPXpolygon& polygon, const PolygonPlan& plan,
                 Tessellator& tessellator, bool textured) {
    const TexturePlane plane(geometry.boundingBox(), plan.normal);
    const TexturePlane* mapping = textured ? &plane : nullptr;
    if (plan.tessellated && tessellator.draw(geometry, polygon, plan.normal, mapping))
        return;
    glBegin(plan.mode);
    sendCorners(geometry, polygon, plan.normal, mapping);
    glEnd();
}

// Ends the run of primitives being gathered into one draw. Mesa merges the primitives of a list
// between two state changes into one draw; it crashes (22.3) when such a draw mixes modes and
// the list is called in selection mode. A push and pop of the enables changes nothing else.
void separateDraws() {
    glPushAttrib(GL_ENABLE_BIT);
    glPopAttrib();
}

// Polygons in a row with one material share one application of it: a state change between two
// polygons splits the list into separate draws, which would cost more than the polygons.
void drawFilled(const TPXgeometry& geometry, TPXdrawContext& context, bool wireframe) {
    Tessellator tessellator(wireframe);
    const TPXmaterial* applied = nullptr;
    GLenum lastMode = GL_TRIANGLES;
    for (const TPXpolygon& polygon : geometry.polygons()) {
        const PolygonPlan plan = planOf(geometry, polygon);
        if (plan.mode != lastMode)
            separateDraws();
        lastMode = plan.mode;
        const TPXmaterial* material = polygon.material().get();
        if (material != applied) {
            if (applied)
                applied->unapply(context);
            if (material)
                material->apply(context);
            applied = material;
        }
        drawPolygon(geometry, polygon, plan, tessellator, material && material->texture());
    }
    if (applied)
        applied->unapply(context);
}

// Textures go up before a list that binds them is compiled.
void uploadTextures(const TPXgeometry& geometry, TPXdrawContext& context) {
    const TPXtexture* last = nullptr;
    for (const TPXpolygon& polygon : geometry.polygons()) {
        const TPXmaterial* material = polygon.material().get();
        const TPXtexture* texture = material ? material->texture() : nullptr;
        if (texture && texture != last)
            texture->upload(context);
        last = texture;
    }
}

}  // namespace

GLuint TPXgeometry::displayList(const TPXlistStore& store, TPXdrawStyle style) const {
    return m_lists.get(store, slotOf(style));
}

void TPXgeometry::compile(TPXdrawContext& context) const {
    uploadTextures(*this, context);
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
            drawFilled(*this, context, true);
            glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
            break;
        case TPXdrawStyle::Solid:
            drawFilled(*this, context, false);
            break;
    }
    glEndList();
    m_lists.set(context.lists, slotOf(context.style), list);
}

void TPXgeometry::draw(TPXdrawContext& context) const {
    const bool standIn = context.light && !context.picking && context.standIns &&
                         TPXstandIns::wanted(context.nodePixels) && !m_box.empty;
    if (standIn) {
        context.standIns->add(*this, context.nodePixels);
        return;
    }
    if (displayList(*context.lists, context.style) == 0)
        compile(context);
    if (const GLuint list = displayList(*context.lists, context.style))
        glCallList(list);
}

}  // namespace vellum
