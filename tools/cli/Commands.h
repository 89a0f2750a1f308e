// The subcommands of vellum-cli. Each takes the arguments after its own name and returns the
// program's exit status: 0 success, 1 failure of the work itself, 2 usage error (the command
// writes its usage message to standard error).
#pragma once

#include <charconv>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
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

// Writes "vellum-cli NAME: PROBLEM" (when there is one) and "usage: vellum-cli NAME USAGE" to
// standard error and returns 2: the one way a command refuses its arguments.
int usageError(const Command& command, const std::string& problem = {});
int usageError(std::string_view name, const std::string& problem = {});

// `text` as a number of that type, all of it; none when it is not one or does not fit.
template <typename Number>
std::optional<Number> wholeNumber(std::string_view text) {
    Number number{};
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc() || end != last)
        return std::nullopt;
    return number;
}

// A command's options and positional arguments, read in one pass from left to right: a flag
// sets its bool, an option with a value takes the next argument, and every other argument fills
// the next positional slot. A new command lists its options here instead of parsing by hand.
class OptionTable {
  public:
    // Reads an option's value; returns the problem, empty when the value is fine.
    using Reader = std::function<std::string(const std::string& value)>;

    OptionTable& flag(std::string name, bool& target);
    OptionTable& value(std::string name, std::optional<std::string>& target);
    OptionTable& value(std::string name, Reader read);
    OptionTable& positional(std::string& target);

    // The first problem met ("-o needs a value", "unexpected argument 'X'", or a Reader's),
    // empty when there is none; `given` is the number of positional arguments filled.
    std::string parse(const Arguments& arguments, std::size_t& given) const;

  private:
    struct Option {
        std::string name;
        bool* flag = nullptr;
        Reader read;
    };
    std::vector<Option> options_;
    std::vector<std::string*> positional_;
};

// Reads a picture size given as "WIDTHxHEIGHT" (--size), each side 1 to 8192: beyond that
// offscreen buffers fail on most drivers anyway. Returns the problem, empty when the size is
// fine; the sides are set only then.
std::string readPictureSize(const std::string& text, int& width, int& height);

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

// `render GRAPH -o FILE [--size WxH] [--camera NAME] [--background R,G,B]` and
// `picture RULE -o FILE [--size WxH]`: offscreen pictures of a graph and of a rule.
int runRender(const Arguments& arguments);
int runPicture(const Arguments& arguments);
// `html MODULE -o FILE`: the module as a highlighted HTML page with pictures of its rules.
int runHtml(const Arguments& arguments);
// `scene GRAPH [-o OUT]`: prints the 3D scene built from the graph; -o writes the graph with
// the attributes the build added.
int runScene(const Arguments& arguments);
// The folder of `file` for looking up files it names, "." when it has none.
std::string folderOf(const std::string& file);
// `run MODULE UNIT GRAPH [-o OUT] [--seed N] [--trace] [--stats] [--quiet] [--frames DIR
// [--size WxH]]`: runs a transformation unit on the graph with the interpreter.
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

// A rule file given on the command line (check, apply), with its folder as the rule search path
// ("koralGraphRules") where that variable is unset, for as long as the object lives: the
// patterns its expressions name ($(graph.absent) and $(graph.present)) are found beside it.
class RuleFolderSearch {
  public:
    explicit RuleFolderSearch(const std::string& ruleFile);
    // Unsets the variable if it set it.
    ~RuleFolderSearch();
    RuleFolderSearch(const RuleFolderSearch&) = delete;
    RuleFolderSearch& operator=(const RuleFolderSearch&) = delete;

  private:
    bool setRules_;
};

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

}  // namespace vellum::cli
