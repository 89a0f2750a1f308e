// Scenes drawn offscreen and read back: where the standard cameras show the axes, blending,
// draw styles with their display lists, tessellated polygons, textures, fog, the fitted camera,
// the light picture and a long chain of top-level nodes.
#include <gtest/gtest.h>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "gui/view/tests/OffscreenFixture.h"
#include "tpx/TPXdraw.h"
#include "tpx/TPXtexture.h"

namespace vellum {
namespace {

using test::kSize;
using test::OffscreenTest;
using test::pixelAt;
using test::Rgb;
using test::sphereOf;
using test::TestScene;

constexpr int kRed = 0, kGreen = 1, kBlue = 2;
constexpr int kCentre = kSize / 2;
// Two units beside the origin, seen from 10 units away with a field of view of 45 degrees.
constexpr int kOff = 23;

const std::vector<std::pair<double, double>> kSquare = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};

// One flat polygon facing +z, its corners (x, y) scaled by `scale`, with the given vertex normal.
TPXref<TPXgeometry> flatPolygon(const std::vector<std::pair<double, double>>& corners, double scale,
                                TPXref<TPXmaterial> material,
                                const TPXp3& vertexNormal = TPXp3(0, 0, 1)) {
    TPXref<TPXgeometry> geometry(new TPXgeometry("polygon"));
    TPXpolygon polygon(static_cast<int>(corners.size()));
    for (std::size_t i = 0; i < corners.size(); ++i) {
        geometry->vertices().push_back(
            {TPXp3(corners[i].first * scale, corners[i].second * scale, 0), vertexNormal});
        polygon.setCorner(static_cast<int>(i), static_cast<int>(i));
    }
    polygon.setNormal(TPXp3(0, 0, 1));
    polygon.setMaterial(std::move(material));
    geometry->polygons().push_back(std::move(polygon));
    geometry->finish();
    return geometry;
}

using Renderer = OffscreenTest;

TEST_F(Renderer, DefaultSphereSeenFromTheFrontIsAzureOnTheBackground) {
    TestScene scene;
    scene.add(sphereOf({0, 0.5, 1}), {0, 0, 0});
    for (const TPXrgb& background : {TPXrgb{0, 0, 0}, TPXrgb{0.2, 0.4, 0.6}}) {
        renderer.look().background = background;
        const TPXimage image = draw(scene.first(), "front");
        const Rgb centre = pixelAt(image, kCentre, kCentre);
        // Azure, lit: no red, blue the strongest, green about half of it.
        EXPECT_LT(centre.r, 20) << centre;
        EXPECT_GT(centre.b, 150) << centre;
        EXPECT_NEAR(centre.g, centre.b / 2, 25) << centre;
        for (auto [x, y] : {std::pair{2, 2}, std::pair{93, 50}, std::pair{40, 93}}) {
            const Rgb p = pixelAt(image, x, y);
            EXPECT_NEAR(p.r, background.r * 255, 1) << x << "," << y;
            EXPECT_NEAR(p.g, background.g * 255, 1) << x << "," << y;
            EXPECT_NEAR(p.b, background.b * 255, 1) << x << "," << y;
        }
    }
}

// Red on +x, green on +y, blue on +z, nothing at the origin.
TEST_F(Renderer, StandardCamerasShowEachAxisWhereItBelongs) {
    TestScene scene;
    scene.add(sphereOf({1, 0, 0}), {2, 0, 0});
    scene.add(sphereOf({0, 1, 0}), {0, 2, 0});
    scene.add(sphereOf({0, 0, 1}), {0, 0, 2});
    struct Row {
        const char* camera;
        int colour;
        int x;
        int y;
    };
    const Row rows[] = {
        // "front": x to the right, y up, z towards the viewer.
        {"front", kRed, kCentre + kOff, kCentre},
        {"front", kGreen, kCentre, kCentre - kOff},
        {"front", kBlue, kCentre, kCentre},
        // "top": the x-z plane from above, x to the right and +z down the picture.
        {"top", kRed, kCentre + kOff, kCentre},
        {"top", kBlue, kCentre, kCentre + kOff},
        {"top", kGreen, kCentre, kCentre},
        // "left": the y-z plane from negative x, z to the right, y up.
        {"left", kBlue, kCentre + kOff, kCentre},
        {"left", kGreen, kCentre, kCentre - kOff},
        {"left", kRed, kCentre, kCentre},
    };
    for (const Row& row : rows) {
        const TPXimage image = draw(scene.first(), row.camera);
        const Rgb p = pixelAt(image, row.x, row.y);
        EXPECT_TRUE(p.dominated(row.colour))
            << row.camera << ": " << p << " at " << row.x << "," << row.y;
        EXPECT_TRUE(pixelAt(image, 2, 2).dark()) << row.camera;
    }
}

TEST_F(Renderer, TheViewDrawnWithIsTheOneTheCameraSetsInOpenGL) {
    // The lights are placed through OpenGL's matrix, the objects through the computed one.
    for (const std::string& name : TPXcamera::standardNames()) {
        TPXcamera camera = *TPXcamera::standard(name);
        camera.setAngles(camera.angles() + TPXp3(10, 20, 30));
        camera.apply({});
        GLdouble set[16];
        glGetDoublev(GL_MODELVIEW_MATRIX, set);
        const TPXmatrix view = camera.viewMatrix();
        for (int i = 0; i < 16; ++i)
            EXPECT_NEAR(set[i], view(i % 4, i / 4), 1e-6) << name << " element " << i;
    }
}

TEST_F(Renderer, HalfOpaqueMaterialBlendsWithWhatIsBehindAndAWholeOneHidesIt) {
    for (double opacity : {0.5, 1.0}) {
        TestScene scene;
        scene.add(flatPolygon(kSquare, 2, TPXmaterial::plain({1, 0, 0})), {0, 0, -2});
        scene.add(flatPolygon(kSquare, 1, TPXmaterial::plain({0, 0, 1}, opacity)), {0, 0, 0});
        const Rgb p = pixelAt(draw(scene.first(), "front"), kCentre, kCentre);
        EXPECT_GT(p.b, 60) << opacity << ": " << p;
        if (opacity < 1.0)
            EXPECT_GT(p.r, 60) << "no red shows through: " << p;
        else
            EXPECT_EQ(p.r, 0) << "red shows through an opaque face: " << p;
    }
}

TEST_F(Renderer, WireframeCompilesItsOwnListAndKeepsTheSolidOne) {
    TestScene scene;
    TPXref<TPXgeometry> cube = TPXcube({3, 3, 3}, TPXmaterial::plain({1, 1, 0}));
    scene.add(cube, {0, 0, 0});
    const TPXlistStore& lists = *renderer.lists();

    const Rgb solid = pixelAt(draw(scene.first(), "front"), kCentre, kCentre);
    const GLuint solidList = cube->displayList(lists, TPXdrawStyle::Solid);
    EXPECT_NE(solidList, 0u);
    EXPECT_EQ(cube->displayList(lists, TPXdrawStyle::Wireframe), 0u);

    renderer.look().style = TPXdrawStyle::Wireframe;
    const TPXimage wireframe = draw(scene.first(), "front");
    EXPECT_NE(cube->displayList(lists, TPXdrawStyle::Wireframe), 0u);
    EXPECT_NE(cube->displayList(lists, TPXdrawStyle::Wireframe), solidList);
    EXPECT_EQ(cube->displayList(lists, TPXdrawStyle::Solid), solidList);
    EXPECT_TRUE(solid.r > 100 && solid.g > 100) << "the yellow face is missing: " << solid;
    EXPECT_TRUE(pixelAt(wireframe, kCentre, kCentre).dark()) << "the face is filled";

    renderer.look().style = TPXdrawStyle::Solid;
    draw(scene.first(), "front");
    EXPECT_EQ(cube->displayList(lists, TPXdrawStyle::Solid), solidList) << "compiled again";
}

TEST_F(Renderer, ConcavePolygonFillsItsShapeButNotItsNotch) {
    // An L whose notch is the quadrant x > 0, y > 0; drawn as one fan from its first corner,
    // it would cover part of the notch.
    const std::vector<std::pair<double, double>> ell = {{1, -1}, {1, 0},  {0, 0},
                                                        {0, 1},  {-1, 1}, {-1, -1}};
    TestScene scene;
    scene.add(flatPolygon(ell, 3, TPXmaterial::plain({1, 1, 1})), {0, 0, 0});
    // One unit of the polygon spans about 3 * 11.6 pixels here; y grows down the picture.
    const double unit = 3 * kOff / 2.0;
    auto at = [&](const TPXimage& image, double x, double y) {
        return pixelAt(image, static_cast<int>(kCentre + x * unit),
                       static_cast<int>(kCentre - y * unit));
    };
    auto lit = [](const TPXimage& image) {
        int count = 0;
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x)
                count += pixelAt(image, x, y).r > 30;
        return count;
    };
    // Lit pixels more than two pixels inside the L.
    auto litInside = [&](const TPXimage& image) {
        const double margin = 2.5 / unit;
        int count = 0;
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x) {
                const double u = (x + 0.5 - kCentre) / unit, v = (kCentre - y - 0.5) / unit;
                const bool inBox = std::abs(u) < 1 - margin && std::abs(v) < 1 - margin;
                const bool inNotch = u > -margin && v > -margin;
                count += inBox && !inNotch && pixelAt(image, x, y).r > 30;
            }
        return count;
    };
    for (TPXdrawStyle style : {TPXdrawStyle::Solid, TPXdrawStyle::Wireframe}) {
        renderer.look().style = style;
        const TPXimage image = draw(scene.first(), "front");
        EXPECT_TRUE(at(image, 0.2, 0.4).dark()) << "the notch is filled";
        EXPECT_TRUE(at(image, 0.6, 0.6).dark()) << "the notch is filled";
        if (style == TPXdrawStyle::Wireframe) {
            EXPECT_EQ(litInside(image), 0) << "the tessellator's cuts show in the wireframe";
            EXPECT_GT(lit(image), 100) << "no outline";
            continue;
        }
        for (auto [x, y] : {std::pair{-0.5, -0.5}, std::pair{0.5, -0.5}, std::pair{-0.5, 0.5}})
            EXPECT_GT(at(image, x, y).r, 100) << x << "," << y << " is not filled";
    }
}

