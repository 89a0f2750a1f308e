// Labels seen through the offscreen renderer: orange text at its anchor that reads left to
// right and upright from every standard camera, even under a turned and scaled owner, the
// same drawn alone (glyph by glyph) as gathered with a scene's other texts; and no text in a
// picking pass, in the light picture when small, or without a font.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "graph/DirectedGraph.h"
#include "gui/view/ScenePicture.h"
#include "gui/view/TPXcamera.h"
#include "gui/view/TPXoffscreen.h"
#include "gui/view/TPXrenderer.h"
#include "tpx/TPXdraw.h"
#include "tpx/TPXfont.h"
#include "tpx/TPXprimitives.h"
#include "tpx/TPXtext.h"

namespace vellum {
namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 240;
const TPXrgb kOrange{1, 0.5, 0};

// The orange pixels of a picture (on black, so that faint edges count too): how many, their
// box and the mean of their columns.
struct Ink {
    int count = 0;
    int left = kWidth;
    int right = -1;
    int top = kHeight;
    int bottom = -1;
    double meanX = 0.0;

    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }
    double middle() const { return (left + right) / 2.0; }
};

Ink orangeInk(const TPXimage& image) {
    Ink ink;
    const auto& p = image.pixels();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const std::size_t at = 3 * (static_cast<std::size_t>(y) * image.width() + x);
            const int r = p[at], g = p[at + 1], b = p[at + 2];
            if (r < 60 || b > r / 4 || g < r * 3 / 10 || g > r * 7 / 10)
                continue;
            ++ink.count;
            ink.left = std::min(ink.left, x);
            ink.right = std::max(ink.right, x);
            ink.top = std::min(ink.top, y);
            ink.bottom = std::max(ink.bottom, y);
            ink.meanX += x;
        }
    if (ink.count > 0)
        ink.meanX /= ink.count;
    return ink;
}

class LabelPicture : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string error;
        m_offscreen = TPXoffscreen::create(kWidth, kHeight, error);
        ASSERT_TRUE(m_offscreen) << error;
        m_font = m_fonts.get(TPXfont::systemName, error);
        ASSERT_TRUE(m_font) << error;
    }

    // An azure sphere below the world origin, where every standard camera looks, turned a
    // quarter round about z and halved, and its label's anchor at the origin; neither turn nor
    // scale may reach the text.
    std::unique_ptr<TPXnode> labelledSphere(const std::string& text, double size,
                                            TPXref<TPXfont> font) const {
        auto owner = std::make_unique<TPXnode>(TPXkind::ModelObject, "vertex");
        owner->setGeometry(TPXsphere(TPXdefaults::slices, TPXdefaults::stacks, TPXdefaults::radius,
                                     TPXmaterial::plain({0, 0.5, 1})));
        owner->setPosition(TPXp3(0, -0.6, 0));
        owner->setOrientation(TPXquaternion::fromAxisAngle(TPXp3(0, 0, 1), 90));
        owner->setScale(TPXp3(0.5, 0.5, 0.5));
        owner->setIdentity(1);
        auto label = std::make_unique<TPXtext>(TPXtext::labelName, text, font, size, kOrange);
        label->setPosition(TPXp3(1.2, 0, 0));
        owner->adopt(std::move(label));
        return owner;
    }

    TPXimage draw(const TPXnode& scene, const std::string& cameraName, bool light = false) {
        const TPXcamera camera = *TPXcamera::standard(cameraName);
        m_renderer.drawFrame(&scene, camera, kWidth, kHeight, light);
        return m_offscreen->read();
    }

    std::unique_ptr<TPXoffscreen> m_offscreen;
    TPXrenderer m_renderer;
    TPXfontCache m_fonts;
    TPXref<TPXfont> m_font;
};

