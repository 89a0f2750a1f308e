// vellum-cli: Vellum without a display. Dispatches to one subcommand; the console log goes to
// standard output, the readers' errors with their places to standard error.
#include <malloc.h>

#include <iostream>
#include <string>

#include "koral/BundledDefaults.h"
#include "tools/cli/Commands.h"
#include "tools/cli/DiagnosticsOutput.h"

namespace {

constexpr const char* kVersion = "Vellum v2 r5";

void printUsage(std::ostream& out) {
    out << "usage: vellum-cli COMMAND [ARGUMENTS]\n"
        << "       vellum-cli --version | --help\n";
    const auto& table = vellum::cli::commands();
    if (table.empty())
        return;
    out << "commands:\n";
    for (const auto& command : table) {
        out << "  " << command.name << " " << command.usage << "\n";
    }
}

// A run builds and drops graphs of hundreds of megabytes on the interpreter's thread, whose heap
// grows and shrinks by a system call per step: by default a step of 128 KB, and freeing a large
// graph returned its memory a little at a time. Larger steps and no giving back before the
// program ends save about a tenth of such a run's processor time.
void tuneHeapForLargeGraphs() {
    mallopt(M_TOP_PAD, 64 << 20);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace vellum::cli;
    tuneHeapForLargeGraphs();
    vellum::applyBundledDefaults();
    if (argc < 2) {
        printUsage(std::cerr);
        return kExitUsage;
    }
    const std::string name = argv[1];
    if (name == "--version") {
        std::cout << kVersion << "\n";
        return kExitOk;
    }
    if (name == "--help" || name == "-h") {
        printUsage(std::cout);
        return kExitOk;
    }
    for (const auto& command : commands()) {
        if (name != command.name)
            continue;
        const Arguments arguments(argv + 2, argv + argc);
        const ErrorsOnStandardError diagnostics;
        return asksForHelp(arguments) ? printHelp(command) : command.run(arguments);
    }
    std::cerr << "vellum-cli: unknown command '" << name << "'\n";
    printUsage(std::cerr);
    return kExitUsage;
}
