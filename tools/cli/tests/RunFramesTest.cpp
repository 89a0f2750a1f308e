// `vellum-cli run --frames`: a run recorded as numbered pictures through the real program, the
// last of which is what `render` draws of the graph the run saved, and the refusals that come
// before the run starts.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tests/support/ConsoleText.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/PngFile.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::TempFolder;

// Three azure vertices in a row; the rule paints one green per step.
const char* kGraph = R"(directed graph row {
	vertex 1 { label a vector position = (-3 0 0) }
	vertex 2 { label a vector position = (0 0 0) }
	vertex 3 { label a vector position = (3 0 0) }
})";

const char* kRule = R"(directed graphrule paint {
	left-hand side { vertex 1 { label a } }
	interface { vertex 1 <-> 2 }
	right-hand side { vertex 2 { label b vector color = (0 1 0) } }
})";

const char* kModule = R"(module paint
graph class : DirectedGraph
exports transformation unit all
realized by
transformation unit all
initial :
body : apply as long as possible paint
terminal :
end
end.
)";

bool azure(const std::uint8_t* p) {
    return p[2] > 100 && p[0] < 60 && p[1] < p[2];
}
bool green(const std::uint8_t* p) {
    return p[1] > 100 && p[0] < 60 && p[2] < 60;
}

// The pixels of a picture that have the hue.
int pixelsOf(const test::PngContents& picture, bool (*hue)(const std::uint8_t*)) {
    int found = 0;
    for (std::size_t at = 0; at + 2 < picture.pixels.size(); at += 3)
        found += hue(&picture.pixels[at]);
    return found;
}

// Pixels whose channels differ by more than a rounding or an edge's shading could.
int differingPixels(const test::PngContents& a, const test::PngContents& b) {
    int differing = 0;
    for (std::size_t at = 0; at + 2 < a.pixels.size(); at += 3) {
        int largest = 0;
        for (int c = 0; c < 3; ++c)
            largest = std::max(largest, std::abs(a.pixels[at + c] - b.pixels[at + c]));
        differing += largest > 24;
    }
    return differing;
}

class RunFrames : public ::testing::Test {
  protected:
    RunFrames()
        : paths_(std::nullopt, std::nullopt, std::nullopt, "DirectedGraphEXTRULE", std::nullopt) {
        folder_.write("paint.drl", kRule);
        graph_ = folder_.write("row.dg", kGraph);
        module_ = folder_.write("paint.mod", kModule);
    }

    std::vector<std::string> run(std::vector<std::string> options) const {
        std::vector<std::string> arguments{"run", module_, "all", graph_, "--quiet"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    TempFolder folder_;
    std::string graph_;
    std::string module_;

  private:
    test::ScopedSearchPaths paths_;
};

TEST_F(RunFrames, WritesThePictureBeforeTheRunAndOneAfterEveryStep) {
    const std::string frames = folder_.path("frames/run1");
    const std::string saved = folder_.path("out.dg");
    const test::ProgramResult result = test::runCli(
        run({"--trace", "--seed", "1", "--frames", frames, "--size", "160x120", "-o", saved}));
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err.find("vellum-cli run:"), std::string::npos) << result.err;
    // The console says what it says without pictures.
    const test::ProgramResult plain = test::runCli(run({"--trace", "--seed", "1"}));
    EXPECT_EQ(test::withoutTime(result.out), test::withoutTime(plain.out));

    int steps = 0;
    for (std::size_t at = 0; (at = result.out.find("' applied at", at)) != std::string::npos; ++at)
        ++steps;
    EXPECT_GT(steps, 0) << result.out;
    std::vector<std::string> expected;
    for (int number = 0; number <= steps; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "step-%06d.png", number);
        expected.push_back(name);
    }
    EXPECT_EQ(test::entriesOf(frames), expected);

    // Three azure vertices before the run, three green ones after it.
    test::PngContents first, last, rendered;
    ASSERT_TRUE(test::readPng(frames + "/" + expected.front(), first));
    ASSERT_TRUE(test::readPng(frames + "/" + expected.back(), last));
    EXPECT_EQ(first.width, 160u);
    EXPECT_EQ(first.height, 120u);
    EXPECT_GT(pixelsOf(first, azure), 30);
    EXPECT_EQ(pixelsOf(first, green), 0);
    EXPECT_GT(pixelsOf(last, green), 30);
    EXPECT_EQ(pixelsOf(last, azure), 0);

    const std::string drawn = folder_.path("render.png");
    const test::ProgramResult render =
        test::runCli({"render", saved, "-o", drawn, "--size", "160x120"});
    ASSERT_EQ(render.status, 0) << render.err;
    ASSERT_TRUE(test::readPng(drawn, rendered));
    ASSERT_EQ(rendered.pixels.size(), last.pixels.size());
    EXPECT_LT(differingPixels(last, rendered), 160 * 120 / 100);
}

// Each refusal comes before the run starts: nothing on standard output, no folder made, no
// picture replaced.
TEST_F(RunFrames, RefusesBeforeTheRunStarts) {
    const std::string recorded = folder_.write("recorded/step-000000.png", "old");
    const std::string unmade = folder_.path("unmade");
    test::ProgramOptions withoutGl;
    withoutGl.environment["__EGL_VENDOR_LIBRARY_FILENAMES"] = folder_.path("none.json");
    const struct {
        std::vector<std::string> options;
        test::ProgramOptions environment;
        int status;
        const char* message;
    } rows[] = {
        {{"--frames", unmade, "--size", "0x5"}, {}, 2, "--size needs WIDTHxHEIGHT, each 1 to 8192"},
        {{"--size", "64x48"}, {}, 2, "--size goes with --frames"},
        {{"--frames", graph_ + "/frames"}, {}, 1, "cannot create the folder"},
        {{"--frames", folder_.path("recorded")}, {}, 1, "already holds pictures of a recording"},
        {{"--frames", unmade}, withoutGl, 1, "vellum-cli run: OpenGL is not available"},
    };
    for (const auto& row : rows) {
        const test::ProgramResult result = test::runCli(run(row.options), row.environment);
        EXPECT_EQ(result.status, row.status) << row.message;
        EXPECT_EQ(result.out, "") << row.message;
        EXPECT_NE(result.err.find(row.message), std::string::npos) << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists(unmade));
    EXPECT_EQ(TempFolder::read(recorded), "old");
}

}  // namespace
}  // namespace vellum
