// Saves by the graph class handler DirectedGraph.gc and by `vellum-cli convert` that cannot
// complete (a full disk, a folder path through a file): they fail with the console message
// and leave the file that was there byte for byte, with no temporary file beside it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "graph/GraphWriter.h"
#include "graph/StringAttribute.h"
#include "koral/GraphClassHandlers.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/Program.h"

namespace vellum {
namespace {

using test::entriesOf;
using test::ScopedEnvironment;
using test::TempFolder;

constexpr rlim_t kLimit = 64 * 1024;
const std::string kOldText = "% the file as it was before the save\n";

void fillGraph(DirectedGraph& graph) {
    for (int i = 0; i < 4000; ++i) {
        DirectedGraphVertex* vertex = graph.createVertex();
        vertex->setLabel("node_label");
        vertex->addAttribute(std::make_unique<StringAttribute>("text", std::string(40, 'x')));
    }
}

std::string bigRuleText() {
    std::string text = "directed graphrule big\n{\n\tleft-hand side\n\t{\n";
    for (int i = 1; i <= 4000; ++i)
        text += "\t\tvertex " + std::to_string(i) + " { label a_rather_long_label }\n";
    return text + "\t}\n\tinterface\n\t{\n\t}\n\tright-hand side\n\t{\n\t}\n}\n";
}

// The exit status of vellum-cli convert IN OUT, run in this (child) process's place.
int convert(const std::string& in, const std::string& out) {
    ::execl(test::cliPath().c_str(), "vellum-cli", "convert", in.c_str(), out.c_str(),
            static_cast<char*>(nullptr));
    return 127;
}

// One way to save: writes the big graph or rule to a file with that extension and returns the
// exit status, 0 for success.
struct Saver {
    const char* kind;
    const char* extension;
    std::function<int(const std::string& file)> save;
};

class SaveThrough : public ::testing::Test {
  protected:
    SaveThrough() {
        fillGraph(graph_);
        ConsoleCapture quiet;
        EXPECT_TRUE(saveGraph(graph_, folder_.path("in.dg")));
        folder_.write("in.drl", bigRuleText());
    }

    std::vector<Saver> savers() {
        const std::string graph = folder_.path("in.dg");
        const std::string rule = folder_.path("in.drl");
        return {
            {"handler", ".dg",
             [this](const std::string& out) { return handlers_.saveGraph(graph_, out) ? 0 : 1; }},
            {"convert graph", ".dg",
             [graph](const std::string& out) { return convert(graph, out); }},
            {"convert rule", ".drl", [rule](const std::string& out) { return convert(rule, out); }},
        };
    }

    TempFolder folder_;
    ScopedEnvironment classes_{"koralGraphClasses", pluginDirectory()};
    GraphClassHandlers handlers_;
    DirectedGraph graph_;
};

TEST_F(SaveThrough, AFullDiskLeavesTheOldFileAndNoTemporaryFile) {
    ASSERT_TRUE(handlers_.open("DirectedGraph"));
    for (const Saver& saver : savers()) {
        TempFolder target;
        const std::string name = std::string("old") + saver.extension;
        const std::string file = target.write(name, kOldText);
        const std::vector<std::string> before = entriesOf(target.path());
        const auto save = [&] { return saver.save(file); };
        const test::ChildResult child = test::runWithFileSizeLimit(kLimit, save);
        EXPECT_EQ(child.status, 1) << saver.kind;
        EXPECT_EQ(child.output, "Could not write the file '" + file + "' !!!\n") << saver.kind;
        EXPECT_EQ(TempFolder::read(file), kOldText) << saver.kind;
        EXPECT_EQ(entriesOf(target.path()), before) << saver.kind;

        // Without the limit the same save goes through.
        const test::ChildResult unlimited = test::runWithFileSizeLimit(RLIM_INFINITY, save);
        EXPECT_EQ(unlimited.status, 0) << saver.kind << unlimited.output;
        EXPECT_GT(TempFolder::read(file).size(), kLimit) << saver.kind;
        EXPECT_EQ(entriesOf(target.path()), before) << saver.kind;
    }
}

TEST_F(SaveThrough, AFolderPathThroughAFileIsReported) {
    ASSERT_TRUE(handlers_.open("DirectedGraph"));
    for (const Saver& saver : savers()) {
        TempFolder target;
        const std::string plain = target.write("plain.txt", kOldText);
        const std::vector<std::string> before = entriesOf(target.path());
        const std::string file = plain + "/out" + saver.extension;
        const test::ChildResult child =
            test::runWithFileSizeLimit(RLIM_INFINITY, [&] { return saver.save(file); });
        EXPECT_EQ(child.status, 1) << saver.kind;
        EXPECT_EQ(child.output, "Could not write the file '" + file + "' !!!\n") << saver.kind;
        EXPECT_EQ(TempFolder::read(plain), kOldText) << saver.kind;
        EXPECT_EQ(entriesOf(target.path()), before) << saver.kind;
    }
}

}  // namespace
}  // namespace vellum
