// The built-in shapes: their vertex and face counts, the raised minimum of slices and stacks,
// faces turned outwards (drawing culls back faces) and the bounding box.
#include <gtest/gtest.h>

#include "tpx/TPXprimitives.h"
#include "tpx/tests/TPXtestSupport.h"

namespace vellum {
namespace {

TPXref<TPXmaterial> azure() {
    return TPXmaterial::plain({0, 0.5, 1});
}

struct Shape {
    const char* what;
    TPXref<TPXgeometry> geometry;
    const char* name;
    std::size_t vertices;
    std::size_t faces;
};

std::vector<Shape> shapes() {
    using D = TPXdefaults;
    return {
        {"default sphere", TPXsphere(D::slices, D::stacks, D::radius, azure()),
         "TPXgeometry_sphere", 32, 36},
        {"sphere of 2 slices, 3 stacks", TPXsphere(2, 3, 1, azure()), "TPXgeometry_sphere", 14, 16},
        {"sphere of 8 slices, 5 stacks", TPXsphere(8, 5, 1, azure()), "TPXgeometry_sphere", 34, 40},
        {"default cube", TPXcube({D::cubeEdge, D::cubeEdge, D::cubeEdge}, azure()),
         "TPXgeometry_cube", 8, 6},
        {"default cylinder", TPXcylinder(D::slices, D::radius, D::height, azure()),
         "TPXgeometry_cylinder", 12, 8},
        {"cylinder of 1 slice", TPXcylinder(1, 1, 1, azure()), "TPXgeometry_cylinder", 8, 6},
        {"default cone", TPXcone(D::slices, D::radius, D::height, azure()), "TPXgeometry_cone", 7,
         7},
        {"cone of 3 slices", TPXcone(3, 1, 1, azure()), "TPXgeometry_cone", 5, 5},
    };
}

TEST(TPXprimitives, CountsNamesAndOutwardFaces) {
    for (const Shape& shape : shapes()) {
        SCOPED_TRACE(shape.what);
        const TPXgeometry& g = *shape.geometry;
        EXPECT_EQ(g.name(), shape.name);
        EXPECT_EQ(g.vertices().size(), shape.vertices);
        ASSERT_EQ(g.polygons().size(), shape.faces);
        const TPXp3 centre = g.boundingBox().centre();
        for (const TPXpolygon& face : g.polygons()) {
            ASSERT_GE(face.size(), 3);
            TPXp3 middle;
            for (int corner : face.corners()) {
                ASSERT_LT(static_cast<std::size_t>(corner), g.vertices().size());
                middle += g.vertices()[static_cast<std::size_t>(corner)].position;
            }
            middle = middle * (1.0 / face.size());
            // Counter-clockwise seen from outside: the face normal points away from the centre,
            // and the stored normal agrees with the corner order.
            const auto& v = g.vertices();
            const TPXp3 a = v[static_cast<std::size_t>(face.corner(0))].position;
            const TPXp3 b = v[static_cast<std::size_t>(face.corner(1))].position;
            const TPXp3 c = v[static_cast<std::size_t>(face.corner(2))].position;
            const TPXp3 turn = (b - a).cross(c - a);
            EXPECT_GT(turn.dot(middle - centre), 0.0);
            EXPECT_GT(face.normal().dot(turn), 0.0);
            EXPECT_TRUE(face.material());
        }
    }
}

TEST(TPXprimitives, SpherePolesRingsAndBox) {
    TPXref<TPXgeometry> sphere = TPXsphere(6, 6, 0.375, azure());
    const auto& v = sphere->vertices();
    EXPECT_TRUE(test::near(v[0].position, {0, 0.375, 0}));
    EXPECT_TRUE(test::near(v[0].normal, {0, 1, 0}));
    EXPECT_TRUE(test::near(v[1].position, {0, -0.375, 0}));
    EXPECT_TRUE(test::near(v[1].normal, {0, -1, 0}));
    for (std::size_t i = 2; i < v.size(); ++i) {
        EXPECT_NEAR(v[i].position.length(), 0.375, 1e-9);
        EXPECT_TRUE(test::near(v[i].normal, v[i].position * (1 / 0.375)));
    }
    // The first ring lies one latitude step (30 degrees) below the north pole.
    EXPECT_NEAR(v[2].position.y(), 0.375 * std::cos(30 * 3.14159265359 / 180), 1e-9);
    // Each pole is fanned round by one triangle per slice.
    int north = 0, south = 0;
    for (const TPXpolygon& face : sphere->polygons()) {
        north += face.corner(0) == 0;
        south += face.corner(0) == 1;
    }
    EXPECT_EQ(north, 6);
    EXPECT_EQ(south, 6);
    const TPXboundingBox& box = sphere->boundingBox();
    EXPECT_FALSE(box.empty);
    EXPECT_NEAR(box.max.y(), 0.375, 1e-12);
    EXPECT_NEAR(box.min.y(), -0.375, 1e-12);

    TPXref<TPXgeometry> cube = TPXcube({1, 2, 3}, azure());
    EXPECT_TRUE(test::near(cube->boundingBox().min, {-0.5, -1, -1.5}));
    EXPECT_TRUE(test::near(cube->boundingBox().max, {0.5, 1, 1.5}));
}

TEST(TPXprimitives, TheMaterialIsSharedByEveryFace) {
    TPXref<TPXmaterial> material = azure();
    {
        TPXref<TPXgeometry> cone = TPXcone(6, 0.375, 0.8, material);
        EXPECT_EQ(material->references(), 1 + 7);
    }
    EXPECT_EQ(material->references(), 1);
}

}  // namespace
}  // namespace vellum
