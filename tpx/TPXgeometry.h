// TPXgeometry: the shape of a scene object, a shared resource. It holds a vertex array (position
// and normal each), a list of polygons over those vertices, a bounding box, one display list per
// draw style in each GL context it was drawn in, and a collision model built on first use.
// Filling: change vertices() and polygons(), then call finish(); finishing again after a change
// drops the compiled lists and the collision model.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tpx/TPXdrawContext.h"
#include "tpx/TPXlists.h"
#include "tpx/TPXp3.h"
#include "tpx/TPXpolygon.h"
#include "tpx/TPXshared.h"

namespace vellum {

class TPXcollisionModel;

struct TPXvertex {
    TPXp3 position;
    TPXp3 normal;
};

// The box of lines drawn round a geometry, a helper named "__TPXboundingbox__".
struct TPXboundingBox {
    static constexpr const char* name = "__TPXboundingbox__";
    TPXp3 min;
    TPXp3 max;
    bool empty = true;  // no vertices

    TPXp3 centre() const { return (min + max) * 0.5; }
    // Draws the twelve edges as lines in the current colour (a context must be current).
    void draw() const;
};

// The nearest point where a ray meets a geometry, in the geometry's own space.
struct TPXhit {
    double distance = 0.0;  // along the ray, in units of its direction's length
    TPXp3 point;
    int polygon = -1;  // the polygon hit
};

class TPXgeometry : public TPXshared {
  public:
    static constexpr int styles = 3;  // outline, wireframe, solid

    explicit TPXgeometry(std::string name);

    const std::string& name() const { return m_name; }
    std::vector<TPXvertex>& vertices() { return m_vertices; }
    const std::vector<TPXvertex>& vertices() const { return m_vertices; }
    std::vector<TPXpolygon>& polygons() { return m_polygons; }
    const std::vector<TPXpolygon>& polygons() const { return m_polygons; }

    // Computes the bounding box and drops everything derived from the old shape (display
    // lists, collision model). Call after filling or changing vertices and polygons.
    void finish();
    const TPXboundingBox& boundingBox() const { return m_box; }

    // Draws the geometry in `context.style`, compiling that style's display list in the
    // context's store the first time and replaying it afterwards. In the light picture a
    // geometry that covers few pixels (context.nodePixels) hands a stand-in to
    // context.standIns instead. A context must be current.
    void draw(TPXdrawContext& context) const;
    // The display list of `style` in `store`, 0 if not compiled there yet (for tests).
    GLuint displayList(const TPXlistStore& store, TPXdrawStyle style) const;

    // The collision model of the polygons' triangles, built on the first call (any thread).
    const TPXcollisionModel& collisionModel() const;
    // The closest hit of the ray from `origin` along `direction` (geometry space), if any.
    std::optional<TPXhit> closestHit(const TPXp3& origin, const TPXp3& direction) const;

  private:
    ~TPXgeometry() override;
    void compile(TPXdrawContext& context) const;

    std::string m_name;
    std::vector<TPXvertex> m_vertices;
    std::vector<TPXpolygon> m_polygons;
    TPXboundingBox m_box;
    mutable TPXlists<styles> m_lists;
    mutable std::mutex m_collisionMutex;
    mutable std::unique_ptr<TPXcollisionModel> m_collision;  // null until first asked for
};

}  // namespace vellum
