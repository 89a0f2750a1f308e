// vellum-cli check [--strict] FILE...: reads each file with the reader that its extension names,
// lets the readers' console messages through to standard output and prints one summary line for
// each file read ("FILE: N vertices, M edges" for a graph, "FILE: rule 'NAME'" for a rule, "FILE:
// module 'NAME', N units" for a module, compiled with its folder as module and rule search path
// where those are unset, "FILE: N objects, V vertices, F faces" for a 3D model). On standard error
// it shows, with their places, what the readers found: errors, including what would only fail later
// (an expression that does not compile, a method that a call cannot find), and warnings about what
// is legal but almost surely a mistake. The calls of the function library "$(graph" in a rule
// file are checked in full, the patterns they name read along koralGraphRules (the rule's folder
// where that is unset); in the rules a module names, all but the patterns. Exit status 1 when
// any file failed or had an error, or, with --strict, a warning.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/RuleReader.h"
#include "koral/FileSearch.h"
#include "koral/KoralModule.h"
#include "koral/ModuleLanguage.h"
#include "koral/RuleCache.h"
#include "tools/cli/Commands.h"
#include "tools/cli/DiagnosticsOutput.h"
#include "tpx/TPXmodelReader.h"

namespace vellum::cli {
namespace {

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

// A pattern that a rule's "$(graph" call names, read as the library reads it: the rule file of
// that name along koralGraphRules.
std::unique_ptr<DirectedGraphRule> patternRule(const std::string& name, std::string& problem) {
    const std::string fileName = RuleCache::fileName(name, "DirectedGraph");
    const std::string found = findFile(fileName, "koralGraphRules");
    if (found.empty()) {
        problem = "is not found: no file '" + fileName + "' along koralGraphRules";
        return nullptr;
    }
    auto rule = loadRule(found);
    if (!rule)
        problem = "could not be read from '" + found + "'";
    return rule;
}

bool checkRule(const std::string& file) {
    const RuleFolderSearch patterns(file);
    DirectedGraphRule rule;
    RuleReader reader;
    reader.setPatternLoader(patternRule);
    if (!reader.read(file, rule))
        return false;
    const std::string keyword = leadingKeyword(rule.name());
    if (!keyword.empty()) {
        diagnose(Severity::Warning, file, reader.nameOffset(),
                 "the rule name '" + rule.name() + "' begins with the keyword '" + keyword +
                     "', so a module cannot apply it");
    }
    std::cout << file << ": rule '" << rule.name() << "'\n";
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

bool checkModel(const std::string& file) {
    // The reader records its errors and warnings with their places; the reason it returns
    // says the same.
    std::string error;
    const std::optional<TPXmodel> model = TPXmodelReader().read(file, error);
    if (!model)
        return false;
    std::cout << file << ": " << model->totals.objects << " objects, " << model->totals.vertices
              << " vertices, " << model->totals.faces << " faces\n";
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
    {".3rd", checkModel},
};

const Reader* readerFor(const std::string& file) {
    for (const Reader& reader : kReaders) {
        if (endsWith(file, reader.extension))
            return &reader;
    }
    return nullptr;
}

bool checkFile(const std::string& file) {
    // Asked before opening: opening a named pipe would wait for a writer.
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (std::filesystem::is_directory(status)) {
        std::cerr << "vellum-cli check: '" << file << "' is a folder\n";
        return false;
    }
    const Reader* reader = readerFor(file);
    if (reader == nullptr) {
        std::cerr << "vellum-cli check: '" << file
                  << "' has no known file type (.dg, .drl, .mod, .3rd)\n";
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
    bool strict = false;
    std::vector<std::string> files;
    for (const std::string& argument : arguments) {
        if (argument == "--strict")
            strict = true;
        else
            files.push_back(argument);
    }
    if (files.empty())
        return usageError("check", "no file given");
    bool passed = true;
    for (const std::string& file : files) {
        Diagnostics found;
        bool read = false;
        {
            const DiagnosticsScope scope(found);
            read = checkFile(file);
        }
        // The summary line first: both streams may go to one terminal.
        std::cout.flush();
        printDiagnostics(std::cerr, found, true);
        const bool failed =
            found.count(Severity::Error) > 0 || (strict && found.count(Severity::Warning) > 0);
        if (!read || failed)
            passed = false;
    }
    return passed ? kExitOk : kExitFailed;
}

}  // namespace vellum::cli
