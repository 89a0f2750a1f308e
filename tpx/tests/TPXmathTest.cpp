// Points, quaternions, matrices and placements of the scene library.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "base/Console.h"
#include "tpx/TPXquaternion.h"
#include "tpx/TPXtransform.h"
#include "tpx/tests/TPXtestSupport.h"

namespace vellum {
namespace {

using test::near;

TEST(TPXmath, PreconditionsAreReportedWithTheirSource) {
    TPXp3 p(1, 2, 3);
    TPXquaternion q(1, 2, 3, 4);
    TPXmatrix m = TPXmatrix::identity(2);
    const struct {
        std::function<void()> breach;
        const char* message;
    } rows[] = {
        {[&] { p[3] = 9; }, "Assertion failed: X <= c <= Z, file Src/TPXp3"},
        {[&] { p[-1] = 9; }, "Assertion failed: X <= c <= Z, file Src/TPXp3"},
        {[&] { q[4] = 9; }, "Assertion failed: 0 <= c <= 3, file Src/TPXquaternion"},
        {[&] { m(2, 0) = 9; }, "file include/matrix"},
        {[] { TPXmatrix(0, 1); }, "Assertion failed: x > 0, file include/matrix, line 43\n"},
        {[] { TPXmatrix(1, -2); }, "Assertion failed: y > 0, file include/matrix, line 44\n"},
        {[] { TPXmatrix(2, 3) * TPXmatrix(2, 3); }, "file include/matrix"},
    };
    for (const auto& row : rows) {
        ConsoleCapture capture;
        row.breach();
        EXPECT_NE(capture.text().find(row.message), std::string::npos)
            << row.message << " in: " << capture.text();
    }
    // The breaches wrote nowhere that matters.
    EXPECT_TRUE(near(p, TPXp3(1, 2, 3)));
    EXPECT_EQ(q[3], 4);
    EXPECT_TRUE(near(m, TPXmatrix::identity(2)));
    EXPECT_EQ(static_cast<const TPXp3&>(p)[5], 0.0);
}

TEST(TPXmath, PointOperations) {
    const TPXp3 x(1, 0, 0), y(0, 1, 0), a(1, 2, 3), b(-4, 5, 0.5);
    EXPECT_TRUE(near(x.cross(y), TPXp3(0, 0, 1))) << "right-handed";
    EXPECT_NEAR(a.cross(b).dot(a), 0.0, 1e-12);
    EXPECT_NEAR(a.cross(b).dot(b), 0.0, 1e-12);
    EXPECT_DOUBLE_EQ(a.dot(b), -4 + 10 + 1.5);
    EXPECT_TRUE(near(a + b - b * 2.0, TPXp3(5, -3, 2.5)));
    EXPECT_DOUBLE_EQ(TPXp3(3, 0, 4).length(), 5.0);
    EXPECT_DOUBLE_EQ(b.normalised().length(), 1.0);
    EXPECT_TRUE(near(TPXp3().normalised(), TPXp3())) << "zero stays zero";
}

// Angles in degrees about x, then y, then z, as the camera turns.
const TPXp3 kAngles[] = {
    {0, 0, 0}, {90, 0, 0}, {0, -45, 0}, {0, 0, 170}, {30, 40, 50}, {-120, 80, -10}, {179, -89, 1},
};

TEST(TPXmath, AnglesRoundTripAndFollowTheCameraOrder) {
    for (const TPXp3& angles : kAngles) {
        const TPXquaternion q = TPXquaternion::fromAngles(angles);
        EXPECT_TRUE(near(q.toAngles(), angles, 1e-7));
        // glRotated about x, then y, then z multiplies Rx * Ry * Rz.
        const TPXmatrix camera =
            TPXrotationMatrix(TPXquaternion::fromAxisAngle({1, 0, 0}, angles.x())) *
            TPXrotationMatrix(TPXquaternion::fromAxisAngle({0, 1, 0}, angles.y())) *
            TPXrotationMatrix(TPXquaternion::fromAxisAngle({0, 0, 1}, angles.z()));
        EXPECT_TRUE(near(TPXrotationMatrix(q), camera));
    }
    EXPECT_TRUE(near(TPXquaternion::fromAxisAngle({0, 0, 1}, 90).rotate({1, 0, 0}), {0, 1, 0}))
        << "a positive turn about z takes x to y";
}

TEST(TPXmath, QuaternionToAnglesAndBackIsTheSameOrientation) {
    const TPXquaternion orientations[] = {
        {0.1, 0.7, -0.3, 0.5},
        {0, 0, 0, -1},
        {1, 0, 0, 0},
        TPXquaternion::fromAngles({25, 90, 0}) *
            TPXquaternion::fromAngles({0, 0, 40}),  // gimbal lock
    };
    const TPXp3 probes[] = {{1, 0, 0}, {0, 1, 0}, {0.3, -2, 5}};
    for (const TPXquaternion& q : orientations) {
        const TPXquaternion back = TPXquaternion::fromAngles(q.toAngles());
        for (const TPXp3& v : probes)
            EXPECT_TRUE(near(back.rotate(v), q.rotate(v), 1e-7));
        const TPXquaternion fromMatrix = TPXquaternion::fromRotation(q.toRotation());
        EXPECT_TRUE(near(TPXrotationMatrix(fromMatrix), TPXrotationMatrix(q)));
    }
}

TEST(TPXmath, CompositionIsTheMatrixProduct) {
    for (const TPXp3& first : kAngles)
        for (const TPXp3& second : {TPXp3(10, 20, 30), TPXp3(-90, 45, 0)}) {
            const TPXquaternion a = TPXquaternion::fromAngles(first);
            const TPXquaternion b = TPXquaternion::fromAngles(second);
            EXPECT_TRUE(
                near(TPXrotationMatrix(a * b), TPXrotationMatrix(a) * TPXrotationMatrix(b)));
            EXPECT_TRUE(near((a * b).rotate({1, 2, 3}), a.rotate(b.rotate({1, 2, 3}))));
        }
}

TEST(TPXmath, PlacementTurnsAboutItsPivotAndSplitsBack) {
    TPXplacement placement;
    placement.position = {1, -2, 3};
    placement.orientation = TPXquaternion::fromAngles({30, -60, 200});
    placement.scale = {2, 0.5, 3};
    placement.pivot = {0.5, 1, -1};
    const TPXmatrix m = placement.matrix();
    EXPECT_TRUE(near(TPXtransformPoint(m, placement.pivot), placement.position + placement.pivot));

    // The matrix composed in closed form is the product of its four parts, and transform()
    // applies it without one.
    EXPECT_TRUE(near(m, TPXtranslation(placement.position + placement.pivot) *
                            TPXrotationMatrix(placement.orientation) * TPXscaling(placement.scale) *
                            TPXtranslation(-placement.pivot)));
    for (const TPXp3& p : {TPXp3(), TPXp3(1, 2, 3), TPXp3(-4, 0.5, 9)})
        EXPECT_TRUE(near(placement.transform(p), TPXtransformPoint(m, p)));

    const TPXplacement back = TPXplacement::fromMatrix(m, placement.pivot);
    EXPECT_TRUE(near(back.position, placement.position));
    EXPECT_TRUE(near(back.scale, placement.scale));
    EXPECT_TRUE(near(back.matrix(), m));

    const std::optional<TPXmatrix> inverse = TPXinverseAffine(m);
    ASSERT_TRUE(inverse);
    EXPECT_TRUE(near(*inverse * m, TPXmatrix::identity(4)));
    EXPECT_FALSE(TPXinverseAffine(TPXscaling({1, 0, 1}))) << "a flattened space has no inverse";
}

}  // namespace
}  // namespace vellum
