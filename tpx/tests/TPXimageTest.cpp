// Portable maps: the exact bytes written, what reads back, and the files the reader refuses
// without touching the image or reading past their end.
#include <gtest/gtest.h>

#include "tests/support/LimitedChild.h"
#include "tests/support/TempFolder.h"
#include "tpx/TPXimage.h"

namespace vellum {
namespace {

using namespace std::string_literals;
using test::TempFolder;
using Type = TPXimage::Type;

TPXimage imageOf(int width, int height, Type type, const std::string& samples) {
    TPXimage image(width, height, type);
    image.pixels().assign(samples.begin(), samples.end());
    return image;
}

std::string samplesOf(const TPXimage& image) {
    return {image.pixels().begin(), image.pixels().end()};
}

struct WriteRow {
    const char* name;
    Type type;
    std::string samples;  // of 2 by 1 pixels
    std::string file;
};

TEST(TPXimage, WritesTheHeaderAndRowsByteForByteAndReadsThemBack) {
    // The first sample is a line feed, so the reader must tell it from the header's second one.
    const WriteRow rows[] = {
        {"a.ppm", Type::Colour, "\n\0\377abc"s, "P6\n2 1\n255\n\n\n\0\377abc"s},
        {"a.pgm", Type::Grey, "\n\x80"s, "P5\n2 1\n255\n\n\n\x80"s},
    };
    for (const WriteRow& row : rows) {
        TempFolder folder;
        const std::string file = folder.path(row.name);
        ASSERT_TRUE(imageOf(2, 1, row.type, row.samples).write(file)) << row.name;
        EXPECT_EQ(TempFolder::read(file), row.file) << row.name;
        TPXimage back;
        ASSERT_TRUE(back.read(file)) << row.name;
        EXPECT_EQ(back.type(), row.type) << row.name;
        EXPECT_EQ(back.width(), 2) << row.name;
        EXPECT_EQ(back.height(), 1) << row.name;
        EXPECT_TRUE(back.binary()) << row.name;
        EXPECT_EQ(samplesOf(back), row.samples) << row.name;
    }
}

struct ReadRow {
    const char* name;
    std::string file;
    Type type;
    int width;
    std::string samples;
};

TEST(TPXimage, ReadsTextAndRawSamples) {
    const ReadRow rows[] = {
        // Text samples, comments wherever white space may be, and maximum values below 255
        // stretched to the full byte.
        {"t.ppm", "P3\n# by hand\n2 1 # size\n255\n1 2 3\n4 5 #six\n6\n", Type::Colour, 2,
         "\1\2\3\4\5\6"s},
        {"t.pgm", "P2 3 1 15 0 8 15", Type::Grey, 3, "\0\x88\xff"s},
        {"b.pgm", "P5 1 1 1\n\1"s, Type::Grey, 1, "\xff"},
        // Raw samples after one white-space byte: a file of exactly that size whose first sample
        // is a line feed, a comment in the header, a line ended by CR LF.
        {"b.pgm", "P5\n2 1\n255\n\n\1"s, Type::Grey, 2, "\n\1"s},
        {"b.ppm", "P6#c\n1 1\n255\n\0\0\0"s, Type::Colour, 1, "\0\0\0"s},
        {"b.pgm", "P5\r\n1 1\r\n255\r\n\7"s, Type::Grey, 1, "\7"},
        // The lower-cased name decides, ".pgm" before ".ppm".
        {"picture.PGM", "P5 1 1 255\n\7"s, Type::Grey, 1, "\7"},
        {"x.pgm.ppm", "P5 1 1 255\n\7"s, Type::Grey, 1, "\7"},
    };
    for (const ReadRow& row : rows) {
        TempFolder folder;
        TPXimage image;
        ASSERT_TRUE(image.read(folder.write(row.name, row.file))) << row.file;
        EXPECT_EQ(image.type(), row.type) << row.file;
        EXPECT_EQ(image.width(), row.width) << row.file;
        EXPECT_EQ(image.height(), 1) << row.file;
        EXPECT_EQ(image.binary(), row.file[1] > '3') << row.file;
        EXPECT_EQ(samplesOf(image), row.samples) << row.file;
    }
}

struct RefusedRow {
    const char* name;
    std::string file;
};

TEST(TPXimage, RefusesMalformedFilesWithoutChangingTheImage) {
    const RefusedRow rows[] = {
        // Names of neither kind, and the other kind's magic.
        {"x.png", "P5 1 1 255\n\7"s},
        {"x.pnm", "P5 1 1 255\n\7"s},
        {"x.ppm", "P5 1 1 255\n\7"s},
        {"x.pgm", "P3 1 1 255 1 2 3"},
        {"x.pgm", "p5 1 1 255\n\7"s},
        {"x.pgm", "P7 1 1 255\n\7"s},
        {"x.pgm", ""},
        // Header fields glued together, missing, zero, negative or beyond a byte.
        {"x.pgm", "P52 1 255\n\7\7"s},
        {"x.pgm", "P5 1x1 255\n\7"s},
        {"x.pgm", "P5 1 1"},
        {"x.pgm", "P5 0 1 255\n"},
        {"x.pgm", "P2 1 1 0 0"},
        {"x.pgm", "P2 1 -1 255 0"},
        {"x.pgm", "P5 1 1 256\n\0\7"s},
        // Raw samples need one white-space byte after the maximum, no comment.
        {"x.pgm", "P5 1 1 255#c\n\7"s},
        {"x.pgm", "P5 1 1 255"},
        // Truncated or longer than the header says.
        {"x.pgm", "P5 2 2 255\n\1\2\3"s},
        {"x.pgm", "P5 2 1 255\n\1\2\3"s},
        {"x.pgm", "P5 1 1 255\n"s},
        {"x.ppm", "P3 1 1 255 1 2"},
        {"x.pgm", "P2 1 1 255 1 2"},
        {"x.pgm", "P2 2 1 255 1 2x"},
        // Samples above the maximum.
        {"x.pgm", "P2 1 1 15 16"},
        {"x.pgm", "P5 1 1 15\n\x10"s},
        // Absurd sizes: a side, the whole, and a size the file is far too short for.
        {"x.pgm", "P5 99999 1 255\n\1"s},
        {"x.ppm", "P6 30000 30000 255\n\1"s},
        {"x.pgm", "P5 16000 16000 255\n\1"s},
        {"x.pgm", "P2 16000 16000 255 1 2 3"},
    };
    for (const RefusedRow& row : rows) {
        TempFolder folder;
        TPXimage image = imageOf(1, 1, Type::Grey, "\x42");
        EXPECT_FALSE(image.read(folder.write(row.name, row.file))) << row.name << ": " << row.file;
        EXPECT_EQ(image.type(), Type::Grey) << row.file;
        EXPECT_EQ(samplesOf(image), "\x42") << row.file;
    }
}

TEST(TPXimage, RefusesWhatIsNoImageFile) {
    TempFolder folder;
    TPXimage image;
    EXPECT_FALSE(image.read(folder.path("missing.ppm")));
    std::filesystem::create_directory(folder.path("folder.ppm"));
    EXPECT_FALSE(image.read(folder.path("folder.ppm")));
    EXPECT_EQ(image.type(), Type::None);
}

TEST(TPXimage, AFailedWriteLeavesTheFileThatWasThere) {
    TempFolder folder;
    const std::string file = folder.write("old.ppm", "old");
    EXPECT_FALSE(TPXimage().write(file)) << "an empty image";
    TPXimage cut(2, 2, Type::Colour);
    cut.pixels().pop_back();
    EXPECT_FALSE(cut.write(file)) << "fewer pixels than its size";
    EXPECT_FALSE(TPXimage(1, 1, Type::Grey).write(folder.path("no/such/folder/x.pgm")));

    // A disk that fills up halfway through the rows.
    TPXimage big(300, 300, Type::Colour);
    const auto save = [&] { return big.write(file) ? 0 : 1; };
    EXPECT_EQ(test::runWithFileSizeLimit(64 * 1024, save).status, 1);
    EXPECT_EQ(TempFolder::read(file), "old");
    EXPECT_EQ(test::entriesOf(folder.root()), std::vector<std::string>{"old.ppm"});
    EXPECT_EQ(test::runWithFileSizeLimit(RLIM_INFINITY, save).status, 0);
    EXPECT_EQ(TempFolder::read(file).size(), 300u * 300u * 3u + 16u);
}

}  // namespace
}  // namespace vellum
