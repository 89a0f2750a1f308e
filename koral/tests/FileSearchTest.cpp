#include <gtest/gtest.h>

#include "KoralTestSupport.h"
#include "koral/FileSearch.h"

namespace vellum {
namespace {

using test::ScopedEnvironment;
using test::ScopedWorkingDirectory;
using test::TempFolder;

constexpr const char* kVariable = "VELLUM_TEST_SEARCH";

TEST(FileSearch, JoinsWithOneSeparator) {
    const struct {
        const char* directory;
        const char* expected;
    } rows[] = {
        {"dir", "dir/f.gc"},
        {"dir/", "dir/f.gc"},
        {"dir\\", "dir/f.gc"},
        {"/", "/f.gc"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(joinPath(row.directory, "f.gc"), row.expected) << row.directory;
}

TEST(FileSearch, WithoutAVariableLooksAtTheBareNameOnly) {
    TempFolder folder;
    folder.write("here.gc", "x");
    folder.write("sub/there.gc", "x");
    ScopedWorkingDirectory inside(folder.path());
    for (const std::optional<std::string>& value : {std::optional<std::string>(), {""}}) {
        ScopedEnvironment variable(kVariable, value);
        EXPECT_EQ(findFile("here.gc", kVariable), "here.gc");
        EXPECT_EQ(findFile("there.gc", kVariable), "");
        EXPECT_EQ(findFile("sub/there.gc", kVariable), "sub/there.gc");
    }
}

TEST(FileSearch, TriesTheFoldersInOrderAndTheFirstExistingFileWins) {
    TempFolder folder;
    folder.write("a/only-a.gc", "x");
    folder.write("b/both.gc", "x");
    folder.write("c/both.gc", "x");
    folder.write("c/only-c.gc", "x");
    folder.write("c/dir.gc/inside", "x");  // a folder of that name is no file
    const std::string a = folder.path("a");
    const std::string b = folder.path("b") + "/";
    const std::string c = folder.path("c") + "\\";
    // An empty entry is skipped rather than taken as the root folder.
    ScopedEnvironment variable(kVariable, a + ";;" + b + ";" + c + ";");
    EXPECT_EQ(searchDirectories(kVariable), (std::vector<std::string>{a, b, c}));
    EXPECT_EQ(findFile("only-a.gc", kVariable), a + "/only-a.gc");
    EXPECT_EQ(findFile("both.gc", kVariable), b + "both.gc");
    EXPECT_EQ(findFile("only-c.gc", kVariable), folder.path("c") + "/only-c.gc");
    EXPECT_EQ(findFile("dir.gc", kVariable), "");
    EXPECT_EQ(findFile("missing.gc", kVariable), "");
}

TEST(FileSearch, FoundFilesBecomePathsTheLoaderTakesAsTheyStand) {
    EXPECT_EQ(loaderPath("x.gc"), "./x.gc");
    EXPECT_EQ(loaderPath("sub/x.gc"), "sub/x.gc");
    EXPECT_EQ(loaderPath("/abs/x.gc"), "/abs/x.gc");
    EXPECT_EQ(loaderPath(""), "");
}

}  // namespace
}  // namespace vellum
