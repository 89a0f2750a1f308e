#include "tpx/TPXcollision.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/Console.h"

namespace vellum {

namespace {

using Matrix3 = double[3][3];

double offDiagonal(const Matrix3& a) {
    return std::abs(a[0][1]) + std::abs(a[0][2]) + std::abs(a[1][2]);
}

bool diagonalEnough(const Matrix3& a) {
    const double off = offDiagonal(a);
    const double diagonal = std::abs(a[0][0]) + std::abs(a[1][1]) + std::abs(a[2][2]);
    return off == 0.0 || off <= 1e-15 * diagonal;
}

// m := m * j, for a rotation j that only mixes columns p and q.
void rotateColumns(Matrix3& m, int p, int q, double c, double s) {
    for (int r = 0; r < 3; ++r) {
        const double mp = m[r][p];
        const double mq = m[r][q];
        m[r][p] = c * mp - s * mq;
        m[r][q] = s * mp + c * mq;
    }
}

// m := j^T * m, for the same rotation.
void rotateRows(Matrix3& m, int p, int q, double c, double s) {
    for (int k = 0; k < 3; ++k) {
        const double mp = m[p][k];
        const double mq = m[q][k];
        m[p][k] = c * mp - s * mq;
        m[q][k] = s * mp + c * mq;
    }
}

// One Jacobi rotation a := j^T a j that zeroes a[p][q]; the rotations are gathered in v.
void annihilate(Matrix3& a, Matrix3& v, int p, int q) {
    if (a[p][q] == 0.0)
        return;
    const double theta = (a[q][q] - a[p][p]) / (2.0 * a[p][q]);
    // The smaller root of t^2 + 2 t theta - 1 = 0 keeps the rotation below 45 degrees.
    const double t = std::copysign(1.0, theta) / (std::abs(theta) + std::hypot(theta, 1.0));
    const double c = 1.0 / std::sqrt(t * t + 1.0);
    const double s = t * c;
    rotateColumns(a, p, q, c, s);
    rotateRows(a, p, q, c, s);
    a[p][q] = a[q][p] = 0.0;
    rotateColumns(v, p, q, c, s);
}

double longestSquaredEdge(const TPXcollisionModel::Triangle& t) {
    return std::max(
        {(t.b - t.a).dot(t.b - t.a), (t.c - t.b).dot(t.c - t.b), (t.a - t.c).dot(t.a - t.c)});
}

// Zero area up to rounding: the finite corners are collinear or coincide.
bool hasZeroArea(const TPXcollisionModel::Triangle& t) {
    const TPXp3 normal = (t.b - t.a).cross(t.c - t.a);
    const double longest = longestSquaredEdge(t);
    return std::isfinite(longest) && normal.dot(normal) <= 1e-24 * longest * longest;
}

TPXp3 centroid(const TPXcollisionModel::Triangle& t) {
    return (t.a + t.b + t.c) * (1.0 / 3.0);
}

// The distance along the ray at which it meets `t` from either side, if it does at 0 or more.
std::optional<double> meet(const TPXcollisionModel::Triangle& t, const TPXp3& origin,
                           const TPXp3& direction) {
    const TPXp3 e1 = t.b - t.a;
    const TPXp3 e2 = t.c - t.a;
    const TPXp3 p = direction.cross(e2);
    const double det = e1.dot(p);
    // Parallel to the plane (or degenerate), measured against the sizes involved.
    if (det * det <= 1e-24 * e1.dot(e1) * e2.dot(e2) * direction.dot(direction))
        return std::nullopt;
    const TPXp3 s = origin - t.a;
    const double u = s.dot(p) / det;
    if (!(u >= 0.0 && u <= 1.0))
        return std::nullopt;
    const TPXp3 q = s.cross(e1);
    const double v = direction.dot(q) / det;
    if (!(v >= 0.0 && u + v <= 1.0))
        return std::nullopt;
    const double distance = e2.dot(q) / det;
    if (!(distance >= 0.0))
        return std::nullopt;
    return distance;
}

// Where the ray enters `box` if it does before `limit`: the slab test in the box's own axes.
std::optional<double> entry(const TPXcollisionModel::Box& box, const TPXp3& origin,
                            const TPXp3& direction, double limit) {
    const TPXp3 offset = origin - box.centre;
    const double half[3] = {box.halfSize.x(), box.halfSize.y(), box.halfSize.z()};
    double near = 0.0;
    double far = limit;
    for (int i = 0; i < 3; ++i) {
        const double o = offset.dot(box.axes[i]);
        const double d = direction.dot(box.axes[i]);
        if (d == 0.0) {
            if (std::abs(o) > half[i])
                return std::nullopt;
            continue;
        }
        double t1 = (-half[i] - o) / d;
        double t2 = (half[i] - o) / d;
        if (t1 > t2)
            std::swap(t1, t2);
        near = std::max(near, t1);
        far = std::min(far, t2);
        if (near > far)
            return std::nullopt;
    }
    return near;
}

}  // namespace

TPXeigenSystem TPXjacobiEigen(const double (&matrix)[3][3], int maxSweeps) {
    Matrix3 a;
    Matrix3 v = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    std::copy(&matrix[0][0], &matrix[0][0] + 9, &a[0][0]);
    TPXeigenSystem result;
    int sweeps = 0;
    for (;;) {
        result.converged = diagonalEnough(a);
        if (result.converged || sweeps >= maxSweeps)
            break;
        annihilate(a, v, 0, 1);
        annihilate(a, v, 0, 2);
        annihilate(a, v, 1, 2);
        ++sweeps;
    }
    if (!result.converged)
        console() << "eigen: too many iterations in Jacobi transform (" << sweeps << ").\n";
    for (int i = 0; i < 3; ++i) {
        result.values[i] = a[i][i];
        result.vectors[i] = TPXp3(v[0][i], v[1][i], v[2][i]);
    }
    return result;
}

// A box of the tree over the contiguous run order[first, first + count) of the triangles; an
// inner node's two children are consecutive.
struct TPXcollisionModel::Node {
    Box box;
    std::size_t first = 0;
    std::size_t count = 0;
    std::size_t children = 0;  // index of the first child, 0 for a leaf (the root is no child)
};

// The triangles, a permutation of their indices and the boxes over it.
struct TPXcollisionModel::Tree {
    std::vector<Triangle> triangles;
    std::vector<TPXp3> centroids;
    std::vector<std::size_t> order;
    std::vector<Node> nodes;
    int depth = 0;