TEST_F(Renderer, VerticesWithoutNormalsAreLitLikeTheirFace) {
    // Model files may give no normals; their vertices then hold the zero vector. A square takes
    // the plain path, an L with a notch the tessellator's.
    const std::vector<std::pair<double, double>> ell = {{1, -1}, {1, 0},  {0, 0},
                                                        {0, 1},  {-1, 1}, {-1, -1}};
    for (const auto* corners : {&kSquare, &ell}) {
        int brightness[2] = {0, 0};
        for (int zero = 0; zero < 2; ++zero) {
            TestScene scene;
            scene.add(flatPolygon(*corners, 3, TPXmaterial::plain({1, 1, 1}),
                                  zero ? TPXp3() : TPXp3(0, 0, 1)),
                      {0, 0, 0});
            const Rgb p = pixelAt(draw(scene.first(), "front"), kCentre - 20, kCentre + 20);
            brightness[zero] = p.r + p.g + p.b;
        }
        EXPECT_GT(brightness[0], 3 * 150);
        EXPECT_NEAR(brightness[1], brightness[0], 6) << corners->size() << " corners";
    }
}

TEST_F(Renderer, TexturedFaceShowsTheImageAcrossIt) {
    // Left half red, right half green.
    TPXimage picture(4, 2, TPXimage::Type::Colour);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            picture.pixels()[3 * (y * 4 + x) + (x < 2 ? 0 : 1)] = 255;
    auto texture = TPXref<TPXtexture>::make(picture, "halves.ppm");
    TestScene scene;
    scene.add(flatPolygon(kSquare, 3, TPXmaterial::textured(texture)), {0, 0, 0});
    const TPXimage image = draw(scene.first(), "front");
    EXPECT_TRUE(pixelAt(image, kCentre - 25, kCentre).dominated(kRed))
        << pixelAt(image, kCentre - 25, kCentre);
    EXPECT_TRUE(pixelAt(image, kCentre + 25, kCentre).dominated(kGreen))
        << pixelAt(image, kCentre + 25, kCentre);
}

