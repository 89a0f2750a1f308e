// Picking: the walk over hit records with its signed depth rule, the object under a window
// point in a drawn scene, the selection pass drawing only what meets the pick region, and the
// ray through a window point.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

#include <random>

#include "graph/VectorAttribute.h"
#include "gui/view/GraphScene.h"
#include "gui/view/TPXpicker.h"
#include "gui/view/tests/OffscreenFixture.h"

namespace vellum {
namespace {

using test::kSize;
using test::OffscreenTest;
using test::pixelAt;
using test::sphereOf;
using test::TestScene;

constexpr int kCentre = kSize / 2;

TEST(PickWinner, WalksTheRecordsByTheirSignedMinimumDepth) {
    constexpr std::uint32_t kFar = 0x80000000u;  // depth 0.5: negative as a signed number
    struct Row {
        const char* what;
        std::vector<std::uint32_t> buffer;  // count, min, max, names... per record
        int hits;
        std::optional<std::uint32_t> winner;
    };
    const Row rows[] = {
        {"no hits", {}, 0, std::nullopt},
        {"one record", {1, 100, 900, 7}, 1, 7u},
        {"the smaller minimum", {1, 150000, 1, 1, 1, 100, 1, 2}, 2, 2u},
        {"a tie keeps the earlier", {1, 100, 1, 1, 1, 100, 5, 2}, 2, 1u},
        {"minimum must be below 200000", {1, 200000, 1, 1}, 1, std::nullopt},
        {"199999 is below it", {1, 300000, 1, 1, 1, 199999, 1, 2}, 2, 2u},
        {"2^31 and above are negative", {1, 100, 1, 1, 1, kFar, 1, 2}, 2, 2u},
        {"the more negative wins", {1, 0xfffffff0u, 1, 1, 1, kFar, 1, 2}, 2, 2u},
        {"only the hits counted", {1, 500, 1, 1, 1, 100, 1, 2}, 1, 1u},
        {"a record cut off by the buffer's end", {1, 500, 1, 1, 1, 100, 1}, 2, 1u},
        {"an overflowed buffer: whole records", {1, 500, 1, 1, 1, 100, 1, 2, 1, 50}, -1, 2u},
    };
    for (const Row& row : rows) {
        const auto records = TPXhitRecords(row.buffer.data(), row.buffer.size(), row.hits);
        EXPECT_EQ(TPXpickWinner(records), row.winner) << row.what;
    }
}

class Picker : public OffscreenTest {
  protected:
    std::optional<std::uint32_t> pick(const TestScene& scene, int x, int y, bool cull = true) {
        return picker.pick(renderer, scene.first(), camera, x, y, cull);
    }