    explicit Tree(std::vector<Triangle> input);
    template <typename Visit>
    void forCorners(std::size_t first, std::size_t count, Visit visit) const;
    void principalAxes(std::size_t first, std::size_t count, TPXp3 (&axes)[3]) const;
    Box fit(std::size_t first, std::size_t count) const;
    std::size_t split(const Node& node);
    void hitLeaf(const Node& node, const TPXp3& origin, const TPXp3& direction,
                 std::optional<TPXhit>& best, std::size_t& bestIndex) const;
};

TPXcollisionModel::Tree::Tree(std::vector<Triangle> input) : triangles(std::move(input)) {
    if (triangles.empty())
        return;
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        centroids.push_back(centroid(triangles[i]));
        order.push_back(i);
    }
    // Iterative, so that a lopsided shape cannot exhaust the call stack.
    struct Pending {
        std::size_t node;
        int level;
    };
    nodes.push_back(Node{Box{}, 0, triangles.size(), 0});
    std::vector<Pending> pending{{0, 1}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        Node& node = nodes[next.node];
        node.box = fit(node.first, node.count);
        depth = std::max(depth, next.level);
        if (node.count <= leafTriangles)
            continue;
        const std::size_t leftCount = split(node);
        const Node left{Box{}, node.first, leftCount, 0};
        const Node right{Box{}, node.first + leftCount, node.count - leftCount, 0};
        node.children = nodes.size();  // `node` is invalid after the pushes below
        nodes.push_back(left);
        nodes.push_back(right);
        pending.push_back({nodes.size() - 2, next.level + 1});
        pending.push_back({nodes.size() - 1, next.level + 1});
    }
}

// Calls visit(p) for each corner of the triangles order[first, first + count).
template <typename Visit>
void TPXcollisionModel::Tree::forCorners(std::size_t first, std::size_t count, Visit visit) const {
    for (std::size_t i = first; i < first + count; ++i) {
        const Triangle& t = triangles[order[i]];
        visit(t.a);
        visit(t.b);
        visit(t.c);
    }
}

