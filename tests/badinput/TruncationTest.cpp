// Every bundled example file and rule fixture cut short at every boundary between tokens (and
// small ones at every byte), each prefix read by its reader: a prefix that reaches the end of
// the text reads as the whole file does; every other one fails with the reader's report, which
// names a position inside the prefix and dumps the text found there.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "BadInputSupport.h"
#include "graph/GraphReader.h"
#include "graph/RuleReader.h"

namespace vellum {
namespace {

namespace fs = std::filesystem;
using test::cutPoints;
using test::endsWithReport;
using test::significantEnd;
using test::TempFolder;

// Texts up to this size are also cut at every byte.
constexpr std::size_t kEveryByteUpTo = 1500;

std::vector<fs::path> filesWithExtension(const fs::path& root, const std::string& extension) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_regular_file() && entry.path().extension() == extension)
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<fs::path> bundledFiles(const std::string& extension) {
    const fs::path source = VELLUM_SOURCE_DIR;
    std::vector<fs::path> files = filesWithExtension(source / "examples", extension);
    const auto fixtures = filesWithExtension(source / "koral" / "tests" / "fixtures", extension);
    files.insert(files.end(), fixtures.begin(), fixtures.end());
    return files;
}

// Reads every prefix of `original` (written as `copy`) with `read`, which returns whether it
// read; the console text it leaves must end with the reader's report when it did not.
template <typename Read>
void checkPrefixes(const fs::path& original, const std::string& copy, const std::string& kind,
                   const std::string& reportedName, Read read) {
    const auto readCapturing = [&](std::string& console) {
        ConsoleCapture capture;
        const bool ok = read();
        console = capture.text();
        return ok;
    };
    const std::string text = TempFolder::read(original.string());
    std::ofstream(copy, std::ios::binary) << text;
    std::string console;
    const bool wholeReads = readCapturing(console);
    const std::size_t end = significantEnd(text);
    for (std::size_t cut : cutPoints(text, kEveryByteUpTo)) {
        const std::string prefix = text.substr(0, cut);
        // A new file each time: rewriting a truncated one makes some file systems write it
        // through to the disk on every close.
        fs::remove(copy);
        std::ofstream(copy, std::ios::binary) << prefix;
        const bool reads = readCapturing(console);
        const bool complete = wholeReads && cut >= end;
        EXPECT_EQ(reads, complete) << original << " cut at " << cut << "\n" << console;
        if (!reads) {
            EXPECT_TRUE(endsWithReport(console, kind, reportedName, prefix))
                << original << " cut at " << cut;
        }
    }
}

struct ReaderRow {
    const char* extension;
    std::size_t atLeast;  // bundled files of that kind
    bool (*read)(const std::string& file);
};

TEST(Truncation, EveryPrefixOfAGraphOrRuleFileReadsOnlyWhenComplete) {
    const ReaderRow rows[] = {
        {".dg", 6,
         [](const std::string& file) {
             DirectedGraph graph;
             return loadGraph(file, graph);
         }},
        {".drl", 20, [](const std::string& file) { return loadRule(file) != nullptr; }},
    };
    TempFolder folder;
    for (const ReaderRow& row : rows) {
        const std::vector<fs::path> files = bundledFiles(row.extension);
        ASSERT_GE(files.size(), row.atLeast) << row.extension;
        for (const fs::path& file : files) {
            const std::string copy = folder.path(file.filename().string());
            checkPrefixes(file, copy, "File", copy, [&] { return row.read(copy); });
        }
    }
}

// Modules compile with their own example folder as module and rule search path, so that the
// rules, units and used modules they name are found until the cut takes them away.
class ModuleTruncation : public test::ModuleFolderTest {};

TEST_F(ModuleTruncation, EveryPrefixOfAModuleCompilesOnlyWhenComplete) {
    const std::vector<fs::path> files = bundledFiles(".mod");
    ASSERT_GE(files.size(), 5u);
    for (const fs::path& file : files) {
        const std::string folder = file.parent_path().string();
        test::ScopedEnvironment modules("koralModules", folder);
        test::ScopedEnvironment rules("koralGraphRules", folder);
        const std::string name = file.stem().string();
        const std::string copy = folder_.path(name + ".mod");
        checkPrefixes(file, copy, "Module", name,
                      [&] { return ModuleCompiler().compile(copy, name) != nullptr; });
    }
}

}  // namespace
}  // namespace vellum