TEST_F(Renderer, LinearFogHidesWhatLiesBeyondItsEnd) {
    TestScene scene;
    scene.add(sphereOf({0, 0.5, 1}), {0, 0, 0});
    TPXfog fog;
    fog.colour = TPXrgb{1, 1, 1};
    fog.start = 1;
    fog.end = 5;  // the sphere is about 9.6 units away
    renderer.look().fog = fog;
    Rgb p = pixelAt(draw(scene.first(), "front"), kCentre, kCentre);
    EXPECT_GT(p.r, 250) << p;
    fog.end = 100;
    renderer.look().fog = fog;
    p = pixelAt(draw(scene.first(), "front"), kCentre, kCentre);
    EXPECT_TRUE(p.r > 10 && p.r < 200 && p.b > p.r) << "fog between: " << p;
}

TEST_F(Renderer, FittedCameraShowsTheWholeScene) {
    TestScene scene;
    scene.add(sphereOf({0, 0.5, 1}), {0, 0, 0}, 0, 4.0);
    scene.add(sphereOf({0, 0.5, 1}), {30, 5, -60}, 0, 4.0);
    for (const std::string& name : TPXcamera::standardNames()) {
        TPXcamera camera = *TPXcamera::standard(name);
        camera.fit(TPXsceneBounds(scene.first()));
        const TPXimage image = draw(scene.first(), camera);
        // Both spheres are in the picture, apart, and clear of its borders.
        int left = kSize, right = -1, top = kSize, bottom = -1;
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x)
                if (pixelAt(image, x, y).azure()) {
                    left = std::min(left, x);
                    right = std::max(right, x);
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                }
        EXPECT_GT(std::max(right - left, bottom - top), kSize / 3) << name;
        EXPECT_TRUE(left > 0 && top > 0 && right < kSize - 1 && bottom < kSize - 1)
            << name << ": cut at the border";
    }
}

