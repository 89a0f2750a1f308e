// The subcommands of vellum-cli. Each takes the arguments after its own name and returns the
// program's exit status: 0 success, 1 failure of the work itself, 2 usage error (the command
// writes its usage message to standard error).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellum {
class koralModule;
}

namespace vellum::cli {

using Arguments = std::vector<std::string>;

struct Command {
    const char* name;
    const char* usage;        // the arguments, as shown by `vellum-cli --help`
    const char* description;  // one sentence, shown by `vellum-cli NAME --help`
    int (*run)(const Arguments& arguments);
};

// Every subcommand, in the order the help lists them.
const std::vector<Command>& commands();

// True when the arguments ask for help: "--help" or "-h" anywhere among them. The expression
// `-h` is therefore written `(-h)` to eval.
bool asksForHelp(const Arguments& arguments);
// Writes "usage: vellum-cli NAME USAGE" and the description to standard output; returns 0.
int printHelp(const Command& command);

// Writes "usage: vellum-cli NAME USAGE" to standard error and returns 2.
int usageError(const Command& command, const std::string& problem = {});

// What is wrong with `file` as the file a command is to write (-o): empty when nothing is, else
// the problem for usageError. Checked before the work, so that a run does not end unsaved: the
// name must not be empty nor an existing folder, and its folder must exist as a folder.
std::string outputFileProblem(const std::string& file);

// True when `file` can be read; else writes "vellum-cli COMMAND: cannot open 'FILE'" to
// standard error. A named pipe, device or socket is refused unopened: opening a pipe waits for a
// writer, and a device may never end.
bool openInput(const std::string& file, std::string_view command);

// `eval EXPR [NAME=VALUE ...]`: evaluates an expression with the given bindings.
int runEval(const Arguments& arguments);
// `check [--strict] FILE...`: reads each file and prints a summary line per file read, and its
// diagnostics on standard error.
int runCheck(const Arguments& arguments);
// `convert IN OUT`: reads IN and writes it to OUT in the format of OUT's extension.
int runConvert(const Arguments& arguments);
// `match RULE GRAPH`: lists every occurrence of the rule's left-hand side in the graph.
int runMatch(const Arguments& arguments);
// `apply RULE GRAPH [--mode 0|1|2] [-o OUT]`: applies the rule once in that mode.
int runApply(const Arguments& arguments);
// `layout NAME GRAPH [-o OUT]`: lays the graph out with the named algorithm and writes it (to
// OUT, else to standard output); `layout --list` prints "NAME DESCRIPTION" per algorithm.
int runLayout(const Arguments& arguments);
// `run MODULE UNIT GRAPH [-o OUT] [--seed N] [--trace] [--stats] [--quiet]`: runs a
// transformation unit on the graph with the interpreter.
int runRun(const Arguments& arguments);

// A module file given on the command line (run, check), with its folder as the module and rule
// search path ("koralModules", "koralGraphRules") where that variable is unset, for as long as
// the object lives.
class ModuleFolderSearch {
  public:
    explicit ModuleFolderSearch(std::string moduleFile);
    // Unsets the variables it set.
    ~ModuleFolderSearch();
    ModuleFolderSearch(const ModuleFolderSearch&) = delete;
    ModuleFolderSearch& operator=(const ModuleFolderSearch&) = delete;

    // The module in the file, compiled now unless it is cached; null when the file does not
    // exist or has errors (the compiler's messages are on the console).
    const koralModule* load() const;

  private:
    std::string file_;
    bool setModules_;
    bool setRules_;
};

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

}  // namespace vellum::cli
