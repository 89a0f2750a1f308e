// The folder of a recorded run: picture names ffmpeg's "step-%06d.png" reads in order, the
// folder made when missing, and everything it refuses rather than replace or mix files.
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

TEST(StepPictureWriter, NamesPicturesWithSixDigitsAndKnowsThem) {
    EXPECT_EQ(StepPictureWriter::fileName(0), "step-000000.png");
    EXPECT_EQ(StepPictureWriter::fileName(42), "step-000042.png");
    EXPECT_EQ(StepPictureWriter::fileName(StepPictureWriter::kLastNumber), "step-999999.png");
    const struct {
        const char* name;
        bool picture;
    } rows[] = {{"step-000007.png", true},  {"step-final.png", true}, {"step-.png", true},
                {"step-000007.ppm", false}, {"steps-1.png", false},   {"a-step-1.png", false},
                {"step-1.PNG", false}};
    for (const auto& row : rows)
        EXPECT_EQ(StepPictureWriter::isPictureName(row.name), row.picture) << row.name;
}

TEST(StepPictureWriter, TakesNewAndUnrecordedFoldersOnly) {
    TempFolder folder;
    folder.write("plain.txt", "x");
    folder.write("other/notes.txt", "keep");
    folder.write("other/step-1.txt", "keep");
    folder.write("recorded/step-000003.png", "old");
    const struct {
        std::string folder;
        const char* problem;  // a part of the message; empty: taken
    } rows[] = {
        {folder.path("fresh/deeper"), ""},
        {folder.path("other"), ""},
        {folder.path("recorded"), "already holds pictures of a recording ('step-000003.png')"},
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
    EXPECT_EQ(TempFolder::read(folder.path("recorded/step-000003.png")), "old");
}

TEST(StepPictureWriter, WritesEachNumberOnceAndNeverReplacesAFile) {
    TempFolder folder;
    std::string error;
    const std::optional<StepPictureWriter> writer = StepPictureWriter::open(folder.path(), error);
    ASSERT_TRUE(writer) << error;
    ASSERT_TRUE(writer->write(0, filled(10), error)) << error;
    ASSERT_TRUE(writer->write(12, filled(20), error)) << error;

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
    EXPECT_EQ(entriesOf(folder.root()),
              (std::vector<std::string>{"step-000000.png", "step-000012.png"}));
    for (const auto& [number, value] : {std::pair{0, 10}, std::pair{12, 20}}) {
        test::PngContents png;
        ASSERT_TRUE(test::readPng(writer->path(number), png)) << number;
        EXPECT_EQ(png.pixels, filled(static_cast<std::uint8_t>(value)).pixels()) << number;
    }
}

}  // namespace
}  // namespace vellum