    TPXcamera camera = *TPXcamera::standard("front");
    TPXpicker picker;
};

TEST_F(Picker, NearerOfTwoObjectsWinsWhicheverIsDrawnFirst) {
    for (bool nearerFirst : {false, true}) {
        TestScene scene;
        if (nearerFirst)
            scene.add(sphereOf({1, 0, 0}), {0, 0, 2}, 2);
        scene.add(sphereOf({0, 0.5, 1}), {0, 0, 0}, 1);
        if (!nearerFirst)
            scene.add(sphereOf({1, 0, 0}), {0, 0, 2}, 2);
        EXPECT_EQ(pick(scene, kCentre, kCentre), 2u) << "nearer drawn first: " << nearerFirst;
        EXPECT_EQ(picker.records().size(), 2u);
        EXPECT_EQ(pick(scene, 5, 5), std::nullopt) << "empty space";
        EXPECT_TRUE(picker.records().empty());
    }
}

TEST_F(Picker, ObjectsWithoutIdentityAreTakenForTheirOwnerOrNotAtAll) {
    TestScene scene;
    // An object without identity in front of a picked one does not hide it ...
    scene.add(sphereOf({1, 1, 1}), {0, 0, 3});
    TPXnode& owner = scene.add(sphereOf({0, 0.5, 1}), {0, 0, 0}, 9);
    // ... and a part without identity is picked as its owner.
    auto part = std::make_unique<TPXnode>(TPXkind::ModelObject, "part");
    part->setGeometry(sphereOf({1, 0, 0}));
    part->setPosition(TPXp3(2, 0, 0));
    owner.adopt(std::move(part));
    EXPECT_EQ(pick(scene, kCentre, kCentre), 9u);
    EXPECT_EQ(pick(scene, kCentre + 23, kCentre), 9u);
}

TEST_F(Picker, PickingAfterAFrameLeavesTheNextFrameAsItWas) {
    TestScene scene;
    scene.add(sphereOf({0, 0.5, 1}), {0, 0, 0}, 1);
    const TPXimage before = draw(scene.first(), camera);
    ASSERT_EQ(pick(scene, kCentre, kCentre), 1u);
    const TPXimage after = draw(scene.first(), camera);
    EXPECT_EQ(before.pixels(), after.pixels());
}

TEST_F(Picker, PassDrawingOnlyWhatMeetsTheRegionHasTheSameHits) {
    // A grid of spheres, several deep, from every standard camera.
    TestScene scene;
    std::uint32_t identity = 0;
    for (int x = -3; x <= 3; ++x)
        for (int y = -3; y <= 3; ++y)
            for (int z = -2; z <= 2; z += 2)
                scene.add(sphereOf({0, 0.5, 1}), {x * 0.8, y * 0.8, z * 0.8}, ++identity);
    int hits = 0;
    for (const std::string& name : TPXcamera::standardNames()) {
        camera = *TPXcamera::standard(name);
        for (int y = 8; y < kSize; y += 11)
            for (int x = 4; x < kSize; x += 13) {
                const auto culled = pick(scene, x, y, true);
                const std::vector<TPXhitRecord> culledRecords = picker.records();
                const auto full = pick(scene, x, y, false);
                EXPECT_EQ(culled, full) << name << " at " << x << "," << y;
                EXPECT_EQ(culledRecords, picker.records()) << name << " at " << x << "," << y;
                hits += !culledRecords.empty();
            }
    }
    EXPECT_GT(hits, 20) << "too few picks met anything to compare";
}

TEST_F(Picker, CulledPassFindsTheSameEdgesLongBentAndLooped) {
    // Edges are culled by their segments, not their box: a long edge's box meets most pick
    // regions, its line few. Random ends, parallel edges (bent) and loops.
    DirectedGraph graph;
    std::vector<DirectedGraphVertex*> vertices;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> coordinate(-3.0, 3.0);
    for (int i = 0; i < 10; ++i) {
        vertices.push_back(graph.createVertex());
        vertices.back()->addAttribute(std::make_unique<VectorAttribute>(
            "position", std::vector<double>{coordinate(random), coordinate(random), 0.0}));
    }
    std::uniform_int_distribution<std::size_t> end(0, vertices.size() - 1);
    for (int i = 0; i < 14; ++i) {
        DirectedGraphVertex* from = vertices[end(random)];
        graph.createEdge(from, i % 5 == 0 ? from : vertices[end(random)]);
    }
    graph.createEdge(vertices[0], vertices[1]);
    graph.createEdge(vertices[1], vertices[0]);
    GraphScene scene;
    scene.build(graph);
    int edgeHits = 0;
    for (const std::string& name : TPXcamera::standardNames()) {
        camera = *TPXcamera::standard(name);
        camera.setViewport(kSize, kSize);
        camera.fit(scene.bounds());
        for (int y = 2; y < kSize; y += 3)
            for (int x = 2; x < kSize; x += 3) {
                const auto culled = picker.pick(renderer, scene.root(), camera, x, y, true);
                const std::vector<TPXhitRecord> culledRecords = picker.records();
                const auto full = picker.pick(renderer, scene.root(), camera, x, y, false);
                ASSERT_EQ(culled, full) << name << " at " << x << "," << y;
                ASSERT_EQ(culledRecords, picker.records()) << name << " at " << x << "," << y;
                const GraphObject* element = culled ? scene.elementOf(*culled) : nullptr;
                edgeHits += element && element->kind() == GraphObjectKind::Edge;
            }
    }
    EXPECT_GT(edgeHits, 30) << "too few picks met an edge to compare";
}

TEST_F(Picker, RayThroughAWindowPointPassesThroughWhatIsDrawnThere) {
    TestScene scene;
    const TPXp3 centre(2, 1, 0);
    scene.add(sphereOf({1, 0, 0}), centre);
    const TPXimage image = draw(scene.first(), camera);
    int checked = 0;
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            if (!pixelAt(image, x, y).dominated(0))
                continue;
            const TPXray ray = camera.ray(x + 0.5, y + 0.5, kSize, kSize);
            // The ray's closest approach to the sphere's centre lies within its radius.
            const TPXp3 toCentre = centre - ray.origin;
            const TPXp3 closest = ray.origin + ray.direction * toCentre.dot(ray.direction);
            EXPECT_LT((closest - centre).length(), TPXdefaults::radius + 0.02) << x << "," << y;
            ++checked;
        }
    EXPECT_GT(checked, 20);
    EXPECT_EQ(camera.ray(kCentre, kCentre, kSize, kSize).origin.z(), 10.0);
}

}  // namespace
}  // namespace vellum
