// vellum-cli check FILE...: reads each file with the reader that its extension names, lets the
// readers' console messages through to standard output and prints one summary line for each
// file read ("FILE: N vertices, M edges" for a graph, "FILE: rule 'NAME'" for a rule, "FILE:
// module 'NAME', N units" for a module, compiled with its folder as module and rule search path
// where those are unset). Exit status 1 when any file failed.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/RuleReader.h"
#include "koral/KoralModule.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

int usage(const std::string& problem) {
    for (const Command& command : commands()) {
        if (std::string_view(command.name) == "check")
            return usageError(command, problem);
    }
    return kExitUsage;
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool checkGraph(const std::string& file) {
    DirectedGraph graph;
    if (!loadGraph(file, graph))
        return false;
    std::cout << file << ": " << graph.vertexCount() << " vertices, " << graph.edgeCount()
              << " edges\n";
    return true;
}

bool checkRule(const std::string& file) {
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(file);
    if (rule == nullptr)
        return false;
    std::cout << file << ": rule '" << rule->name() << "'\n";
    return true;
}

bool checkModule(const std::string& file) {
    const ModuleFolderSearch search(file);
    const koralModule* module = search.load();
    if (module == nullptr)
        return false;
    std::cout << file << ": module '" << module->name() << "', " << module->units().size()
              << " units\n";
    return true;
}

struct Reader {
    const char* extension;
    bool (*check)(const std::string& file);
};

// The file types that check knows, by extension.
constexpr Reader kReaders[] = {
    {".dg", checkGraph},
    {".drl", checkRule},
    {".mod", checkModule},
};

const Reader* readerFor(const std::string& file) {
    for (const Reader& reader : kReaders) {
        if (endsWith(file, reader.extension))
            return &reader;
    }
    return nullptr;
}

bool checkFile(const std::string& file) {
    const Reader* reader = readerFor(file);
    if (reader == nullptr) {
        std::cerr << "vellum-cli check: '" << file
                  << "' has no known file type (.dg, .drl, .mod)\n";
        return false;
    }
    // Asked before opening: opening a named pipe would wait for a writer.
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (std::filesystem::is_directory(status)) {
        std::cerr << "vellum-cli check: '" << file << "' is a folder\n";
        return false;
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        std::cerr << "vellum-cli check: '" << file << "' is not a regular file\n";
        return false;
    }
    if (!std::ifstream(file)) {
        std::cerr << "vellum-cli check: cannot open '" << file << "'\n";
        return false;
    }
    return reader->check(file);
}

}  // namespace

int runCheck(const Arguments& arguments) {
    if (arguments.empty())
        return usage("no file given");
    bool allRead = true;
    for (const std::string& file : arguments) {
        if (!checkFile(file))
            allRead = false;
    }
    std::cout.flush();
    return allRead ? kExitOk : kExitFailed;
}

}  // namespace vellum::cli
