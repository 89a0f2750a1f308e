#include "tools/cli/Commands.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "base/SearchPaths.h"

namespace vellum::cli {

const std::vector<Command>& commands() {
    static const std::vector<Command> table = {
        {"eval", "EXPR [NAME=VALUE ...]",
         "Evaluates an expression with the given bindings and prints its type and value.", runEval},
        {"check", "[--strict] FILE...",
         "Reads graph (.dg), rule (.drl), module (.mod) and 3D model (.3rd) files and reports "
         "what it read; on standard error it shows each error and warning as FILE:LINE:COLUMN. "
         "--strict makes warnings fail the check.",
         runCheck},
        {"convert", "[--rename] IN OUT",
         "Reads a graph or rule file and writes it in the standard layout, or a graph in another "
         "format: .dg, .graphml (GraphML), .gxl (GXL) and .dot (Graphviz), chosen by the "
         "extensions. --rename changes labels and names that a graph file cannot spell and lists "
         "each change, instead of refusing the file.",
         runConvert},
        {"match", "RULE GRAPH",
         "Lists every occurrence of the rule's left-hand side in the graph, by the positions of "
         "the host vertices and edges.",
         runMatch},
        {"apply", "RULE GRAPH [--mode 0|1|2] [-o OUT]",
         "Applies the rule once and reports its events and result.", runApply},
        {"layout", "NAME GRAPH [-o OUT] | --list",
         "Places the vertices with a layout plug-in; --list lists the layouts.", runLayout},
        {"render",
         "GRAPH -o FILE [--size WxH] [--camera perspective|top|front|left] [--background R,G,B]",
         "Draws the graph as the canvas shows it, fitted to the whole graph, into a .png, .ppm "
         "or .pgm picture (default 800x600, perspective, black background); needs no display.",
         runRender},
        {"picture", "RULE -o FILE [--size WxH]",
         "Draws the rule's left-hand side and right-hand side side by side into a picture "
         "(default 502x200); interface partners share a colour and a number.",
         runPicture},
        {"html", "MODULE -o FILE",
         "Writes the Koral module as an HTML page with its text highlighted and each rule it "
         "names drawn as a picture (NAME.png, a dotted name in folders) beside the page; lists "
         "the files written; needs no display.",
         runHtml},
        {"scene", "GRAPH [-o OUT]",
         "Builds the 3D scene of the graph and prints it: one line per vertex and edge with its "
         "shape, place and colour, and its label; -o also writes the graph with the attributes "
         "the scene added.",
         runScene},
        {"run",
         "MODULE UNIT GRAPH [-o OUT|-] [--seed N] [--trace] [--stats] [--quiet] "
         "[--frames DIR [--size WxH]]",
         "Runs a transformation unit of a Koral module on the graph; -o - writes the graph to "
         "standard output and the console log to standard error. --frames writes the graph's "
         "picture before the run and after every step into DIR as step-000000.png, "
         "step-000001.png, ... (default size 800x600); needs no display.",
         runRun},
    };
    return table;
}

std::string folderOf(const std::string& file) {
    const std::filesystem::path folder = std::filesystem::path(file).parent_path();
    return folder.empty() ? std::string(".") : folder.string();
}

RuleFolderSearch::RuleFolderSearch(const std::string& ruleFile)
    : setRules_(SearchPaths::instance().setDefault("koralGraphRules", folderOf(ruleFile))) {}

RuleFolderSearch::~RuleFolderSearch() {
    if (setRules_)
        SearchPaths::instance().reset("koralGraphRules");
}

bool asksForHelp(const Arguments& arguments) {
    for (const std::string& argument : arguments) {
        if (argument == "--help" || argument == "-h")
            return true;
    }
    return false;
}

int printHelp(const Command& command) {
    std::cout << "usage: vellum-cli " << command.name << " " << command.usage << "\n"
              << command.description << "\n";
    return kExitOk;
}

int usageError(const Command& command, const std::string& problem) {
    if (!problem.empty())
        std::cerr << "vellum-cli " << command.name << ": " << problem << "\n";
    std::cerr << "usage: vellum-cli " << command.name << " " << command.usage << "\n";
    return kExitUsage;
}

int usageError(std::string_view name, const std::string& problem) {
    for (const Command& command : commands()) {
        if (name == command.name)
            return usageError(command, problem);
    }
    return kExitUsage;
}

OptionTable& OptionTable::flag(std::string name, bool& target) {
    options_.push_back({std::move(name), &target, nullptr});
    return *this;
}

OptionTable& OptionTable::value(std::string name, std::optional<std::string>& target) {
    return value(std::move(name), [&target](const std::string& text) {
        target = text;
        return std::string();
    });
}

OptionTable& OptionTable::value(std::string name, Reader read) {
    options_.push_back({std::move(name), nullptr, std::move(read)});
    return *this;
}

OptionTable& OptionTable::positional(std::string& target) {
    positional_.push_back(&target);
    return *this;
}

std::string OptionTable::parse(const Arguments& arguments, std::size_t& given) const {
    given = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto option = std::find_if(options_.begin(), options_.end(),
                                         [&](const Option& o) { return o.name == argument; });
        if (option != options_.end() && option->flag != nullptr) {
            *option->flag = true;
        } else if (option != options_.end()) {
            if (i + 1 == arguments.size())
                return argument + " needs a value";
            std::string problem = option->read(arguments[++i]);
            if (!problem.empty())
                return problem;
        } else if (given < positional_.size()) {
            *positional_[given++] = argument;
        } else {
            return "unexpected argument '" + argument + "'";
        }
    }
    return {};
}

std::string readPictureSize(const std::string& text, int& width, int& height) {
    constexpr int maxSide = 8192;
    const auto x = text.find('x');
    const std::optional<int> w =
        x == std::string::npos ? std::nullopt : wholeNumber<int>(text.substr(0, x));
    const std::optional<int> h =
        x == std::string::npos ? std::nullopt : wholeNumber<int>(text.substr(x + 1));
    if (!w || !h || *w < 1 || *h < 1 || *w > maxSide || *h > maxSide)
        return "--size needs WIDTHxHEIGHT, each 1 to " + std::to_string(maxSide) + ", not '" +
               text + "'";
    width = *w;
    height = *h;
    return {};
}

std::string outputFileProblem(const std::string& file) {
    namespace fs = std::filesystem;
    if (file.empty())
        return "the output file name (-o) is empty";
    std::error_code error;
    if (fs::is_directory(file, error))
        return "the output file '" + file + "' is a folder";
    const fs::path folder = fs::path(file).parent_path();
    if (folder.empty())
        return {};
    const fs::file_status status = fs::status(folder, error);
    if (status.type() == fs::file_type::not_found)
        return "the folder of the output file '" + file + "' does not exist";
    // A folder that cannot be examined is left to the save, which reports what it meets.
    if (!error && !fs::is_directory(status))
        return "the folder of the output file '" + file + "' is not a folder";
    return {};
}

bool openInput(const std::string& file, std::string_view command) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    const bool special =
        fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
    if (!special && std::ifstream(file))
        return true;
    std::cerr << "vellum-cli " << command << ": cannot open '" << file << "'\n";
    return false;
}

}  // namespace vellum::cli
