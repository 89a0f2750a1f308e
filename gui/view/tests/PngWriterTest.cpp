// PNG files read back with libpng itself: the header, the two text chunks in their order, the
// rows; and the files a failed write leaves.
#include <gtest/gtest.h>
#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <memory>

#include "gui/view/PngWriter.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::TempFolder;

struct PngContents {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bitDepth = 0;
    int colourType = 0;
    int interlace = 0;
    std::vector<std::pair<std::string, std::string>> texts;  // key and text, in file order
    std::vector<int> textCompressions;
    std::vector<std::uint8_t> pixels;
};

// Fills `contents` from an opened read structure; one frame without destructible objects,
// since a libpng error longjmps back to its start.
bool decode(png_structp png, png_infop info, PngContents& contents) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_read_info(png, info);
    png_get_IHDR(png, info, &contents.width, &contents.height, &contents.bitDepth,
                 &contents.colourType, &contents.interlace, nullptr, nullptr);
    const std::size_t rowBytes = png_get_rowbytes(png, info);
    contents.pixels.resize(rowBytes * contents.height);
    for (png_uint_32 y = 0; y < contents.height; ++y)
        png_read_row(png, contents.pixels.data() + y * rowBytes, nullptr);
    png_read_end(png, info);
    png_textp texts = nullptr;
    const int count = png_get_text(png, info, &texts, nullptr);
    for (int i = 0; i < count; ++i) {
        contents.texts.emplace_back(texts[i].key, texts[i].text);
        contents.textCompressions.push_back(texts[i].compression);
    }
    return true;
}

bool readPng(const std::string& fileName, PngContents& contents) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fileName.c_str(), "rb"),
                                                               std::fclose);
    if (!file)
        return false;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool read = false;
    if (info != nullptr) {
        png_init_io(png, file.get());
        read = decode(png, info, contents);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return read;
}

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