TEST_F(LabelPicture, ReadsLeftToRightAndUprightFromEveryCamera) {
    // A heavy letter first: a mirrored text would be heavier on the right.
    const auto scene = labelledSphere("W....", 1.5, m_font);
    for (const std::string& name : TPXcamera::standardNames()) {
        const Ink ink = orangeInk(draw(*scene, name));
        SCOPED_TRACE(name);
        ASSERT_GT(ink.count, 300);
        // Spread along the picture's width, centred on the anchor.
        EXPECT_GT(ink.width(), 2 * ink.height());
        EXPECT_NEAR(ink.middle(), kWidth / 2.0, ink.width() * 0.1);
        EXPECT_LT(ink.meanX, ink.middle() - ink.width() * 0.05);
        // Standing on its baseline at the anchor, not hanging from it.
        EXPECT_NEAR(ink.bottom, kHeight / 2.0, 3);
        EXPECT_LT(ink.top, kHeight / 2 - 20);
    }
}

TEST_F(LabelPicture, DrawnAloneItLooksAsGatheredWithTheScene) {
    const auto scene = labelledSphere("Wig 12", 1.5, m_font);
    const Ink gathered = orangeInk(draw(*scene, "perspective"));

    TPXcamera camera = *TPXcamera::standard("perspective");
    camera.setViewport(kWidth, kHeight);
    m_renderer.drawFrame(nullptr, camera, kWidth, kHeight);
    TPXdrawContext alone = m_renderer.context(camera, kHeight);
    ASSERT_EQ(alone.texts, nullptr);
    scene->firstChild()->drawSelf(alone);
    const Ink drawn = orangeInk(m_offscreen->read());

    ASSERT_GT(gathered.count, 300);
    EXPECT_NEAR(drawn.count, gathered.count, gathered.count / 20);
    EXPECT_NEAR(drawn.left, gathered.left, 1);
    EXPECT_NEAR(drawn.right, gathered.right, 1);
    EXPECT_NEAR(drawn.top, gathered.top, 1);
    EXPECT_NEAR(drawn.bottom, gathered.bottom, 1);
}

TEST_F(LabelPicture, IsLeftOutOfPickingOfSmallLightPicturesAndWithoutAFont) {
    const auto big = labelledSphere("WMii", 1.5, m_font);
    const auto small = labelledSphere("WMii", 0.2, m_font);
    const auto fontless = labelledSphere("WMii", 1.5, TPXref<TPXfont>());

    EXPECT_GT(orangeInk(draw(*big, "front", true)).count, 300);
    EXPECT_GT(orangeInk(draw(*small, "front")).count, 5);
    EXPECT_EQ(orangeInk(draw(*small, "front", true)).count, 0);
    EXPECT_EQ(orangeInk(draw(*fontless, "front")).count, 0);

    // A selection pass through the same camera, into the picture: the sphere, no text.
    TPXcamera camera = *TPXcamera::standard("front");
    camera.setViewport(kWidth, kHeight);
    m_renderer.drawFrame(nullptr, camera, kWidth, kHeight);
    TPXdrawContext picking = m_renderer.context(camera, kHeight);
    picking.picking = true;
    TPXdrawScene(big.get(), picking);
    const TPXimage picture = m_offscreen->read();
    EXPECT_EQ(orangeInk(picture).count, 0);
    const std::size_t sphere =
        3 * (static_cast<std::size_t>(kHeight / 2 + 17) * kWidth + kWidth / 2);
    EXPECT_GT(picture.pixels()[sphere + 2], 100) << "the sphere was not drawn at all";
}

// A picture fitted to a graph holds its labels whole, however much wider than their vertex.
TEST(LabelFit, ALongLabelOfALoneVertexStaysInsideTheFittedPicture) {
    DirectedGraph graph;
    graph.createVertex("(1) a label much wider than its vertex");
    std::string error;
    const auto picture = graphPicture(graph, "", {kWidth, kHeight, "front", {0, 0, 0}}, error);
    ASSERT_TRUE(picture) << error;
    const Ink ink = orangeInk(*picture);
    EXPECT_GT(ink.count, 300);
    EXPECT_GT(ink.left, 0) << "the label is cut on the left";
    EXPECT_LT(ink.right, kWidth - 1) << "the label is cut on the right";
}

}  // namespace
}  // namespace vellum
