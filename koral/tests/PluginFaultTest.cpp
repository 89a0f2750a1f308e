// Extension libraries that are not what they should be: files that are no library (text, empty,
// a library cut short), libraries without the entries of their kind, and names holding folder
// separators. Each must end in the loader's message, never in a crash.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "base/SharedLibrary.h"
#include "koral/GraphClassHandlers.h"
#include "koral/KoralMethodBinding.h"
#include "koral/LayoutLibrary.h"
#include "tests/support/Program.h"

namespace vellum {
namespace {

using test::libraryError;
using test::ScopedEnvironment;
using test::TempFolder;
using test::testPluginDirectory;

std::string handlerMessage(const std::string& graphClass) {
    return "Could not open the graph class handler for '" + graphClass + "' !!!\n";
}

// The console text of opening the class's handler, which must fail.
std::string refusedHandler(const std::string& graphClass) {
    GraphClassHandlers table;
    ConsoleCapture capture;
    EXPECT_FALSE(table.open(graphClass)) << graphClass;
    return capture.text();
}

std::string layoutError(const std::string& name) {
    return libraryError([&] { LayoutLibrary layout(name); });
}

std::string bindingError(const std::string& identifier) {
    return libraryError([&] { KoralMethodBinding binding(identifier); });
}

TEST(PluginFault, FilesThatAreNoLibraryAreRefusedByEveryKind) {
    const std::string library = TempFolder::read(pluginDirectory() + "/graphstats.so");
    ASSERT_GT(library.size(), 16384u);
    const struct {
        const char* name;
        std::string bytes;
    } junk[] = {
        {"text", "this is not a shared library\n"},
        {"empty", ""},
        // Interrupted copies: the header is there, the segments it announces are not (the
        // code begins at 8 KiB or later).
        {"cut1k", library.substr(0, 1024)},
        {"cut4k", library.substr(0, 4096)},
        {"cut8k", library.substr(0, 8192)},
    };
    TempFolder folder;
    ScopedEnvironment classes("koralGraphClasses", folder.path());
    ScopedEnvironment layouts("VellumLayout", folder.path());
    for (const auto& file : junk) {
        const std::string name = file.name;
        folder.write(name + ".so", file.bytes);
        folder.write(name + ".gc", file.bytes);
        folder.write(name + ".layout", file.bytes);
        const std::string path = folder.path(name);
        EXPECT_EQ(bindingError(path + ".counts"), "Could not load the library '" + path + "' !!!");
        EXPECT_EQ(refusedHandler(name), handlerMessage(name));
        EXPECT_EQ(layoutError(name), "Could not load the library '" + path + ".layout' !!!");
        // Function libraries of expressions load through the same door.
        EXPECT_FALSE(SharedLibrary::open(path).loaded()) << name;
    }
}

TEST(PluginFault, ALibraryCutShortOnTheLoadersSearchPathIsRefused) {
    // Function and method libraries are named bare and found along LD_LIBRARY_PATH, which the
    // loader reads at start-up: hence a program started with it.
    const std::string library = TempFolder::read(pluginDirectory() + "/$(vmath.so");
    ASSERT_GT(library.size(), 8192u);
    TempFolder folder;
    folder.write("$(cut.so", library.substr(0, 4096));
    folder.write("$(whole.so", library);
    test::ProgramOptions environment;
    environment.environment["LD_LIBRARY_PATH"] = folder.path();
    const test::ProgramResult cut = test::runCli({"eval", "$(cut.abs)(0 - 2)"}, environment);
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(cut.out.rfind("exprException 7", 0), 0u) << cut.out;
    // The same folder still serves a whole library.
    const test::ProgramResult whole = test::runCli({"eval", "$(whole.abs)(0 - 2)"}, environment);
    EXPECT_EQ(whole.status, 0);
    EXPECT_EQ(whole.out, "integer 2\n");
}

TEST(PluginFault, LibrariesWithoutTheEntriesOfTheirKind) {
    // Bare.gc exports none of the entries of any kind.
    TempFolder folder;
    const std::string bare = testPluginDirectory() + "/Bare.gc";
    folder.copy(bare, "bare.so");
    folder.copy(bare, "bare.layout");
    EXPECT_EQ(bindingError(folder.path("bare") + ".work"),
              "Could not find the method 'work' in the library '" + folder.path("bare") + "' !!!");

    ScopedEnvironment layouts("VellumLayout", folder.path());
    const LayoutLibrary layout("bare");
    EXPECT_EQ(layout.description(), "");
    EXPECT_EQ(libraryError([&] { layout.configure(); }),
              "Could find the function 'lyConfigure' !!!");
    DirectedGraph graph;
    EXPECT_EQ(libraryError([&] { layout.completeLayout(graph, nullptr); }),
              "Could find the function 'lyCompleteLayout' !!!");
}

// A graph of a class whose name is a path.
class PathClassGraph : public DirectedGraph {
  public:
    const std::string& className() const override {
        static const std::string name = "../evil";
        return name;
    }
};

TEST(PluginFault, ClassAndLayoutNamesAreNamesNotPaths) {
    // Working handlers and layouts wait where a name with a separator would reach.
    TempFolder folder;
    const std::string handler = testPluginDirectory() + "/Complete.gc";
    const std::string sphere = pluginDirectory() + "/sphere.layout";
    for (const char* file :
         {"classes/Complete.gc", "classes/x/y.gc", "classes/x\\y.gc", "classes/.gc", "evil.gc"}) {
        folder.write(file, "");
        folder.copy(handler, file);
    }
    for (const char* file :
         {"layouts/ok.layout", "layouts/sub/inner.layout", "layouts/.layout", "evil.layout"}) {
        folder.write(file, "");
        folder.copy(sphere, file);
    }
    ScopedEnvironment classes("koralGraphClasses", folder.path("classes"));
    ScopedEnvironment layouts("VellumLayout", folder.path("layouts"));

    EXPECT_TRUE(GraphClassHandlers().open("Complete"));
    for (const char* name : {"x/y", "../evil", "x\\y", ""})
        EXPECT_EQ(refusedHandler(name), handlerMessage(name));
    GraphClassHandlers table;
    PathClassGraph graph;
    ConsoleCapture capture;
    EXPECT_EQ(libraryError([&] { table.saveGraph(graph, folder.path("out.dg")); }),
              "No library loaded!!!");
    EXPECT_EQ(capture.text(), handlerMessage("../evil"));

    EXPECT_TRUE(LayoutLibrary("ok").completeLayout(graph, nullptr));
    for (const char* name : {"sub/inner", "../evil", ""}) {
        EXPECT_EQ(layoutError(name),
                  "Could not load the library '" + std::string(name) + ".layout' !!!");
    }

    // A method library's name is handed to the loader: a path loads exactly that file, and a
    // name cannot hold a "." at all, since the first one ends it.
    folder.copy(pluginDirectory() + "/graphstats.so", "stats.so");
    EXPECT_EQ(KoralMethodBinding(folder.path("stats") + ".counts").libraryName(),
              folder.path("stats"));
    EXPECT_EQ(bindingError("../evil.counts"), "Could not load the library '' !!!");
}

}  // namespace
}  // namespace vellum
