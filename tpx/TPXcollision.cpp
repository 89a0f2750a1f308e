#include "tpx/TPXcollision.h"

#include <cmath>

namespace vellum {

// Until the box tree lands every triangle is tried in turn.
struct TPXcollisionModel::Tree {
    std::vector<Triangle> triangles;
};

TPXcollisionModel::TPXcollisionModel(std::vector<Triangle> triangles)
    : m_tree(std::make_unique<Tree>(Tree{std::move(triangles)})) {}

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
    std::optional<TPXhit> best;
    for (const Triangle& t : m_tree->triangles) {
        // Moeller-Trumbore, both faces.
        const TPXp3 e1 = t.b - t.a;
        const TPXp3 e2 = t.c - t.a;
        const TPXp3 p = direction.cross(e2);
        const double det = e1.dot(p);
        if (std::abs(det) < 1e-12)
            continue;
        const TPXp3 s = origin - t.a;
        const double u = s.dot(p) / det;
        if (u < 0 || u > 1)
            continue;
        const TPXp3 q = s.cross(e1);
        const double v = direction.dot(q) / det;
        if (v < 0 || u + v > 1)
            continue;
        const double distance = e2.dot(q) / det;
        if (distance < 0 || (best && best->distance <= distance))
            continue;
        best = TPXhit{distance, origin + direction * distance, t.polygon};
    }
    return best;
}

}  // namespace vellum
