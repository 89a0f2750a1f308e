// The collision model: the box tree finds the same first hit as trying every triangle, its boxes
// hold their triangles, and building reports zero-area triangles and a Jacobi give-up once.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "base/Console.h"
#include "tpx/TPXcollision.h"
#include "tpx/TPXprimitives.h"
#include "tpx/tests/TPXtestSupport.h"

namespace vellum {
namespace {

using Triangle = TPXcollisionModel::Triangle;

TPXref<TPXmaterial> azure() {
    return TPXmaterial::plain({0, 0.5, 1});
}

// Every triangle in turn, tested another way than the model does: the plane first, then the
// side of each edge. Of equal distances the first triangle wins, as in the model.
std::optional<TPXhit> bruteForce(const std::vector<Triangle>& triangles, const TPXp3& origin,
                                 const TPXp3& direction) {
    std::optional<TPXhit> best;
    for (const Triangle& t : triangles) {
        const TPXp3 normal = (t.b - t.a).cross(t.c - t.a);
        const double along = normal.dot(direction);
        if (along == 0.0)
            continue;
        const double distance = normal.dot(t.a - origin) / along;
        if (!(distance >= 0.0) || (best && distance >= best->distance))
            continue;
        const TPXp3 p = origin + direction * distance;
        const auto inside = [&](const TPXp3& from, const TPXp3& to) {
            return normal.dot((to - from).cross(p - from)) >= 0.0;
        };
        if (inside(t.a, t.b) && inside(t.b, t.c) && inside(t.c, t.a))
            best = TPXhit{distance, p, t.polygon};
    }
    return best;
}

std::vector<Triangle> soup(std::mt19937& random, int count) {
    std::uniform_real_distribution<double> place(-1, 1);
    std::uniform_real_distribution<double> size(-0.3, 0.3);
    const auto near = [&](const TPXp3& p) {
        return p + TPXp3(size(random), size(random), size(random));
    };
    std::vector<Triangle> triangles;
    for (int i = 0; i < count; ++i) {
        const TPXp3 a(place(random), place(random), place(random));
        triangles.push_back({a, near(a), near(a), i});
    }
    return triangles;
}

struct Shape {
    std::string what;
    std::vector<Triangle> triangles;
};

std::vector<Shape> shapes() {
    using D = TPXdefaults;
    std::mt19937 random(13);
    std::vector<Triangle> broken = soup(random, 200);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    broken[7].b = TPXp3(nan, 0, 0);
    broken[120].c = TPXp3(0, std::numeric_limits<double>::infinity(), 0);
    const std::vector<Triangle> cube =
        TPXcollisionModel::trianglesOf(*TPXcube({D::cubeEdge, D::cubeEdge, D::cubeEdge}, azure()));
    std::vector<Triangle> twice = cube;  // every hit a tie, which the first triangle wins
    for (Triangle t : cube) {
        t.polygon += 100;
        twice.push_back(t);
    }
    return {
        {"default sphere",
         TPXcollisionModel::trianglesOf(*TPXsphere(D::slices, D::stacks, D::radius, azure()))},
        {"default cube", cube},
        {"cube given twice", twice},
        {"soup of 400 triangles", soup(random, 400)},
        {"soup with corners that are not finite", broken},
    };
}

TEST(TPXcollision, TheTreeFindsTheHitThatTryingEveryTriangleFinds) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> from(-2, 2);
    std::uniform_real_distribution<double> to(-0.8, 0.8);
    std::uniform_real_distribution<double> stretch(0.1, 3);
    for (const Shape& shape : shapes()) {
        SCOPED_TRACE(shape.what);
        const TPXcollisionModel model(shape.triangles);
        int hits = 0;
        for (int ray = 0; ray < 500; ++ray) {
            const TPXp3 origin(from(random), from(random), from(random));
            const TPXp3 target(to(random), to(random), to(random));
            const TPXp3 direction = (target - origin) * stretch(random);
            const auto expected = bruteForce(shape.triangles, origin, direction);
            const auto hit = model.closestHit(origin, direction);
            ASSERT_EQ(hit.has_value(), expected.has_value()) << "ray " << ray;
            if (!hit)
                continue;
            ++hits;
            EXPECT_EQ(hit->polygon, expected->polygon) << "ray " << ray;
            EXPECT_NEAR(hit->distance, expected->distance, 1e-9) << "ray " << ray;
            EXPECT_TRUE(test::near(hit->point, origin + direction * hit->distance));
        }
        EXPECT_GT(hits, 100);
        EXPECT_LT(hits, 500 - 20);
    }
}

TEST(TPXcollision, BoxesHoldTheirTrianglesAndLeavesShareThemOut) {
    for (const Shape& shape : shapes()) {
        SCOPED_TRACE(shape.what);
        const TPXcollisionModel model(shape.triangles);
        ASSERT_GT(model.boxCount(), 0u);
        EXPECT_EQ(model.trianglesInBox(0).size(), shape.triangles.size());
        EXPECT_LE(model.depth(), 2 * static_cast<int>(std::log2(shape.triangles.size())) + 2);
        std::vector<int> leavesHolding(shape.triangles.size(), 0);
        for (std::size_t b = 0; b < model.boxCount(); ++b) {
            const TPXcollisionModel::Box& box = model.box(b);
            for (int i = 0; i < 3; ++i)
                for (int j = 0; j < 3; ++j)
                    ASSERT_NEAR(box.axes[i].dot(box.axes[j]), i == j ? 1 : 0, 1e-9);
            const std::vector<std::size_t> inside = model.trianglesInBox(b);
            for (std::size_t t : inside) {
                const Triangle& triangle = model.triangle(t);
                for (const TPXp3& corner : {triangle.a, triangle.b, triangle.c}) {
                    for (int i = 0; i < 3; ++i) {
                        if (!std::isfinite(corner.dot(box.axes[i])))
                            continue;
                        ASSERT_LE(std::abs((corner - box.centre).dot(box.axes[i])), box.halfSize[i])
                            << "box " << b << ", triangle " << t;
                    }
                }
            }
            if (!model.isLeaf(b))
                continue;
            EXPECT_LE(inside.size(), TPXcollisionModel::leafTriangles);
            for (std::size_t t : inside)
                ++leavesHolding[t];
            // Fitted to its triangle's plane, a box around one finite triangle is flat.
            const TPXp3& h = box.halfSize;
            if (inside.size() == 1 && std::isfinite(h.x() + h.y() + h.z())) {
                EXPECT_LT(std::min({h.x(), h.y(), h.z()}), 1e-6) << "box " << b;
            }
        }
        for (int held : leavesHolding)
            EXPECT_EQ(held, 1);
    }
}

TEST(TPXcollision, ZeroAreaTrianglesAreReportedOnceOnFirstUse) {
    using D = TPXdefaults;
    TPXref<TPXgeometry> collapsed = TPXcube({D::cubeEdge, D::cubeEdge, D::cubeEdge}, azure());
    auto& vertices = collapsed->vertices();
    const int first = static_cast<int>(vertices.size());
    for (double s : {0.0, 1.0, 2.0})
        vertices.push_back({TPXp3(s, s, s), TPXp3()});
    TPXpolygon line(3);  // three corners on one line
    for (int c = 0; c < 3; ++c)
        line.setCorner(c, first + c);
    collapsed->polygons().push_back(line);
    collapsed->polygons().push_back(TPXpolygon(4));  // every corner on vertex 0
    collapsed->finish();
    struct Row {
        const char* what;
        TPXref<TPXgeometry> geometry;
        const char* console;
    };
    const Row rows[] = {
        {"default sphere", TPXsphere(D::slices, D::stacks, D::radius, azure()), ""},
        {"cube with collapsed faces", collapsed,
         "Warning!  Some triangles have zero area!\n----\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        ConsoleCapture capture;
        EXPECT_EQ(capture.text(), "");
        const auto hit = row.geometry->closestHit({0.01, 0.02, 5}, {0, 0, -1});
        row.geometry->collisionModel();
        EXPECT_EQ(capture.text(), row.console);
        ASSERT_TRUE(hit);
        EXPECT_GT(hit->distance, 5 - D::radius - 1e-9);
        EXPECT_LT(hit->distance, 5 - 0.25);
    }
}

TEST(TPXcollision, JacobiFindsEigenvectorsOrGivesUpWithItsMessage) {
    const double matrix[3][3] = {{4, 1, 2}, {1, 3, 0.5}, {2, 0.5, 1}};
    struct Row {
        int sweeps;
        bool converged;
        const char* console;
    };
    for (const Row& row :
         {Row{TPXeigenSystem::defaultSweeps, true, ""},
          Row{1, false, "eigen: too many iterations in Jacobi transform (1).\n"}}) {
        SCOPED_TRACE(row.sweeps);
        ConsoleCapture capture;
        const TPXeigenSystem eigen = TPXjacobiEigen(matrix, row.sweeps);
        EXPECT_EQ(capture.text(), row.console);
        EXPECT_EQ(eigen.converged, row.converged);
        for (int i = 0; i < 3; ++i) {
            const TPXp3& v = eigen.vectors[i];
            for (int j = 0; j < 3; ++j)
                EXPECT_NEAR(v.dot(eigen.vectors[j]), i == j ? 1 : 0, 1e-12);
            if (!row.converged)
                continue;
            const TPXp3 product(TPXp3(matrix[0][0], matrix[0][1], matrix[0][2]).dot(v),
                                TPXp3(matrix[1][0], matrix[1][1], matrix[1][2]).dot(v),
                                TPXp3(matrix[2][0], matrix[2][1], matrix[2][2]).dot(v));
            EXPECT_TRUE(test::near(product, v * eigen.values[i], 1e-12));
        }
    }
}

}  // namespace
}  // namespace vellum
