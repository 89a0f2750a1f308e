// TPXcollisionModel: a tree of oriented bounding boxes over a geometry's triangles, fitted with
// the eigenvectors of each group's covariance. It answers which triangle a ray meets first
// without testing every triangle. Building it reports degenerate input on the console.
#pragma once

#include <cstddef>
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

    // An oriented box: its centre, three orthonormal axes and its half size along each axis.
    struct Box {
        TPXp3 centre;
        TPXp3 axes[3];
        TPXp3 halfSize;
    };

    // A leaf holds at most this many triangles.
    static constexpr std::size_t leafTriangles = 4;

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
    // length) meets at a distance of 0 or more, from either face, if any. Of triangles met at
    // the same distance the one given first wins. A zero direction meets nothing.
    std::optional<TPXhit> closestHit(const TPXp3& origin, const TPXp3& direction) const;

    // The tree, for checks: box 0 is the root (none for an empty model); triangle indices are
    // positions in the vector given at construction. An index out of range is reported as a
    // failed assertion naming "Src/TPXcollision" and yields an empty leaf or triangle.
    std::size_t boxCount() const;
    const Box& box(std::size_t index) const;
    std::vector<std::size_t> trianglesInBox(std::size_t index) const;
    bool isLeaf(std::size_t index) const;
    // Boxes on the longest path from the root to a leaf (0 for an empty model).
    int depth() const;
    const Triangle& triangle(std::size_t index) const;

  private:
    struct Node;
    struct Tree;
    const Node& node(std::size_t index) const;
    std::unique_ptr<Tree> m_tree;
};

// The eigenvectors of a symmetric 3x3 matrix by cyclic Jacobi rotations, used to fit the boxes.
// After `maxSweeps` sweeps without convergence it gives up with "eigen: too many iterations in
// Jacobi transform (N).", N being the sweeps done, and returns the rotation reached: its axes
// are still orthonormal, so a box fitted with them is only looser, never wrong.
struct TPXeigenSystem {
    static constexpr int defaultSweeps = 50;
    double values[3] = {0.0, 0.0, 0.0};
    TPXp3 vectors[3];  // unit length, vectors[i] belonging to values[i]
    bool converged = false;
};
TPXeigenSystem TPXjacobiEigen(const double (&matrix)[3][3],
                              int maxSweeps = TPXeigenSystem::defaultSweeps);

}  // namespace vellum