TEST_F(Renderer, CameraAspectSurvivesAViewportWithoutHeight) {
    TPXcamera camera;
    camera.setViewport(640, 0);
    EXPECT_TRUE(std::isfinite(camera.aspect()));
    EXPECT_TRUE(std::isfinite(camera.projectionMatrix()(0, 0)));
}

TEST_F(Renderer, LightPictureDrawsSmallObjectsWithoutCompilingTheirShape) {
    TestScene scene;
    TPXref<TPXgeometry> tiny = sphereOf({0, 0.5, 1});
    TPXref<TPXgeometry> small = sphereOf({0, 0.5, 1});
    TPXref<TPXgeometry> large = sphereOf({1, 0, 0});
    scene.add(tiny, {0, 0, -80});    // under two pixels across: a point
    scene.add(small, {-4, 0, -30});  // a few pixels: a coarse stand-in
    scene.add(large, {1.5, 0, 5});   // many pixels: the exact shape
    const TPXcamera front = *TPXcamera::standard("front");
    const TPXimage light = draw(scene.first(), front, true);
    const TPXlistStore& lists = *renderer.lists();
    // A point or stand-in a pixel or two wide: somewhere in the 3 x 3 pixels round (x, y).
    auto azureAround = [&](int x, int y) {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (pixelAt(light, x + dx, y + dy).azure())
                    return true;
        return false;
    };
    EXPECT_TRUE(azureAround(kCentre, kCentre)) << "the point is missing";
    EXPECT_TRUE(azureAround(kCentre - 12, kCentre)) << "the stand-in is missing";
    EXPECT_EQ(tiny->displayList(lists, TPXdrawStyle::Solid), 0u) << "drawn in full";
    EXPECT_EQ(small->displayList(lists, TPXdrawStyle::Solid), 0u) << "drawn in full";
    EXPECT_NE(large->displayList(lists, TPXdrawStyle::Solid), 0u) << "a large one is drawn coarse";

    // A still picture is always the exact one.
    draw(scene.first(), front);
    EXPECT_NE(tiny->displayList(lists, TPXdrawStyle::Solid), 0u);
    EXPECT_NE(small->displayList(lists, TPXdrawStyle::Solid), 0u);
}

TEST_F(Renderer, LongChainOfTopLevelNodesIsDrawnToItsEnd) {
    TestScene scene;
    TPXnode& first = scene.add({}, {0, 0, 0});
    TPXnode* last = &first;
    for (int i = 0; i < 100000; ++i)
        last = last->adoptSibling(std::make_unique<TPXnode>(TPXkind::ModelObject, "empty"));
    auto sphere = std::make_unique<TPXnode>(TPXkind::ModelObject, "last");
    sphere->setGeometry(sphereOf({0, 0.5, 1}));
    last->adoptSibling(std::move(sphere));
    EXPECT_TRUE(pixelAt(draw(scene.first(), "front"), kCentre, kCentre).azure());
}

}  // namespace
}  // namespace vellum
