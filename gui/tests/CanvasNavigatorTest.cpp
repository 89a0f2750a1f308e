// Camera motion of the canvas without a window: what stays put in the picture while orbiting,
// panning and zooming, walking and flying, and zoom-to-fit framing the scene.
#include <gtest/gtest.h>

#include <cmath>

#include "gui/CanvasNavigator.h"
#include "tpx/TPXtransform.h"

namespace vellum {
namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 120;

// Where a world point shows in a kWidth x kHeight picture: window pixels, y from the top.
TPXp3 windowPoint(TPXcamera camera, const TPXp3& p) {
    camera.setViewport(kWidth, kHeight);
    const TPXp3 eye = TPXtransformPoint(camera.viewMatrix(), p);
    const TPXmatrix& proj = camera.projectionMatrix();
    const double w = -eye.z();
    const double x = proj(0, 0) * eye.x() / w;
    const double y = proj(1, 1) * eye.y() / w;
    return {(x + 1) / 2 * kWidth, (1 - y) / 2 * kHeight, w};
}

void expectNear(const TPXp3& a, const TPXp3& b, double tolerance, const char* what) {
    EXPECT_NEAR((a - b).length(), 0.0, tolerance)
        << what << ": (" << a.x() << ", " << a.y() << ", " << a.z() << ") vs (" << b.x() << ", "
        << b.y() << ", " << b.z() << ")";
}

TPXboundingBox box(const TPXp3& min, const TPXp3& max) {
    TPXboundingBox b;
    b.min = min;
    b.max = max;
    b.empty = false;
    return b;
}

TEST(CanvasNavigator, OrbitTurnsAboutTheSceneCentreKeepingItsPlaceInThePicture) {
    CanvasNavigator nav;
    const TPXboundingBox scene = box({0, 1, 2}, {2, 3, 4});
    nav.setSceneBounds(scene);
    const TPXcamera before = nav.camera();
    const TPXp3 centreBefore = windowPoint(before, scene.centre());

    ASSERT_TRUE(nav.drag(TPXdrag::Primary, 25, -10, kHeight));
    const TPXcamera& after = nav.camera();
    EXPECT_NEAR(after.angles().y(), before.angles().y() + 25 * CanvasNavigator::degreesPerPixel,
                1e-9);
    EXPECT_NEAR(after.angles().x(), before.angles().x() - 10 * CanvasNavigator::degreesPerPixel,
                1e-9);
    expectNear(windowPoint(after, scene.centre()), centreBefore, 1e-6, "centre in the picture");
    EXPECT_NEAR((after.eye() - scene.centre()).length(), (before.eye() - scene.centre()).length(),
                1e-9);

    nav.drag(TPXdrag::Primary, 0, 100000, kHeight);
    EXPECT_EQ(nav.camera().angles().x(), CanvasNavigator::maxTilt) << "tilt over the pole";
}

TEST(CanvasNavigator, PanAndZoomKeepWhatIsUnderTheMouseUnderIt) {
    for (const char* name : {"perspective", "top", "front", "left"}) {
        SCOPED_TRACE(name);
        CanvasNavigator nav;
        ASSERT_TRUE(nav.selectCamera(name));
        const TPXboundingBox scene = box({-1, -1, -1}, {1, 1, 1});
        nav.setSceneBounds(scene);

        // A secondary drag pans in every view: the centre follows the mouse.
        const TPXp3 start = windowPoint(nav.camera(), scene.centre());
        const TPXp3 anglesBefore = nav.camera().angles();
        nav.drag(TPXdrag::Secondary, 12, -7, kHeight);
        expectNear(windowPoint(nav.camera(), scene.centre()), start + TPXp3(12, -7, 0), 1e-6,
                   "panned centre");
        expectNear(nav.camera().angles(), anglesBefore, 0, "angles after a pan");

        // Zooming toward a window point keeps the world point there and comes closer.
        const TPXcamera before = nav.camera();
        const TPXray ray = before.ray(40, 30, kWidth, kHeight);
        const TPXp3 target = ray.origin + ray.direction * 10.0;
        nav.zoom(2, 40, 30, kWidth, kHeight);
        const TPXp3 seen = windowPoint(nav.camera(), target);
        expectNear(TPXp3(seen.x(), seen.y(), 0), TPXp3(40, 30, 0), 1e-6, "point under the mouse");
        EXPECT_LT((nav.camera().eye() - target).length(), (before.eye() - target).length());
        nav.zoom(-3, 40, 30, kWidth, kHeight);
        EXPECT_GT((nav.camera().eye() - target).length(), (before.eye() - target).length());
    }
}

TEST(CanvasNavigator, PrimaryDragOrbitsOnlyInPerspectiveAndTurnsInWalkAndFly) {
    CanvasNavigator nav;
    nav.setSceneBounds(box({-1, -1, -1}, {1, 1, 1}));
    for (const char* name : {"top", "front", "left"}) {
        ASSERT_TRUE(nav.selectCamera(name));
        const TPXp3 angles = nav.camera().angles();
        nav.drag(TPXdrag::Primary, 30, 20, kHeight);
        expectNear(nav.camera().angles(), angles, 0, name);
    }
    EXPECT_FALSE(nav.selectCamera("side"));
    EXPECT_EQ(nav.cameraName(), "left");

    nav.setMode(TPXviewMode::Walk);
    EXPECT_EQ(nav.cameraName(), "perspective");
    const TPXcamera before = nav.camera();
    nav.drag(TPXdrag::Primary, 30, 0, kHeight);
    expectNear(nav.camera().eye(), before.eye(), 1e-12, "turning moves the eye");
    EXPECT_GT(nav.camera().forward().dot(before.right()), 0.1) << "dragging right looks right";
}

TEST(CanvasNavigator, WalkStaysOnTheGroundAndFlyRises) {
    CanvasNavigator nav;
    nav.setSceneBounds(box({-50, -50, -50}, {50, 50, 50}));
    const double step = nav.stepLength();
    EXPECT_NEAR(step, std::sqrt(3.0) * 100 / 50, 1e-9);
    EXPECT_FALSE(nav.move(TPXmove::Forward)) << "no walking in the perspective view";

    nav.setMode(TPXviewMode::Walk);
    const TPXcamera start = nav.camera();  // looks down at the origin
    ASSERT_TRUE(nav.move(TPXmove::Forward));
    const TPXp3 walked = nav.camera().eye() - start.eye();
    EXPECT_NEAR(walked.y(), 0.0, 1e-12);
    EXPECT_NEAR(walked.length(), step, 1e-9);
    EXPECT_GT(walked.dot(start.forward()), 0.0);
    ASSERT_TRUE(nav.move(TPXmove::Right));
    EXPECT_NEAR((nav.camera().eye() - start.eye() - walked).dot(start.right()), step, 1e-9);
    EXPECT_FALSE(nav.move(TPXmove::Up));

    nav.setMode(TPXviewMode::Fly);
    const TPXp3 before = nav.camera().eye();
    ASSERT_TRUE(nav.move(TPXmove::Up));
    expectNear(nav.camera().eye(), before + TPXp3(0, step, 0), 1e-9, "flying up");
    ASSERT_TRUE(nav.move(TPXmove::Forward));
    EXPECT_LT(nav.camera().eye().y(), before.y() + step) << "flying follows the view downwards";
}

TEST(CanvasNavigator, ZoomToFitFramesTheWholeSceneWithAMargin) {
    const TPXboundingBox scenes[] = {box({-30, -2, -2}, {30, 2, 2}), box({5, 5, 5}, {5.5, 6, 7}),
                                     box({-1, -40, 0}, {1, 40, 1})};
    for (const char* name : {"perspective", "front", "top"}) {
        for (const TPXboundingBox& scene : scenes) {
            CanvasNavigator nav;
            ASSERT_TRUE(nav.selectCamera(name));
            nav.setSceneBounds(scene);
            ASSERT_TRUE(nav.zoomToFit(kWidth, kHeight));
            double outermost = 0;
            for (int corner = 0; corner < 8; ++corner) {
                const TPXp3 p((corner & 1) ? scene.max.x() : scene.min.x(),
                              (corner & 2) ? scene.max.y() : scene.min.y(),
                              (corner & 4) ? scene.max.z() : scene.min.z());
                const TPXp3 at = windowPoint(nav.camera(), p);
                ASSERT_GT(at.z(), 0) << name << ": a corner behind the camera";
                EXPECT_GE(at.x(), 0);
                EXPECT_LE(at.x(), kWidth);
                EXPECT_GE(at.y(), 0);
                EXPECT_LE(at.y(), kHeight);
                outermost = std::max({outermost, std::abs(at.x() - kWidth / 2.0) / kWidth,
                                      std::abs(at.y() - kHeight / 2.0) / kHeight});
            }
            // A bounding sphere frames a long box seen end-on small; across, it must fill.
            if (&scene == &scenes[0])
                EXPECT_GT(outermost, 0.25) << name << ": the scene is framed far too small";
        }
    }
    CanvasNavigator empty;
    EXPECT_FALSE(empty.zoomToFit(kWidth, kHeight));
}

}  // namespace
}  // namespace vellum
