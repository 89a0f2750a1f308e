// The Barnes-Hut octree of force3d: the repulsion that every point feels from all others, with a
// far cell of points taken as one point at its centre of mass, in O(log n) per point instead of
// O(n). Internal to force3d.
#pragma once

#include <vector>

#include "plugins/force3d/Vec3.h"

namespace vellum::force3d {

class Octree {
  public:
    // Builds the tree over the listed points (indices into `points`); the tree keeps copies, so
    // later changes to `points` do not reach it. Masses weight the points; empty means 1 each.
    void build(const std::vector<Vec3>& points, const std::vector<double>& masses,
               std::vector<int> indices);
    // Over every point.
    void build(const std::vector<Vec3>& points, const std::vector<double>& masses);

    bool empty() const { return nodes_.empty(); }

    // The sum over the tree's points q other than `self` of m * (p - q) / |p - q|^2: a push away
    // from each point that falls off as 1/distance. A cell is taken as one point when its width
    // is below theta times its distance; theta 0 sums exactly. Coinciding points push nothing.
    Vec3 repulsion(const Vec3& p, int self, double theta) const;
    // The same sum, exact, over the points within `radius` of p only: the push of the
    // neighbourhood, for a cost that does not grow with the tree.
    Vec3 repulsionWithin(const Vec3& p, int self, double radius) const;

  private:
    struct Node {
        Vec3 centre;      // of the cube
        double half = 0;  // half the cube's width
        Vec3 massCentre;
        double mass = 0;
        int begin = 0;  // the node's points are bodies_[begin, end)
        int end = 0;
        int firstChild = -1;  // children are nodes_[firstChild, firstChild + childCount)
        int childCount = 0;
    };

    // A point as the tree holds it: copied, so that a leaf's points lie side by side in memory.
    struct Body {
        Vec3 position;
        double mass = 1.0;
        int index = 0;  // in the caller's numbering
    };

    void summarise(Node& node) const;
    void split(int node, int depth);
    // Over the leaf's points other than `self` whose squared distance is at most `high2`.
    Vec3 leafRepulsion(const Node& node, const Vec3& p, int self, double high2) const;

    std::vector<Body> bodies_;  // grouped so that each node's bodies are contiguous
    std::vector<Body> scratch_;
    std::vector<Node> nodes_;  // nodes_[0] is the root
};

}  // namespace vellum::force3d
