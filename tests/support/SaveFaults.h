// Test support: saves that cannot complete, because the disk is full or the path runs through a
// file. Whoever saves (a writer, a graph class handler, vellum-cli), the save fails with its
// console message and leaves the file that was there byte for byte, with no temporary file
// beside it. Each save runs in a child, so that one returning an exit status fits too.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/StringAttribute.h"
#include "tests/support/LimitedChild.h"
#include "tests/support/TempFolder.h"

namespace vellum::test {

constexpr rlim_t kSaveLimit = 64 * 1024;
const std::string kOldText = "% the file as it was before the save\n";

// A graph and a rule whose files are several times the limit.
inline std::unique_ptr<DirectedGraph> bigGraph() {
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

inline std::string bigRuleText() {
    std::string text = "directed graphrule big\n{\n\tleft-hand side\n\t{\n";
    for (int i = 1; i <= 4000; ++i)
        text += "\t\tvertex " + std::to_string(i) + " { label a_rather_long_label }\n";
    return text + "\t}\n\tinterface\n\t{\n\t}\n\tright-hand side\n\t{\n\t}\n}\n";
}

// One way to save a big graph or rule to a file with that extension; 0 for success.
struct Saver {
    const char* kind;
    const char* extension;
    std::function<int(const std::string& file)> save;
};

inline std::string couldNotWrite(const std::string& file) {
    return "Could not write the file '" + file + "' !!!\n";
}

inline void expectAFullDiskLeavesTheOldFile(const Saver& saver) {
    TempFolder folder;
    const std::string file = folder.write(std::string("old") + saver.extension, kOldText);
    const std::vector<std::string> before = entriesOf(folder.root());
    const auto save = [&] { return saver.save(file); };
    const ChildResult child = runWithFileSizeLimit(kSaveLimit, save);
    EXPECT_EQ(child.status, 1) << saver.kind;
    EXPECT_EQ(child.output, couldNotWrite(file)) << saver.kind;
    EXPECT_EQ(TempFolder::read(file), kOldText) << saver.kind;
    EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;

    // Without the limit the same save goes through: the limit was what stopped it.
    const ChildResult unlimited = runWithFileSizeLimit(RLIM_INFINITY, save);
    EXPECT_EQ(unlimited.status, 0) << saver.kind << unlimited.output;
    EXPECT_GT(TempFolder::read(file).size(), kSaveLimit) << saver.kind;
    EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;
}

inline void expectAPathThroughAFileReported(const Saver& saver) {
    TempFolder folder;
    const std::string plain = folder.write("plain.txt", kOldText);
    const std::vector<std::string> before = entriesOf(folder.root());
    const std::string file = plain + "/out" + saver.extension;
    const ChildResult child = runWithFileSizeLimit(RLIM_INFINITY, [&] { return saver.save(file); });
    EXPECT_EQ(child.status, 1) << saver.kind;
    EXPECT_EQ(child.output, couldNotWrite(file)) << saver.kind;
    EXPECT_EQ(TempFolder::read(plain), kOldText) << saver.kind;
    EXPECT_EQ(entriesOf(folder.root()), before) << saver.kind;
}

}  // namespace vellum::test
