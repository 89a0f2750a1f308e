// vellum-cli match RULE GRAPH: reads a rule file and a graph file and lists every occurrence of
// the rule's left-hand side in the graph, in the defined order, one line each: the 1-based
// positions in the graph's vertex list of the images of the left-hand vertices (in their
// order), " |", then the positions in the edge list of the images of the left-hand edges (in
// pair order); then "N occurrences". Exit status 1 when a file cannot be read.
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <unordered_map>

#include "graph/GraphReader.h"
#include "graph/Matcher.h"
#include "graph/PreparedRule.h"
#include "graph/RuleReader.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

int usage(const std::string& problem) {
    for (const Command& command : commands()) {
        if (std::string_view(command.name) == "match")
            return usageError(command, problem);
    }
    return kExitUsage;
}

// 1-based positions of the elements of a list.
template <typename List>
std::unordered_map<const GraphObject*, std::size_t> positionsOf(const List& list) {
    std::unordered_map<const GraphObject*, std::size_t> positions;
    std::size_t position = 0;
    for (const auto& element : list)
        positions.emplace(&element, ++position);
    return positions;
}

void printOccurrence(const GraphMorphism& occurrence,
                     const std::unordered_map<const GraphObject*, std::size_t>& vertices,
                     const std::unordered_map<const GraphObject*, std::size_t>& edges) {
    std::string line;
    for (const VertexPair& pair : occurrence.vertexPairs()) {
        if (!line.empty())
            line += ' ';
        line += std::to_string(vertices.at(pair.right));
    }
    line += line.empty() ? "|" : " |";
    for (const EdgePair& pair : occurrence.edgePairs())
        line += " " + std::to_string(edges.at(pair.right));
    std::cout << line << "\n";
}

}  // namespace

int runMatch(const Arguments& arguments) {
    if (arguments.size() != 2)
        return usage("expected a rule file and a graph file");
    const std::string& ruleFile = arguments[0];
    const std::string& graphFile = arguments[1];
    if (!openInput(ruleFile, "match") || !openInput(graphFile, "match"))
        return kExitFailed;
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(ruleFile);
    DirectedGraph host;
    if (rule == nullptr || !loadGraph(graphFile, host)) {
        std::cout.flush();
        return kExitFailed;
    }
    const auto occurrences = rule->prepared().matcher().findAll(host);
    const auto vertices = positionsOf(host.vertices());
    const auto edges = positionsOf(host.edges());
    for (const GraphMorphism& occurrence : occurrences)
        printOccurrence(occurrence, vertices, edges);
    std::cout << occurrences.size() << " occurrences\n";
    std::cout.flush();
    return kExitOk;
}

}  // namespace vellum::cli
