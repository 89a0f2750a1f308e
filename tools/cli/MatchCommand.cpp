// vellum-cli match RULE GRAPH: reads a rule file and a graph file and lists every occurrence of
// the rule's left-hand side in the graph, in the defined order, one line each: the 1-based
// positions in the graph's vertex list of the images of the left-hand vertices (in their
// order), " |", then the positions in the edge list of the images of the left-hand edges (in
// pair order); then "N occurrences". Exit status 1 when a file cannot be read.
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "graph/ElementPositions.h"
#include "graph/GraphReader.h"
#include "graph/Matcher.h"
#include "graph/PreparedRule.h"
#include "graph/RuleReader.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {

int runMatch(const Arguments& arguments) {
    if (arguments.size() != 2)
        return usageError("match", "expected a rule file and a graph file");
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
    const ElementPositions positions(host);
    for (const GraphMorphism& occurrence : occurrences)
        std::cout << positions.line(occurrence) << "\n";
    std::cout << occurrences.size() << " occurrences\n";
    std::cout.flush();
    return kExitOk;
}

}  // namespace vellum::cli
