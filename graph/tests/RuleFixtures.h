// Inline fixtures for the rule tests: rules and graphs given as text in their file formats are
// read through the real readers (from a temporary folder), so a failing test shows its input.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "base/Console.h"
#include "graph/DirectedGraphRule.h"
#include "graph/GraphMorphism.h"
#include "graph/GraphReader.h"
#include "graph/RuleReader.h"
#include "tests/support/TempFolder.h"

namespace vellum::test {

// The rule in `text`; null when it does not read (the console text goes to `messages`, with
// the folder's path replaced by "DIR").
inline std::unique_ptr<DirectedGraphRule> ruleFromText(const std::string& text,
                                                       std::string* messages = nullptr) {
    TempFolder folder;
    const std::string file = folder.write("r.drl", text);
    ConsoleCapture capture;
    auto rule = std::make_unique<DirectedGraphRule>();
    const bool ok = RuleReader().read(file, *rule);
    if (messages != nullptr) {
        *messages = capture.text();
        const std::string root = folder.root().string();
        for (std::size_t at; (at = messages->find(root)) != std::string::npos;)
            messages->replace(at, root.size(), "DIR");
    }
    return ok ? std::move(rule) : nullptr;
}

// The graph in `text`, which must read.
inline std::unique_ptr<DirectedGraph> graphFromText(const std::string& text) {
    TempFolder folder;
    const std::string file = folder.write("g.dg", text);
    ConsoleCapture capture;
    auto graph = std::make_unique<DirectedGraph>();
    EXPECT_TRUE(loadGraph(file, *graph)) << text << capture.text();
    return graph;
}

// A rule with only a left-hand side, for matching: "directed graphrule m { left-hand side {"
// + body + "} interface { } right-hand side { } }".
inline std::unique_ptr<DirectedGraphRule> patternRule(const std::string& leftBody) {
    auto rule = ruleFromText("directed graphrule m { left-hand side { " + leftBody +
                             " } interface { } right-hand side { } }");
    EXPECT_NE(rule, nullptr) << leftBody;
    return rule;
}

}  // namespace vellum::test

namespace vellum::test {

// An occurrence as the command line prints it: the 1-based host positions of the vertex
// images, " |", then those of the edge images ("6 2 1 | 10 1").
inline std::string describe(const GraphMorphism& occurrence, const DirectedGraph& host) {
    auto position = [](const auto& list, const GraphObject* object) {
        std::size_t at = 0;
        for (const auto& element : list) {
            ++at;
            if (&element == object)
                return std::to_string(at);
        }
        return std::string("?");
    };
    std::string text;
    for (const VertexPair& pair : occurrence.vertexPairs())
        text += (text.empty() ? "" : " ") + position(host.vertices(), pair.right);
    text += text.empty() ? "|" : " |";
    for (const EdgePair& pair : occurrence.edgePairs())
        text += " " + position(host.edges(), pair.right);
    return text;
}

}  // namespace vellum::test