// The eigenvectors of the covariance of the corners of order[first, first + count). Corners
// that are not finite leave the world axes, which are as good as any for such a box.
void TPXcollisionModel::Tree::principalAxes(std::size_t first, std::size_t count,
                                            TPXp3 (&axes)[3]) const {
    TPXp3 mean;
    forCorners(first, count, [&](const TPXp3& p) { mean += p; });
    mean = mean * (1.0 / (3.0 * static_cast<double>(count)));
    double covariance[3][3] = {};
    forCorners(first, count, [&](const TPXp3& p) {
        const TPXp3 d = p - mean;
        const double c[3] = {d.x(), d.y(), d.z()};
        for (int r = 0; r < 3; ++r)
            for (int k = 0; k < 3; ++k)
                covariance[r][k] += c[r] * c[k];
    });
    axes[0] = TPXp3(1, 0, 0);
    axes[1] = TPXp3(0, 1, 0);
    axes[2] = TPXp3(0, 0, 1);
    if (!std::all_of(&covariance[0][0], &covariance[0][0] + 9,
                     [](double x) { return std::isfinite(x); }))
        return;
    const TPXeigenSystem eigen = TPXjacobiEigen(covariance);
    std::copy(std::begin(eigen.vectors), std::end(eigen.vectors), axes);
}

// The box along the principal axes of the corners of order[first, first + count).
TPXcollisionModel::Box TPXcollisionModel::Tree::fit(std::size_t first, std::size_t count) const {
    Box box;
    principalAxes(first, count, box.axes);
    double low[3];
    double high[3];
    std::fill(std::begin(low), std::end(low), std::numeric_limits<double>::infinity());
    std::fill(std::begin(high), std::end(high), -std::numeric_limits<double>::infinity());
    forCorners(first, count, [&](const TPXp3& p) {
        for (int i = 0; i < 3; ++i) {
            const double along = p.dot(box.axes[i]);
            low[i] = std::min(low[i], along);
            high[i] = std::max(high[i], along);
        }
    });
    // A little slack absorbs the rounding of the projections, so a box never cuts a corner off.
    double scale = 0.0;
    for (int i = 0; i < 3; ++i)
        scale = std::max({scale, std::abs(low[i]), std::abs(high[i])});
    if (!std::isfinite(scale)) {
        // Corners at infinity (or none finite): a box without bounds, which every ray enters.
        const double infinity = std::numeric_limits<double>::infinity();
        box.halfSize = TPXp3(infinity, infinity, infinity);
        return box;
    }
    const double slack = 1e-9 * scale;
    double half[3];
    for (int i = 0; i < 3; ++i) {
        box.centre += box.axes[i] * (0.5 * (low[i] + high[i]));
        half[i] = 0.5 * (high[i] - low[i]) + slack;
    }
    box.halfSize = TPXp3(half[0], half[1], half[2]);
    return box;
}

// Reorders the node's run into two non-empty halves along the box's longest axis, at the mean of
// the centroids or, when all fall on one side, at their median. Returns the first half's size.
std::size_t TPXcollisionModel::Tree::split(const Node& node) {
    const TPXp3& h = node.box.halfSize;
    const int axis = h.x() >= h.y() && h.x() >= h.z() ? 0 : (h.y() >= h.z() ? 1 : 2);
    const TPXp3 direction = node.box.axes[axis];
    // NaN coordinates count as 0, so that the ordering below stays a strict weak order.
    const auto key = [&](std::size_t t) {
        const double along = centroids[t].dot(direction);
        return std::isnan(along) ? 0.0 : along;
    };
    const auto begin = order.begin() + static_cast<std::ptrdiff_t>(node.first);
    const auto end = begin + static_cast<std::ptrdiff_t>(node.count);
    double sum = 0.0;
    for (auto i = begin; i != end; ++i)
        sum += key(*i);
    const double mean = sum / static_cast<double>(node.count);
    const auto middle = std::partition(begin, end, [&](std::size_t t) { return key(t) < mean; });
    if (middle != begin && middle != end)
        return static_cast<std::size_t>(middle - begin);
    const auto median = begin + static_cast<std::ptrdiff_t>(node.count / 2);
    std::nth_element(begin, median, end,
                     [&](std::size_t s, std::size_t t) { return key(s) < key(t); });
    return node.count / 2;
}

