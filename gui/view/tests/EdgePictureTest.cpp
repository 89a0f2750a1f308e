// Edges as the offscreen renderer draws them: the line and its arrowhead in the edge's colour,
// in the exact and the light picture, and the dashes of a highlighted edge moving from frame to
// frame.
#include <gtest/gtest.h>

#include "graph/VectorAttribute.h"
#include "gui/view/GraphScene.h"
#include "gui/view/tests/OffscreenFixture.h"

namespace vellum {
namespace {

using test::kSize;
using test::OffscreenTest;
using test::pixelAt;
using test::Rgb;

constexpr int kRed = 0, kGreen = 1;
constexpr int kCentre = kSize / 2;
constexpr double kUnit = 11.5;  // pixels per world unit at the origin, front camera

// Two vertices on the x axis, 4 units apart, and one edge from left to right.
class EdgePicture : public OffscreenTest {
  protected:
    void SetUp() override {
        OffscreenTest::SetUp();
        for (double x : {-2.0, 2.0}) {
            DirectedGraphVertex* v = graph.createVertex();
            v->addAttribute(
                std::make_unique<VectorAttribute>("position", std::vector<double>{x, 0, 0}));
            ends.push_back(v);
        }
        edge = graph.createEdge(ends[0], ends[1]);
        edge->addAttribute(
            std::make_unique<VectorAttribute>("color", std::vector<double>{0, 1, 0}));
        scene.build(graph);
    }

    TPXimage front(bool light = false) {
        return draw(scene.root(), *TPXcamera::standard("front"), light);
    }
    // The pixel at world point (x, y) on the z = 0 plane.
    static Rgb at(const TPXimage& image, double x, double y) {
        return pixelAt(image, static_cast<int>(kCentre + x * kUnit),
                       static_cast<int>(kCentre - y * kUnit));
    }

    DirectedGraph graph;
    std::vector<DirectedGraphVertex*> ends;
    DirectedGraphEdge* edge = nullptr;
    GraphScene scene;
};

TEST_F(EdgePicture, LineAndArrowheadShowInTheEdgesColourInBothPictures) {
    for (bool light : {false, true}) {
        const TPXimage image = front(light);
        // The line half way; above it, nothing.
        EXPECT_TRUE(at(image, -0.5, 0).dominated(kGreen)) << at(image, -0.5, 0) << light;
        EXPECT_TRUE(at(image, -0.5, 0.4).dark()) << at(image, -0.5, 0.4) << light;
        // The head stands just outside the target, as wide as a cone of radius 0.2: beside
        // the line there, yet below where the line alone would reach.
        EXPECT_TRUE(at(image, 1.2, 0.1).dominated(kGreen)) << at(image, 1.2, 0.1) << light;
        EXPECT_FALSE(at(image, 1.2, 0.1).dominated(kRed));
    }
}

TEST_F(EdgePicture, HighlightedEdgesDashesMoveFromFrameToFrame) {
    scene.objectOf(*edge)->setHighlighted(true);
    auto row = [&](const TPXimage& image) {
        std::vector<bool> lit;
        for (int x = kCentre - 12; x <= kCentre + 12; ++x)
            lit.push_back(pixelAt(image, x, kCentre).dominated(kGreen));
        return lit;
    };
    const std::vector<bool> first = row(front());
    const std::vector<bool> second = row(front());
    const auto count = [](const std::vector<bool>& lit) {
        return std::count(lit.begin(), lit.end(), true);
    };
    EXPECT_GT(count(first), 3) << "the line is not drawn";
    EXPECT_LT(count(first), static_cast<long>(first.size())) << "the line has no gaps";
    EXPECT_NE(first, second) << "the dashes stand still";
}

}  // namespace
}  // namespace vellum
