#include "tpx/TPXprimitives.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace vellum {

namespace {

constexpr double degree = 3.14159265359 / 180.0;

TPXref<TPXgeometry> makeGeometry(const char* name) {
    return TPXref<TPXgeometry>(new TPXgeometry(name));
}

// Adds a face over `corners` (counter-clockwise seen from outside) with its normal.
void addFace(TPXgeometry& geometry, std::initializer_list<int> corners,
             const TPXref<TPXmaterial>& material) {
    TPXpolygon polygon(static_cast<int>(corners.size()));
    int i = 0;
    for (int corner : corners)
        polygon.setCorner(i++, corner);
    const auto& v = geometry.vertices();
    const TPXp3& a = v[static_cast<std::size_t>(polygon.corner(0))].position;
    const TPXp3& b = v[static_cast<std::size_t>(polygon.corner(1))].position;
    const TPXp3& c = v[static_cast<std::size_t>(polygon.corner(2))].position;
    polygon.setNormal((b - a).cross(c - a).normalised());
    polygon.setMaterial(material);
    geometry.polygons().push_back(std::move(polygon));
}

// The ring of `slices` vertices at height y, radius r, starting on +z and turning
// counter-clockwise seen from +y; each with `normalAt(direction)`.
template <typename Normal>
void addRing(TPXgeometry& geometry, int slices, double r, double y, Normal normalAt) {
    for (int s = 0; s < slices; ++s) {
        const double angle = 360.0 / slices * s * degree;
        const TPXp3 direction(std::sin(angle), 0.0, std::cos(angle));
        geometry.vertices().push_back(
            {TPXp3(r * direction.x(), y, r * direction.z()), normalAt(direction)});
    }
}

}  // namespace

TPXref<TPXgeometry> TPXsphere(int slices, int stacks, double radius, TPXref<TPXmaterial> material) {
    slices = std::max(slices, 4);
    stacks = std::max(stacks, 4);
    TPXref<TPXgeometry> sphere = makeGeometry("TPXgeometry_sphere");
    auto& vertices = sphere->vertices();
    vertices.push_back({TPXp3(0, radius, 0), TPXp3(0, 1, 0)});
    vertices.push_back({TPXp3(0, -radius, 0), TPXp3(0, -1, 0)});
    // Rings at every latitude step strictly between the poles, longitudes from 0 below 360.
    const int rings = stacks - 1;
    for (int ring = 0; ring < rings; ++ring) {
        const double lat = 180.0 / stacks * (ring + 1) * degree;
        for (int s = 0; s < slices; ++s) {
            const double lon = 360.0 / slices * s * degree;
            const TPXp3 direction(std::sin(lat) * std::sin(lon), std::cos(lat),
                                  std::sin(lat) * std::cos(lon));
            vertices.push_back({direction * radius, direction});
        }
    }
    auto at = [slices](int ring, int s) { return 2 + ring * slices + (s % slices); };
    for (int s = 0; s < slices; ++s)
        addFace(*sphere, {0, at(0, s), at(0, s + 1)}, material);
    for (int ring = 0; ring + 1 < rings; ++ring)
        for (int s = 0; s < slices; ++s)
            addFace(*sphere, {at(ring, s), at(ring + 1, s), at(ring + 1, s + 1), at(ring, s + 1)},
                    material);
    for (int s = 0; s < slices; ++s)
        addFace(*sphere, {1, at(rings - 1, s + 1), at(rings - 1, s)}, material);
    sphere->finish();
    return sphere;
}

TPXref<TPXgeometry> TPXcube(const TPXp3& size, TPXref<TPXmaterial> material) {
    TPXref<TPXgeometry> cube = makeGeometry("TPXgeometry_cube");
    const TPXp3 half = size * 0.5;
    // Vertex i has bit 0 for +x, bit 1 for +y, bit 2 for +z.
    for (int i = 0; i < 8; ++i) {
        const TPXp3 corner((i & 1) ? half.x() : -half.x(), (i & 2) ? half.y() : -half.y(),
                           (i & 4) ? half.z() : -half.z());
        cube->vertices().push_back({corner, corner.normalised()});
    }
    addFace(*cube, {0, 4, 6, 2}, material);  // -x
    addFace(*cube, {1, 3, 7, 5}, material);  // +x
    addFace(*cube, {0, 1, 5, 4}, material);  // -y
    addFace(*cube, {2, 6, 7, 3}, material);  // +y
    addFace(*cube, {0, 2, 3, 1}, material);  // -z
    addFace(*cube, {4, 5, 7, 6}, material);  // +z
    cube->finish();
    return cube;
}

TPXref<TPXgeometry> TPXcylinder(int slices, double radius, double height,
                                TPXref<TPXmaterial> material) {
    slices = std::max(slices, 4);
    TPXref<TPXgeometry> cylinder = makeGeometry("TPXgeometry_cylinder");
    const auto radial = [](const TPXp3& direction) { return direction; };
    addRing(*cylinder, slices, radius, -height / 2, radial);
    addRing(*cylinder, slices, radius, height / 2, radial);
    for (int s = 0; s < slices; ++s) {
        const int next = (s + 1) % slices;
        addFace(*cylinder, {s, next, slices + next, slices + s}, material);
    }
    TPXpolygon bottom(slices);
    TPXpolygon top(slices);
    for (int s = 0; s < slices; ++s) {
        bottom.setCorner(s, slices - 1 - s);
        top.setCorner(s, slices + s);
    }
    bottom.setNormal(TPXp3(0, -1, 0));
    top.setNormal(TPXp3(0, 1, 0));
    bottom.setMaterial(material);
    top.setMaterial(material);
    cylinder->polygons().push_back(std::move(bottom));
    cylinder->polygons().push_back(std::move(top));
    cylinder->finish();
    return cylinder;
}

TPXref<TPXgeometry> TPXcone(int slices, double radius, double height,
                            TPXref<TPXmaterial> material) {
    slices = std::max(slices, 4);
    TPXref<TPXgeometry> cone = makeGeometry("TPXgeometry_cone");
    // The side's normal leans up by the slope of the side.
    const double slope = radius / height;
    addRing(*cone, slices, radius, -height / 2, [slope](const TPXp3& direction) {
        return TPXp3(direction.x(), slope, direction.z()).normalised();
    });
    const int apex = slices;
    cone->vertices().push_back({TPXp3(0, height / 2, 0), TPXp3(0, 1, 0)});
    for (int s = 0; s < slices; ++s)
        addFace(*cone, {s, (s + 1) % slices, apex}, material);
    TPXpolygon base(slices);
    for (int s = 0; s < slices; ++s)
        base.setCorner(s, slices - 1 - s);
    base.setNormal(TPXp3(0, -1, 0));
    base.setMaterial(material);
    cone->polygons().push_back(std::move(base));
    cone->finish();
    return cone;
}

}  // namespace vellum
