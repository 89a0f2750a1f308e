// Saves that cannot complete, because the disk is full or the folder cannot be written: the
// save fails with its console message and leaves the file that was there byte for byte, with
// no temporary file beside it.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include "RuleFixtures.h"
#include "graph/GraphWriter.h"
#include "graph/RuleWriter.h"
#include "tests/support/SaveFaults.h"

namespace vellum {
namespace {

using test::couldNotWrite;
using test::entriesOf;
using test::kOldText;
using test::Saver;
using test::TempFolder;

class SaveFault : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(rule_, nullptr);
        savers_ = {
            {"graph", ".dg",
             [this](const std::string& file) { return saveGraph(*graph_, file) ? 0 : 1; }},
            {"rule", ".drl",
             [this](const std::string& file) { return saveRule(*rule_, file) ? 0 : 1; }},
        };
    }

    std::unique_ptr<DirectedGraph> graph_ = test::bigGraph();
    std::unique_ptr<DirectedGraphRule> rule_ = test::ruleFromText(test::bigRuleText());
    std::vector<Saver> savers_;
};

TEST_F(SaveFault, AFullDiskLeavesTheOldFileAndNoTemporaryFile) {
    for (const Saver& saver : savers_)
        test::expectAFullDiskLeavesTheOldFile(saver);
}

TEST_F(SaveFault, AFolderPathThroughAFileIsReported) {
    for (const Saver& saver : savers_)
        test::expectAPathThroughAFileReported(saver);
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
            return saver.save(target);
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
