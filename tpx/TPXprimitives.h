// The built-in shapes, each a geometry built from its sizes and a material (no GLU quadrics):
// sphere, cube, cylinder and cone, with the system's default sizes. Cylinders and cones stand
// on the x-z plane along +y, centred on the origin.
#pragma once

#include "tpx/TPXgeometry.h"
#include "tpx/TPXmaterial.h"

namespace vellum {

// Slices and stacks below 4 are raised to 4. (stacks - 1) * slices + 2 vertices: the north pole
// (vertex 0), the south pole (vertex 1), then the rings from north to south.
TPXref<TPXgeometry> TPXsphere(int slices, int stacks, double radius, TPXref<TPXmaterial> material);
// A box centred on the origin with edge lengths size.x, size.y and size.z: 8 vertices, 6 faces.
TPXref<TPXgeometry> TPXcube(const TPXp3& size, TPXref<TPXmaterial> material);
// 2 * slices vertices (bottom ring, then top ring), slices + 2 faces (sides, then the two caps).
TPXref<TPXgeometry> TPXcylinder(int slices, double radius, double height,
                                TPXref<TPXmaterial> material);
// slices + 1 vertices (the base ring, then the apex), slices + 1 faces (sides, then the base).
TPXref<TPXgeometry> TPXcone(int slices, double radius, double height, TPXref<TPXmaterial> material);

// The sizes used across the system.
struct TPXdefaults {
    static constexpr int slices = 6;
    static constexpr int stacks = 6;
    static constexpr double radius = 0.375;
    static constexpr double height = 0.8;
    static constexpr double cubeEdge = 0.7;
};

}  // namespace vellum
