#include <gtest/gtest.h>

#include <cmath>

#include "plugins/force3d/Octree.h"
#include "plugins/force3d/Random.h"

namespace vellum::force3d {
namespace {

Vec3 exactRepulsion(const std::vector<Vec3>& points, const std::vector<double>& masses,
                    const std::vector<int>& members, const Vec3& p, int self) {
    Vec3 sum;
    for (int j : members) {
        const Vec3 d = p - points[j];
        if (j != self && d.lengthSquared() > 0.0)
            sum += d * (masses[j] / d.lengthSquared());
    }
    return sum;
}

class OctreeTest : public ::testing::Test {
  protected:
    void SetUp() override {
        Random random(7);
        for (int i = 0; i < 600; ++i) {
            // Two clusters of different density, so that the tree is uneven.
            points.push_back(random.inCube(i % 3 == 0 ? 1.0 : 20.0));
            masses.push_back(1.0 + (i % 4));
            all.push_back(i);
        }
    }
    std::vector<Vec3> points;
    std::vector<double> masses;
    std::vector<int> all;
};

TEST_F(OctreeTest, ThetaZeroSumsExactly) {
    Octree tree;
    tree.build(points, masses);
    for (int i = 0; i < 600; i += 37) {
        const Vec3 got = tree.repulsion(points[i], i, 0.0);
        const Vec3 want = exactRepulsion(points, masses, all, points[i], i);
        EXPECT_NEAR((got - want).length(), 0.0, 1e-9 * want.length()) << i;
    }
}

TEST_F(OctreeTest, ApproximatesWithinAFewPercent) {
    Octree tree;
    tree.build(points, masses);
    double worst = 0.0;
    for (int i = 0; i < 600; ++i) {
        const Vec3 want = exactRepulsion(points, masses, all, points[i], i);
        const Vec3 got = tree.repulsion(points[i], i, 0.5);
        worst = std::max(worst, (got - want).length() / want.length());
    }
    EXPECT_LT(worst, 0.05);
}

TEST_F(OctreeTest, HoldsOnlyTheListedPoints) {
    std::vector<int> odd;
    for (int i = 1; i < 600; i += 2)
        odd.push_back(i);
    Octree tree;
    tree.build(points, masses, odd);
    const Vec3 p{3.0, -2.0, 1.0};
    const Vec3 want = exactRepulsion(points, masses, odd, p, -1);
    EXPECT_NEAR((tree.repulsion(p, -1, 0.0) - want).length(), 0.0, 1e-9 * want.length());

    Octree empty;
    empty.build(points, masses, {});
    EXPECT_TRUE(empty.empty());
    EXPECT_EQ(empty.repulsion(p, -1, 0.5).length(), 0.0);
}

TEST_F(OctreeTest, CoincidingPointsPushNothing) {
    // More than a leaf's worth on one spot: the tree stops splitting instead of recursing.
    const std::vector<Vec3> pile(50, Vec3{1.0, 1.0, 1.0});
    Octree tree;
    tree.build(pile, {});
    const Vec3 at = tree.repulsion(pile[0], 0, 0.5);
    EXPECT_EQ(at.length(), 0.0);
    const Vec3 beside = tree.repulsion({2.0, 1.0, 1.0}, -1, 0.0);
    EXPECT_NEAR(beside.x, 50.0, 1e-9);
}

}  // namespace
}  // namespace vellum::force3d
