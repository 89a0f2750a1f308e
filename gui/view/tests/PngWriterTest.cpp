// PNG files read back with libpng itself: the header, the two text chunks in their order, the
// rows; and the files a failed write leaves.
#include <gtest/gtest.h>

#include "gui/view/PngWriter.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/PngFile.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::PngContents;
using test::readPng;
using test::TempFolder;

TEST(PngWriter, WritesRgbRowsAfterTheTitleAndSourceChunks) {
    TPXimage image(2, 3, TPXimage::Type::Colour);
    for (std::size_t i = 0; i < image.pixels().size(); ++i)
        image.pixels()[i] = static_cast<std::uint8_t>(i * 13);
    TempFolder folder;
    const std::string file = folder.path("rule.png");
    ASSERT_TRUE(writePng(image, file));

    PngContents png;
    ASSERT_TRUE(readPng(file, png));
    EXPECT_EQ(png.width, 2u);
    EXPECT_EQ(png.height, 3u);
    EXPECT_EQ(png.bitDepth, 8);
    EXPECT_EQ(png.colourType, PNG_COLOR_TYPE_RGB);
    EXPECT_EQ(png.interlace, PNG_INTERLACE_NONE);
    ASSERT_EQ(png.texts.size(), 2u);
    EXPECT_EQ(png.texts[0], std::make_pair(std::string("Title"), std::string("graphrule")));
    EXPECT_EQ(png.texts[1].first, "Source");
    EXPECT_EQ(png.texts[1].second.rfind("Vellum v2 r5\nCopyright ", 0), 0u) << png.texts[1].second;
    EXPECT_EQ(png.textCompressions,
              (std::vector<int>{PNG_TEXT_COMPRESSION_NONE, PNG_TEXT_COMPRESSION_NONE}));
    EXPECT_EQ(png.pixels, image.pixels());
}

TEST(PngWriter, AFailedWriteLeavesTheFileThatWasThere) {
    TempFolder folder;
    const std::string file = folder.write("old.png", "old");
    EXPECT_FALSE(writePng(TPXimage(2, 2, TPXimage::Type::Grey), file)) << "grey";
    EXPECT_FALSE(writePng(TPXimage(), file)) << "empty";
    EXPECT_FALSE(writePng(TPXimage(1, 1, TPXimage::Type::Colour), folder.path("no/such/x.png")));
    // libpng refuses a header wider than its limit of a million pixels.
    EXPECT_FALSE(writePng(TPXimage(1000001, 1, TPXimage::Type::Colour), file)) << "too wide";
    EXPECT_EQ(TempFolder::read(file), "old");

    // A disk that fills up halfway through the rows, beyond what the file's buffer holds, so that
    // a write fails while libpng is still writing.
    TPXimage noise(800, 600, TPXimage::Type::Colour);
    std::uint32_t state = 1;
    for (std::uint8_t& sample : noise.pixels()) {
        state = state * 1664525u + 1013904223u;
        sample = static_cast<std::uint8_t>(state >> 24);
    }
    const auto save = [&] { return writePng(noise, file) ? 0 : 1; };
    EXPECT_EQ(test::runWithFileSizeLimit(64 * 1024, save).status, 1);
    EXPECT_EQ(TempFolder::read(file), "old");
    EXPECT_EQ(test::entriesOf(folder.root()), std::vector<std::string>{"old.png"});
    EXPECT_EQ(test::runWithFileSizeLimit(RLIM_INFINITY, save).status, 0);
    PngContents png;
    ASSERT_TRUE(readPng(file, png));
    EXPECT_EQ(png.pixels, noise.pixels());
}

}  // namespace
}  // namespace vellum
