// Saves that cannot complete, because the disk is full or the folder cannot be written: the
// save fails with its console message and leaves the file that was there byte for byte, with
// no temporary file beside it.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "RuleFixtures.h"
#include "base/Console.h"
#include "graph/GraphWriter.h"
#include "graph/RuleWriter.h"
#include "graph/StringAttribute.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::entriesOf;
using test::runWithFileSizeLimit;
using test::TempFolder;

constexpr rlim_t kLimit = 64 * 1024;
const std::string kOldText = "% the file as it was before the save\n";

// A graph whose file is several times the limit.
std::unique_ptr<DirectedGraph> bigGraph() {
    auto graph = std::make_unique<DirectedGraph>();
    DirectedGraphVertex* previous = nullptr;
    for (int i = 0; i < 4000; ++i) {
        DirectedGraphVertex* vertex = graph->createVertex();
        vertex->setLabel("node_label");
        vertex->addAttribute(std::make_unique<StringAttribute>("text", std::string(40, 'x')));
        if (previous != nullptr)
            graph->createEdge(previous, vertex);
        previous = vertex;
    }
    return graph;
}

std::unique_ptr<DirectedGraphRule> bigRule() {
    std::string text = "directed graphrule big\n{\n\tleft-hand side\n\t{\n";
    for (int i = 1; i <= 4000; ++i)
        text += "\t\tvertex " + std::to_string(i) + " { label a_rather_long_label }\n";
    text += "\t}\n\tinterface\n\t{\n\t}\n\tright-hand side\n\t{\n\t}\n}\n";
    return test::ruleFromText(text);
}

struct Saver {
    const char* kind;
    std::function<bool(const std::string& file)> save;
};

class SaveFault : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(rule_, nullptr);
        savers_ = {
            {"graph", [this](const std::string& file) { return saveGraph(*graph_, file); }},
            {"rule", [this](const std::string& file) { return saveRule(*rule_, file); }},
        };
    }

    static std::string couldNotWrite(const std::string& file) {
        return "Could not write the file '" + file + "' !!!\n";
    }

    std::unique_ptr<DirectedGraph> graph_ = bigGraph();
    std::unique_ptr<DirectedGraphRule> rule_ = bigRule();
    std::vector<Saver> savers_;
};

TEST_F(SaveFault, AFullDiskLeavesTheOldFileAndNoTemporaryFile) {
    for (const Saver& saver : savers_) {
        TempFolder folder;
        const std::string target = folder.write("old.file", kOldText);
        const std::vector<std::string> before = entriesOf(folder.root());
        const test::ChildResult child =
            runWithFileSizeLimit(kLimit, [&] { return saver.save(target) ? 0 : 1; });
        EXPECT_EQ(child.status, 1) << saver.kind;
        EXPECT_EQ(child.output, couldNotWrite(target)) << saver.kind;
        EXPECT_EQ(TempFolder::read(target), kOldText) << saver.kind;
        EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;

        // Without the limit the same save goes through: the limit was what stopped it.
        ConsoleCapture quiet;
        EXPECT_TRUE(saver.save(target)) << saver.kind;
        EXPECT_GT(TempFolder::read(target).size(), kLimit) << saver.kind;
        EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;
    }
}

TEST_F(SaveFault, AFolderPathThroughAFileIsReported) {
    for (const Saver& saver : savers_) {
        TempFolder folder;
        const std::string plain = folder.write("plain.txt", kOldText);
        const std::vector<std::string> before = entriesOf(folder.root());
        const std::string target = plain + "/out.file";
        ConsoleCapture capture;
        EXPECT_FALSE(saver.save(target)) << saver.kind;
        EXPECT_EQ(capture.text(), couldNotWrite(target)) << saver.kind;
        EXPECT_EQ(TempFolder::read(plain), kOldText) << saver.kind;
        EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;
    }
}

// Root writes through folder permissions, so the save runs in a child with an ordinary user's
// rights; the child first proves it can read the old file, or a folder it cannot even reach
// would stop the save for the wrong reason.
TEST_F(SaveFault, AReadOnlyFolderLeavesTheOldFile) {
    constexpr int kCannotReadOldFile = 3;
    for (const Saver& saver : savers_) {
        TempFolder folder;
        const std::string target = folder.write("old.file", kOldText);
        ASSERT_EQ(::chmod(folder.root().c_str(), 0555), 0);
        struct stat info {};
        ASSERT_EQ(::stat(folder.root().c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777, 0555u);
        if (::geteuid() == 0) {
            EXPECT_EQ(info.st_uid, 0u) << "the folder must belong to root";
        }
        const std::vector<std::string> before = entriesOf(folder.root());

        const test::ChildResult child = test::runUnprivileged([&] {
            if (TempFolder::read(target) != kOldText)
                return kCannotReadOldFile;
            return saver.save(target) ? 0 : 1;
        });
        ::chmod(folder.root().c_str(), 0755);
        if (child.status == test::kCouldNotDropPrivileges)
            GTEST_SKIP() << child.output;
        ASSERT_NE(child.status, kCannotReadOldFile)
            << saver.kind << ": the unprivileged child cannot reach " << target;
        EXPECT_EQ(child.status, 1) << saver.kind;
        EXPECT_EQ(child.output, couldNotWrite(target)) << saver.kind;
        EXPECT_EQ(TempFolder::read(target), kOldText) << saver.kind;
        EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;
    }
}

}  // namespace
}  // namespace vellum
