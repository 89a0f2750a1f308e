// vellum-cli html: a Koral module as an HTML page, its rules as pictures beside it, written
// offscreen with no display by the same code as the module editor's export.
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>

#include "gui/view/ModuleHtmlExport.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {

int runHtml(const Arguments& arguments) {
    std::string moduleFile;
    std::optional<std::string> out;
    std::size_t given = 0;
    std::string problem =
        OptionTable().positional(moduleFile).value("-o", out).parse(arguments, given);
    if (problem.empty() && given != 1)
        problem = "expected one module file";
    if (problem.empty() && !out)
        problem = "-o FILE is required";
    if (problem.empty())
        problem = outputFileProblem(*out);
    if (!problem.empty())
        return usageError("html", problem);
    if (!openInput(moduleFile, "html"))
        return kExitFailed;
    std::ifstream in(moduleFile, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    // The rules the module names are found beside it, unless koralGraphRules says otherwise.
    const RuleFolderSearch rules(moduleFile);
    const ModuleHtmlResult result = exportModuleHtml(text.str(), *out);
    for (const std::string& file : result.written)
        std::cout << file << "\n";
    if (!result.ok) {
        std::cerr << "vellum-cli html: '" << *out << "' could not be written: " << result.error
                  << "\n";
        return kExitFailed;
    }
    return kExitOk;
}

}  // namespace vellum::cli
