#include "tools/cli/Commands.h"

#include <iostream>

namespace vellum::cli {

const std::vector<Command>& commands() {
    static const std::vector<Command> table = {
        {"eval", "EXPR [NAME=VALUE ...]", runEval},
        {"check", "FILE...", runCheck},
        {"convert", "IN OUT", runConvert},
        {"match", "RULE GRAPH", runMatch},
        {"apply", "RULE GRAPH [--mode 0|1|2] [-o OUT]", runApply},
        {"layout", "NAME GRAPH [-o OUT] | --list", runLayout},
        {"run", "MODULE UNIT GRAPH [-o OUT] [--seed N] [--trace] [--stats] [--quiet]", runRun},
    };
    return table;
}

int usageError(const Command& command, const std::string& problem) {
    if (!problem.empty())
        std::cerr << "vellum-cli " << command.name << ": " << problem << "\n";
    std::cerr << "usage: vellum-cli " << command.name << " " << command.usage << "\n";
    return kExitUsage;
}

}  // namespace vellum::cli
