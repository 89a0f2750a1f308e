// `vellum-cli scene`, `render` and `picture` through the real program: the listing and the graph
// written with the scene's attributes, pictures of the asked size and kind, and refusals.
#include <gtest/gtest.h>

#include "graph/GraphReader.h"
#include "tests/support/Program.h"
#include "tests/support/TempFolder.h"
#include "tpx/TPXimage.h"

namespace vellum {
namespace {

const char* const graphText =
    "directed graph g {\n"
    "  vertex 1 { label a vector position = (-2 0 0) }\n"
    "  vertex 2 { label b string representation = \"cube\" vector position = (2 0 0)"
    " vector color = (0 1 0) }\n"
    "  edge 1 -> 2 { label e }\n"
    "}\n";

TEST(PictureCommands, SceneListsTheSceneAndWritesTheGraphItAnnotated) {
    test::TempFolder folder;
    const std::string in = folder.write("g.dg", graphText);
    const std::string out = folder.path("shown.dg");
    const test::ProgramResult run = test::runCli({"scene", in, "-o", out});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              "vertex 1 TPXgeometry_sphere 32 36 at -2 0 0 color 0 0.5 1\n"
              "  label 'a' size 0.5\n"
              "vertex 2 TPXgeometry_cube 8 6 at 2 0 0 color 0 1 0\n"
              "  label 'b' size 0.5\n"
              "edge 1 1 -> 2 bend 0 0 0 color 1 0 0\n"
              "  label 'e' size 0.4\n"
              "2 vertices, 1 edges\n");
    DirectedGraph graph;
    ASSERT_TRUE(loadGraph(out, graph));
    for (const DirectedGraphVertex& vertex : graph.vertices())
        for (const char* name : {"representation", "position", "orientation", "scale"})
            EXPECT_NE(vertex.findAttribute(name), nullptr) << name;
}

TEST(PictureCommands, RenderAndPictureWriteTheAskedSizeAndKind) {
    test::TempFolder folder;
    const std::string in = folder.write("g.dg", graphText);
    const std::string rule =
        folder.write("r.drl",
                     "directed graphrule r { left-hand side { vertex 1 { label a } } interface"
                     " { vertex 1 <-> 2 } right-hand side { vertex 2 { label b } vertex 3 { } } }");
    struct Row {
        std::vector<std::string> arguments;
        const char* file;
        int width, height;
    } rows[] = {
        {{"render", in, "-o", folder.path("g.ppm"), "--size", "64x48", "--camera", "front",
          "--background", "1,1,1"},
         "g.ppm",
         64,
         48},
        {{"render", in, "-o", folder.path("g.pgm"), "--size", "40x30"}, "g.pgm", 40, 30},
        {{"picture", rule, "-o", folder.path("r.ppm"), "--size", "100x40"}, "r.ppm", 100, 40},
    };
    for (const Row& row : rows) {
        const test::ProgramResult run = test::runCli(row.arguments);
        ASSERT_EQ(run.status, 0) << row.file << ": " << run.err;
        TPXimage picture;
        ASSERT_TRUE(picture.read(folder.path(row.file))) << row.file;
        EXPECT_EQ(picture.width(), row.width) << row.file;
        EXPECT_EQ(picture.height(), row.height) << row.file;
    }
    // On white, the front view shows the blue-azure sphere left of the centre and the green
    // cube right of it.
    TPXimage front;
    ASSERT_TRUE(front.read(folder.path("g.ppm")));
    auto pixel = [&front](int x, int y) {
        const std::size_t at = (static_cast<std::size_t>(y) * front.width() + x) * 3;
        return std::vector<int>{front.pixels()[at], front.pixels()[at + 1], front.pixels()[at + 2]};
    };
    EXPECT_EQ(pixel(1, 1), (std::vector<int>{255, 255, 255}));
    int blue = 0, green = 0;
    for (int x = 0; x < 32; ++x)
        blue += pixel(x, 24)[2] > 150 && pixel(x, 24)[0] < 100;
    for (int x = 32; x < 64; ++x)
        green += pixel(x, 24)[1] > 100 && pixel(x, 24)[0] < 100 && pixel(x, 24)[2] < 100;
    EXPECT_GT(blue, 0);
    EXPECT_GT(green, 0);
}

TEST(PictureCommands, RefusesBadOptionsBeforeDrawing) {
    test::TempFolder folder;
    const std::string in = folder.write("g.dg", graphText);
    const std::vector<std::vector<std::string>> usage = {
        {"render", in},
        {"render", in, "-o", folder.path("g.gif")},
        {"render", in, "-o", folder.path("g.png"), "--camera", "side"},
        {"render", in, "-o", folder.path("g.png"), "--size", "0x10"},
        {"render", in, "-o", folder.path("g.png"), "--background", "1,2,0"},
        {"picture", in, "-o", folder.path("no/such/folder.png")},
    };
    for (const auto& arguments : usage) {
        const test::ProgramResult run = test::runCli(arguments);
        EXPECT_EQ(run.status, 2) << arguments.back() << run.err;
        EXPECT_NE(run.err.find("usage: vellum-cli"), std::string::npos);
    }
    const test::ProgramResult missing = test::runCli({"scene", folder.path("none.dg")});
    EXPECT_EQ(missing.status, 1);
}

}  // namespace
}  // namespace vellum
