// vellum-cli apply RULE GRAPH [--mode 0|1|2] [-o OUT]: reads a rule file and a graph file and
// applies the rule once in the given mode (default 1, the interpreter's), printing "event N"
// for each notification as it happens and then "result N"; with -o the graph is written to OUT
// afterwards, whatever the result. Exit status 0 for result 0, else 1 (2 for usage errors). The
// patterns the rule's conditions name are looked for beside the rule unless koralGraphRules is
// set.
#include <charconv>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/RuleApplication.h"
#include "graph/RuleReader.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

struct ApplyOptions {
    std::string ruleFile;
    std::string graphFile;
    int mode = kModeRuleMatch;
    std::optional<std::string> output;
};

// The options, or the problem to report in `problem`.
std::optional<ApplyOptions> parseOptions(const Arguments& arguments, std::string& problem) {
    ApplyOptions options;
    std::size_t files = 0;
    problem = OptionTable()
                  .value("--mode",
                         [&options](const std::string& text) {
                             const std::optional<int> mode = wholeNumber<int>(text);
                             options.mode = mode.value_or(options.mode);
                             return mode ? "" : "the mode must be a whole number";
                         })
                  .value("-o", options.output)
                  .positional(options.ruleFile)
                  .positional(options.graphFile)
                  .parse(arguments, files);
    if (problem.empty() && files != 2)
        problem = "expected a rule file and a graph file";
    if (problem.empty() && options.output)
        problem = outputFileProblem(*options.output);
    if (!problem.empty())
        return std::nullopt;
    return options;
}

void printEvent(int event, DirectedGraph*, const GraphMorphism*) {
    std::cout << "event " << event << "\n";
}

}  // namespace

int runApply(const Arguments& arguments) {
    std::string problem;
    const std::optional<ApplyOptions> options = parseOptions(arguments, problem);
    if (!options)
        return usageError("apply", problem);
    if (!openInput(options->ruleFile, "apply") || !openInput(options->graphFile, "apply"))
        return kExitFailed;
    const RuleFolderSearch patterns(options->ruleFile);
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(options->ruleFile);
    DirectedGraph host;
    if (rule == nullptr || !loadGraph(options->graphFile, host)) {
        std::cout.flush();
        return kExitFailed;
    }
    const int result = applyRule(&host, rule.get(), options->mode, printEvent);
    std::cout << "result " << result << "\n";
    std::cout.flush();
    const bool written = !options->output || saveGraph(host, *options->output);
    return result == kApplyApplied && written ? kExitOk : kExitFailed;
}

}  // namespace vellum::cli
