// `vellum-cli layout` through the real program, with the real plug-ins.
#include <gtest/gtest.h>

#include "base/Paths.h"
#include "graph/GraphReader.h"
#include "koral/LayoutLibrary.h"
#include "koral/VertexPosition.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using CliRun = test::ProgramResult;
using test::ScopedEnvironment;
using test::TempFolder;

std::string descriptionOf(const std::string& name) {
    ScopedEnvironment bundled("VellumLayout", pluginDirectory());
    return LayoutLibrary(name).description();
}

TEST(LayoutCommand, ListsOneLineOfNameAndDescriptionPerAlgorithm) {
    const std::string expected =
        "force3d " + descriptionOf("force3d") + "\n" + "sphere " + descriptionOf("sphere") + "\n";
    {
        // Unset: the program points the variable at its own plug-in folder.
        ScopedEnvironment unset("VellumLayout", std::nullopt);
        const CliRun run = test::runCli({"layout", "--list"});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out, expected);
    }
    TempFolder folder;
    folder.copy(pluginDirectory() + "/sphere.layout", "sphere.layout");
    folder.write("broken.layout", "not a library");
    ScopedEnvironment mine("VellumLayout", folder.path() + "/");
    const CliRun run = test::runCli({"layout", "--list"});
    EXPECT_EQ(run.status, 1);  // for the broken one, which only standard error mentions
    EXPECT_EQ(run.out, "sphere " + descriptionOf("sphere") + "\n");
}

TEST(LayoutCommand, WritesTheGraphWithPositions) {
    TempFolder folder;
    const std::string in = folder.write(
        "g.dg", "directed graph\n{\n\tvertex 1\n\tvertex 2 { label A }\n\tedge 1 -> 2\n}\n");
    const std::string out = folder.path("out.dg");
    ScopedEnvironment unset("VellumLayout", std::nullopt);
    const CliRun run = test::runCli({"layout", "sphere", in, "-o", out});
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    DirectedGraph graph;
    ASSERT_TRUE(loadGraph(out, graph));
    ASSERT_EQ(graph.vertexCount(), 2u);
    for (const auto& vertex : graph.vertices())
        EXPECT_TRUE(vertexPosition(vertex).has_value());

    // Without -o the graph goes to standard output.
    const CliRun printed = test::runCli({"layout", "force3d", in});
    EXPECT_EQ(printed.status, 0);
    EXPECT_NE(printed.out.find("vector position = ("), std::string::npos);
}

TEST(LayoutCommand, ReportsUnknownLayoutsAndMisuse) {
    TempFolder folder;
    const std::string in = folder.write("g.dg", "directed graph\n{\n\tvertex 1\n}\n");
    ScopedEnvironment unset("VellumLayout", std::nullopt);
    const CliRun unknown = test::runCli({"layout", "nosuch", in});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.out,
              "caugh't: Could not load the library 'nosuch.layout' !!!\n"
              "from class: koralLibrary\n");
    EXPECT_EQ(test::runCli({"layout"}).status, 2);
    EXPECT_EQ(test::runCli({"layout", "--list", in}).status, 2);
    EXPECT_EQ(test::runCli({"layout", "sphere", in, "-x", "out.dg"}).status, 2);
    EXPECT_EQ(test::runCli({"layout", "sphere", folder.path("missing.dg")}).status, 1);
}

}  // namespace
}  // namespace vellum
