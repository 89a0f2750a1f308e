// TPXcollisionModel: a tree of oriented bounding boxes over a geometry's triangles, fitted with
// the eigenvectors of each group's covariance. It answers which triangle a ray meets first
// without testing every triangle. Building it reports degenerate input on the console.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "tpx/TPXgeometry.h"
#include "tpx/TPXp3.h"

namespace vellum {

class TPXcollisionModel {
  public:
    struct Triangle {
        TPXp3 a;
        TPXp3 b;
        TPXp3 c;
        int polygon = -1;  // the polygon it was cut from
    };

    // Builds the tree over `triangles` (which may be empty). Triangles of zero area are kept
    // but reported once ("Warning!  Some triangles have zero area!" then "----").
    explicit TPXcollisionModel(std::vector<Triangle> triangles);
    ~TPXcollisionModel();
    TPXcollisionModel(const TPXcollisionModel&) = delete;
    TPXcollisionModel& operator=(const TPXcollisionModel&) = delete;

    // The triangles of a geometry's polygons, each polygon cut into a fan.
    static std::vector<Triangle> trianglesOf(const TPXgeometry& geometry);

    std::size_t triangleCount() const;
    // The first triangle the ray from `origin` along `direction` (not necessarily of unit
    // length) meets at a distance of 0 or more, if any.
    std::optional<TPXhit> closestHit(const TPXp3& origin, const TPXp3& direction) const;

  private:
    struct Tree;
    std::unique_ptr<Tree> m_tree;
};

}  // namespace vellum
