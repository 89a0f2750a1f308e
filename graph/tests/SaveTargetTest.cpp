// What a save writes over: the file a symbolic link names (the link stays), never a named pipe
// or other node that is no regular file, and a file whose name is as long as the system allows.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <string>

#include "base/Console.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::TempFolder;

std::size_t entryCount(const std::string& folder) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        (void)entry;
        ++count;
    }
    return count;
}

// A graph of one vertex with that label.
std::unique_ptr<DirectedGraph> oneVertex(const std::string& label) {
    auto graph = std::make_unique<DirectedGraph>();
    graph->createVertex()->setLabel(label);
    return graph;
}

TEST(SaveTarget, ThroughASymbolicLinkTheNamedFileChangesAndTheLinkStays) {
    TempFolder folder;
    const std::string real = folder.write("sub/real.dg", "% old\n");
    const std::string link = folder.path("link.dg");
    std::filesystem::create_symlink("sub/real.dg", link);

    ASSERT_TRUE(saveGraph(*oneVertex("saved"), link));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    const auto reread = loadGraph(real);
    ASSERT_NE(reread, nullptr);
    EXPECT_EQ(reread->vertexCount("saved"), 1u);
    EXPECT_EQ(entryCount(folder.path()), 2u);  // sub and the link: no temporary left
    EXPECT_EQ(entryCount(folder.path("sub")), 1u);
}

TEST(SaveTarget, ANodeThatIsNoRegularFileIsNeverReplaced) {
    TempFolder folder;
    const std::string pipe = folder.path("pipe.dg");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0644), 0);
    const std::string sub = folder.path("sub.dg");
    std::filesystem::create_directory(sub);
    for (const std::string& target : {pipe, sub}) {
        ConsoleCapture capture;
        EXPECT_FALSE(saveGraph(*oneVertex("x"), target)) << target;
        EXPECT_EQ(capture.text(), "Could not write the file '" + target + "' !!!\n");
    }
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_TRUE(std::filesystem::is_directory(sub));
    EXPECT_EQ(entryCount(folder.path()), 2u);
}

TEST(SaveTarget, ANameAsLongAsTheSystemAllowsCanBeSaved) {
    TempFolder folder;
    const std::string name = std::string(255 - 3, 'n') + ".dg";
    const std::string target = folder.path(name);
    ASSERT_TRUE(saveGraph(*oneVertex("long"), target));
    ASSERT_TRUE(saveGraph(*oneVertex("longer"), target));  // over the first
    const auto reread = loadGraph(target);
    ASSERT_NE(reread, nullptr);
    EXPECT_EQ(reread->vertexCount("longer"), 1u);
    EXPECT_EQ(entryCount(folder.path()), 1u);
}

}  // namespace
}  // namespace vellum
