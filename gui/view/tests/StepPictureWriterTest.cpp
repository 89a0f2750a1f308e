// The folder of a recorded run: made when missing, picture names ffmpeg's "step-%06d.png" reads
// in order, and everything it refuses rather than replace or mix files.
#include <gtest/gtest.h>

#include <filesystem>

#include "gui/view/StepPictureWriter.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/PngFile.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::entriesOf;
using test::TempFolder;

TPXimage filled(std::uint8_t value) {
    TPXimage image(3, 2, TPXimage::Type::Colour);
    std::fill(image.pixels().begin(), image.pixels().end(), value);
    return image;
}

TEST(StepPictureWriter, TakesNewAndUnrecordedFoldersOnly) {
    TempFolder folder;
    folder.write("plain.txt", "x");
    folder.write("other/notes.txt", "keep");
    folder.write("other/step-1.txt", "keep");
    folder.write("recorded/step-final.png", "old");
    const struct {
        std::string folder;
        const char* problem;  // a part of the message; empty: taken
    } rows[] = {
        {folder.path("fresh/deeper"), ""},
        {folder.path("other"), ""},
        {folder.path("recorded"), "already holds pictures of a recording ('step-final.png')"},
        {folder.path("plain.txt"), "is no folder"},
        {folder.path("plain.txt/under"), "cannot create the folder"},
        {"", "no folder named"},
    };
    for (const auto& row : rows) {
        std::string error;
        const std::optional<StepPictureWriter> writer = StepPictureWriter::open(row.folder, error);
        EXPECT_EQ(writer.has_value(), *row.problem == '\0') << row.folder << ": " << error;
        EXPECT_NE(error.find(row.problem), std::string::npos) << row.folder << ": " << error;
    }
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("fresh/deeper")));
    EXPECT_EQ(TempFolder::read(folder.path("recorded/step-final.png")), "old");
}

TEST(StepPictureWriter, WritesEachNumberOnceAndNeverReplacesAFile) {
    TempFolder folder;
    std::string error;
    const std::optional<StepPictureWriter> writer = StepPictureWriter::open(folder.path(), error);
    ASSERT_TRUE(writer) << error;
    ASSERT_TRUE(writer->write(0, filled(10), error)) << error;
    ASSERT_TRUE(writer->write(StepPictureWriter::kLastNumber, filled(20), error)) << error;

    const struct {
        int number;
        TPXimage picture;
        const char* problem;
    } refusals[] = {
        {0, filled(99), "exists already"},
        {-1, filled(99), "outside 0 to 999999"},
        {StepPictureWriter::kLastNumber + 1, filled(99), "outside 0 to 999999"},
        {1, TPXimage(3, 2, TPXimage::Type::Grey), "cannot write the picture"},
    };
    for (const auto& row : refusals) {
        error.clear();
        EXPECT_FALSE(writer->write(row.number, row.picture, error)) << row.number;
        EXPECT_NE(error.find(row.problem), std::string::npos) << row.number << ": " << error;
    }
    // Six digits, so that ffmpeg's "step-%06d.png" reads them in order.
    EXPECT_EQ(entriesOf(folder.root()),
              (std::vector<std::string>{"step-000000.png", "step-999999.png"}));
    test::PngContents first;
    ASSERT_TRUE(test::readPng(writer->path(0), first));
    EXPECT_EQ(first.pixels, filled(10).pixels());
}

}  // namespace
}  // namespace vellum