void TPXcollisionModel::Tree::hitLeaf(const Node& node, const TPXp3& origin, const TPXp3& direction,
                                      std::optional<TPXhit>& best, std::size_t& bestIndex) const {
    for (std::size_t i = node.first; i < node.first + node.count; ++i) {
        const std::size_t index = order[i];
        const std::optional<double> distance = meet(triangles[index], origin, direction);
        if (!distance)
            continue;
        if (best &&
            (*distance > best->distance || (*distance == best->distance && index > bestIndex)))
            continue;
        best = TPXhit{*distance, origin + direction * *distance, triangles[index].polygon};
        bestIndex = index;
    }
}

TPXcollisionModel::TPXcollisionModel(std::vector<Triangle> triangles) {
    if (std::any_of(triangles.begin(), triangles.end(), hasZeroArea))
        console() << "Warning!  Some triangles have zero area!\n"
                  << "----\n";
    m_tree = std::make_unique<Tree>(std::move(triangles));
}

TPXcollisionModel::~TPXcollisionModel() = default;

std::vector<TPXcollisionModel::Triangle> TPXcollisionModel::trianglesOf(
    const TPXgeometry& geometry) {
    std::vector<Triangle> triangles;
    const auto& vertices = geometry.vertices();
    auto at = [&](int index) {
        return index >= 0 && static_cast<std::size_t>(index) < vertices.size()
                   ? vertices[static_cast<std::size_t>(index)].position
                   : TPXp3();
    };
    int number = 0;
    for (const TPXpolygon& polygon : geometry.polygons()) {
        for (int i = 1; i + 1 < polygon.size(); ++i)
            triangles.push_back(
                {at(polygon.corner(0)), at(polygon.corner(i)), at(polygon.corner(i + 1)), number});
        ++number;
    }
    return triangles;
}

std::size_t TPXcollisionModel::triangleCount() const {
    return m_tree->triangles.size();
}

std::optional<TPXhit> TPXcollisionModel::closestHit(const TPXp3& origin,
                                                    const TPXp3& direction) const {
    const auto& nodes = m_tree->nodes;
    std::optional<TPXhit> best;
    std::size_t bestIndex = 0;
    const auto limit = [&] {
        return best ? best->distance : std::numeric_limits<double>::infinity();
    };
    // Boxes still to open, with the distance at which the ray enters them; nearer ones on top.
    std::vector<std::pair<std::size_t, double>> open;
    if (nodes.empty())
        return best;
    if (const auto root = entry(nodes[0].box, origin, direction, limit()))
        open.emplace_back(0, *root);
    while (!open.empty()) {
        const auto [index, enter] = open.back();
        open.pop_back();
        if (enter > limit())
            continue;
        const Node& current = nodes[index];
        if (current.children == 0) {
            m_tree->hitLeaf(current, origin, direction, best, bestIndex);
            continue;
        }
        const std::size_t first = current.children;
        const auto a = entry(nodes[first].box, origin, direction, limit());
        const auto b = entry(nodes[first + 1].box, origin, direction, limit());
        if (a && b && *a < *b) {
            open.emplace_back(first + 1, *b);
            open.emplace_back(first, *a);
            continue;
        }
        if (a)
            open.emplace_back(first, *a);
        if (b)
            open.emplace_back(first + 1, *b);
    }
    return best;
}

std::size_t TPXcollisionModel::boxCount() const {
    return m_tree->nodes.size();
}

// Box `index`, or after a report an empty leaf for an index out of range.
const TPXcollisionModel::Node& TPXcollisionModel::node(std::size_t index) const {
    static const Node none{};
    if (index < m_tree->nodes.size())
        return m_tree->nodes[index];
    reportAssertion("index < boxCount()", "Src/TPXcollision", __LINE__);
    return none;
}

const TPXcollisionModel::Box& TPXcollisionModel::box(std::size_t index) const {
    return node(index).box;
}

std::vector<std::size_t> TPXcollisionModel::trianglesInBox(std::size_t index) const {
    const Node& run = node(index);
    const auto begin = m_tree->order.begin() + static_cast<std::ptrdiff_t>(run.first);
    return {begin, begin + static_cast<std::ptrdiff_t>(run.count)};
}

bool TPXcollisionModel::isLeaf(std::size_t index) const {
    return node(index).children == 0;
}

int TPXcollisionModel::depth() const {
    return m_tree->depth;
}

const TPXcollisionModel::Triangle& TPXcollisionModel::triangle(std::size_t index) const {
    static const Triangle none{};
    if (index < m_tree->triangles.size())
        return m_tree->triangles[index];
    reportAssertion("index < triangleCount()", "Src/TPXcollision", __LINE__);
    return none;
}

}  // namespace vellum
