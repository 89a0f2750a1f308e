// Saves by the graph class handler DirectedGraph.gc and by `vellum-cli convert` that cannot
// complete (a full disk, a folder path through a file): they fail with the console message
// and leave the file that was there byte for byte, with no temporary file beside it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "graph/GraphWriter.h"
#include "koral/GraphClassHandlers.h"
#include "tests/support/Program.h"
#include "tests/support/SaveFaults.h"

namespace vellum {
namespace {

using test::Saver;
using test::ScopedEnvironment;
using test::TempFolder;

// The exit status of vellum-cli convert IN OUT, run in this (child) process's place.
int convert(const std::string& in, const std::string& out) {
    ::execl(test::cliPath().c_str(), "vellum-cli", "convert", in.c_str(), out.c_str(),
            static_cast<char*>(nullptr));
    return 127;
}

class SaveThrough : public ::testing::Test {
  protected:
    SaveThrough() {
        ConsoleCapture quiet;
        EXPECT_TRUE(saveGraph(*graph_, folder_.path("in.dg")));
        folder_.write("in.drl", test::bigRuleText());
    }

    std::vector<Saver> savers() {
        const std::string graph = folder_.path("in.dg");
        const std::string rule = folder_.path("in.drl");
        return {
            {"handler", ".dg",
             [this](const std::string& out) { return handlers_.saveGraph(*graph_, out) ? 0 : 1; }},
            {"convert graph", ".dg",
             [graph](const std::string& out) { return convert(graph, out); }},
            {"convert rule", ".drl", [rule](const std::string& out) { return convert(rule, out); }},
        };
    }

    TempFolder folder_;
    ScopedEnvironment classes_{"koralGraphClasses", pluginDirectory()};
    GraphClassHandlers handlers_;
    std::unique_ptr<DirectedGraph> graph_ = test::bigGraph();
};

TEST_F(SaveThrough, AFullDiskLeavesTheOldFileAndNoTemporaryFile) {
    ASSERT_TRUE(handlers_.open("DirectedGraph"));
    for (const Saver& saver : savers())
        test::expectAFullDiskLeavesTheOldFile(saver);
}

TEST_F(SaveThrough, AFolderPathThroughAFileIsReported) {
    ASSERT_TRUE(handlers_.open("DirectedGraph"));
    for (const Saver& saver : savers())
        test::expectAPathThroughAFileReported(saver);
}

}  // namespace
}  // namespace vellum
