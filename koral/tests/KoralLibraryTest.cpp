#include <gtest/gtest.h>

#include "KoralTestSupport.h"
#include "base/Paths.h"
#include "koral/KoralLibrary.h"

namespace vellum {
namespace {

using test::libraryError;
using test::testPluginDirectory;

TEST(KoralLibrary, TriesTheNameThenWithSoThenBothInThePluginFolder) {
    const std::string plugins = pluginDirectory();
    EXPECT_EQ(SharedLibrary::candidates("graphstats"),
              (std::vector<std::string>{"graphstats", "graphstats.so", plugins + "/graphstats",
                                        plugins + "/graphstats.so"}));
    // A name with a folder in it is a path: the plug-in folder is not tried.
    EXPECT_EQ(SharedLibrary::candidates("dir/lib"),
              (std::vector<std::string>{"dir/lib", "dir/lib.so"}));
}

TEST(KoralLibrary, FindsBundledLibrariesByBareNameAndPathsWithoutSo) {
    koralLibrary library;
    library.load("graphstats");
    EXPECT_EQ(library.file(), pluginDirectory() + "/graphstats.so");
    EXPECT_NE(library.function("counts"), nullptr);

    library.load(testPluginDirectory() + "/noerror");
    EXPECT_EQ(library.file(), testPluginDirectory() + "/noerror.so");
    EXPECT_NE(library.function("work"), nullptr);

    // A path is not looked for in the plug-in folder, even when the file is there.
    EXPECT_EQ(libraryError([&] { library.load("nowhere/graphstats"); }),
              "Could not load the library 'nowhere/graphstats' !!!");
    EXPECT_FALSE(library.loaded());
}

TEST(KoralLibrary, ReportsWhatIsMissingInItsOwnWords) {
    koralLibrary library;
    EXPECT_EQ(libraryError([&] { library.function("counts"); }), "No library loaded!!!");
    EXPECT_EQ(libraryError([&] { library.load("no_such_library"); }),
              "Could not load the library 'no_such_library' !!!");
    library.load("graphstats");
    EXPECT_EQ(libraryError([&] { library.function("nothing"); }),
              "Could find the function 'nothing' !!!");
    EXPECT_EQ(library.find("nothing"), nullptr);
}

TEST(KoralLibrary, MovingHandsTheLibraryOver) {
    koralLibrary first;
    first.load("graphstats");
    koralLibrary second = std::move(first);
    EXPECT_TRUE(second.loaded());
    EXPECT_NE(second.function("fail"), nullptr);
    EXPECT_FALSE(first.loaded());  // NOLINT(bugprone-use-after-move): moved-from is empty
    EXPECT_EQ(libraryError([&] { first.function("fail"); }), "No library loaded!!!");
}

}  // namespace
}  // namespace vellum
