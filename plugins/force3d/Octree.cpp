#include "plugins/force3d/Octree.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vellum::force3d {

namespace {

constexpr int kLeafSize = 8;   // a cell with this few points is summed point by point
constexpr int kMaxDepth = 32;  // coinciding points would otherwise split forever
constexpr double kTiny = 1e-18;

int octant(const Vec3& p, const Vec3& centre) {
    return (p.x >= centre.x ? 1 : 0) | (p.y >= centre.y ? 2 : 0) | (p.z >= centre.z ? 4 : 0);
}

Vec3 childCentre(const Vec3& centre, double quarter, int octant) {
    return {centre.x + ((octant & 1) ? quarter : -quarter),
            centre.y + ((octant & 2) ? quarter : -quarter),
            centre.z + ((octant & 4) ? quarter : -quarter)};
}

}  // namespace

void Octree::build(const std::vector<Vec3>& points, const std::vector<double>& masses) {
    std::vector<int> all(points.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<int>(i);
    build(points, masses, std::move(all));
}

void Octree::build(const std::vector<Vec3>& points, const std::vector<double>& masses,
                   std::vector<int> indices) {
    bodies_.clear();
    bodies_.reserve(indices.size());
    for (int index : indices)
        bodies_.push_back({points[index], masses.empty() ? 1.0 : masses[index], index});
    scratch_.resize(bodies_.size());
    nodes_.clear();
    if (bodies_.empty())
        return;
    Vec3 low = bodies_[0].position;
    Vec3 high = low;
    for (const Body& body : bodies_) {
        const Vec3& p = body.position;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    Node root;
    root.centre = (low + high) * 0.5;
    root.half = 0.5 * std::max({high.x - low.x, high.y - low.y, high.z - low.z}) + 1e-9;
    root.end = static_cast<int>(bodies_.size());
    nodes_.push_back(root);
    split(0, 0);
}

void Octree::summarise(Node& node) const {
    Vec3 weighted;
    double mass = 0.0;
    for (int i = node.begin; i < node.end; ++i) {
        weighted += bodies_[i].position * bodies_[i].mass;
        mass += bodies_[i].mass;
    }
    node.mass = mass;
    node.massCentre = mass > 0.0 ? weighted * (1.0 / mass) : node.centre;
}

void Octree::split(int index, int depth) {
    summarise(nodes_[index]);
    const Node node = nodes_[index];
    if (node.end - node.begin <= kLeafSize || depth >= kMaxDepth)
        return;
    // Counting sort of the node's bodies by octant, through the scratch buffer.
    std::array<int, 9> start{};
    for (int i = node.begin; i < node.end; ++i)
        ++start[octant(bodies_[i].position, node.centre) + 1];
    for (int o = 0; o < 8; ++o)
        start[o + 1] += start[o];
    std::array<int, 8> fill{};
    for (int i = node.begin; i < node.end; ++i) {
        const int o = octant(bodies_[i].position, node.centre);
        scratch_[node.begin + start[o] + fill[o]++] = bodies_[i];
    }
    std::copy(scratch_.begin() + node.begin, scratch_.begin() + node.end,
              bodies_.begin() + node.begin);

    const int firstChild = static_cast<int>(nodes_.size());
    for (int o = 0; o < 8; ++o) {
        if (start[o + 1] == start[o])
            continue;
        Node child;
        child.centre = childCentre(node.centre, 0.5 * node.half, o);
        child.half = 0.5 * node.half;
        child.begin = node.begin + start[o];
        child.end = node.begin + start[o + 1];
        nodes_.push_back(child);
    }
    nodes_[index].firstChild = firstChild;
    nodes_[index].childCount = static_cast<int>(nodes_.size()) - firstChild;
    for (int c = 0; c < nodes_[index].childCount; ++c)
        split(firstChild + c, depth + 1);
}

Vec3 Octree::leafRepulsion(const Node& node, const Vec3& p, int self, double high2) const {
    Vec3 sum;
    for (int i = node.begin; i < node.end; ++i) {
        const Body& body = bodies_[i];
        const Vec3 d = p - body.position;
        const double d2 = d.lengthSquared();
        if (body.index != self && d2 > kTiny && d2 <= high2)
            sum += d * (body.mass / d2);
    }
    return sum;
}

Vec3 Octree::repulsion(const Vec3& p, int self, double theta) const {
    Vec3 sum;
    if (nodes_.empty())
        return sum;
    const double theta2 = theta * theta;
    // Depth-first with an explicit stack: at most 7 siblings wait per level.
    std::array<int, 8 * (kMaxDepth + 2)> stack;
    int top = 0;
    stack[top++] = 0;
    while (top > 0) {
        const Node& node = nodes_[stack[--top]];
        const Vec3 d = p - node.massCentre;
        const double d2 = d.lengthSquared();
        const double width = 2.0 * node.half;
        if (width * width < theta2 * d2) {
            sum += d * (node.mass / d2);
            continue;
        }
        if (node.firstChild < 0) {
            sum += leafRepulsion(node, p, self, HUGE_VAL);
            continue;
        }
        for (int c = 0; c < node.childCount; ++c)
            stack[top++] = node.firstChild + c;
    }
    return sum;
}

Vec3 Octree::repulsionWithin(const Vec3& p, int self, double radius) const {
    Vec3 sum;
    if (nodes_.empty())
        return sum;
    std::array<int, 8 * (kMaxDepth + 2)> stack;
    int top = 0;
    stack[top++] = 0;
    while (top > 0) {
        const Node& node = nodes_[stack[--top]];
        // Skip a cube that lies wholly outside the ball (its nearest point is too far).
        const double dx = std::max(std::fabs(p.x - node.centre.x) - node.half, 0.0);
        const double dy = std::max(std::fabs(p.y - node.centre.y) - node.half, 0.0);
        const double dz = std::max(std::fabs(p.z - node.centre.z) - node.half, 0.0);
        if (dx * dx + dy * dy + dz * dz > radius * radius)
            continue;
        if (node.firstChild < 0) {
            sum += leafRepulsion(node, p, self, radius * radius);
            continue;
        }
        for (int c = 0; c < node.childCount; ++c)
            stack[top++] = node.firstChild + c;
    }
    return sum;
}

}  // namespace vellum::force3d
