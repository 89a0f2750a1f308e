#include "app/CommandLine.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace vellum {

namespace {

// The whole text as a number from `low` to `high`.
std::optional<int> readNumber(const std::string& text, int low, int high) {
    if (text.empty())
        return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || value < low || value > high)
        return std::nullopt;
    return static_cast<int>(value);
}

}  // namespace

const char* commandLineUsage() {
    return "usage: vellum [FILE.dg | FILE.graphml | FILE.gxl | FILE.dot | FILE.drl | FILE.mod | "
           "FILE.3rd ...]\n"
           "       vellum --run MODULE UNIT GRAPH [--snooze MS] [--layout NAME] "
           "[--quit-when-done]\n";
}

std::optional<StartupOptions> parseCommandLine(const std::vector<std::string>& arguments,
                                               std::string& problem) {
    StartupOptions options;
    if (arguments.empty())
        return options;
    if (arguments[0] == "--help" || arguments[0] == "-h") {
        options.help = true;
        return options;
    }
    if (arguments[0] != "--run") {
        for (const std::string& argument : arguments) {
            if (argument.size() > 1 && argument[0] == '-') {
                problem = "unknown option '" + argument + "'";
                return std::nullopt;
            }
        }
        options.files = arguments;
        return options;
    }
    if (arguments.size() < 4) {
        problem = "--run needs a module, a unit and a graph";
        return std::nullopt;
    }
    RunRequest run;
    run.module = arguments[1];
    run.unit = arguments[2];
    run.graph = arguments[3];
    for (std::size_t i = 4; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (option == "--quit-when-done") {
            run.quitWhenDone = true;
        } else if (option == "--snooze" && hasValue) {
            const std::optional<int> snooze = readNumber(arguments[++i], -1, 3600000);
            if (!snooze) {
                problem =
                    "--snooze needs milliseconds from 0 to 3600000 (or -1 for single "
                    "steps), not '" +
                    arguments[i] + "'";
                return std::nullopt;
            }
            run.snooze = *snooze;
        } else if (option == "--layout" && hasValue) {
            run.layout = arguments[++i];
        } else if (option == "--snooze" || option == "--layout") {
            problem = option + " needs a value";
            return std::nullopt;
        } else {
            problem = "unknown option '" + option + "' after --run";
            return std::nullopt;
        }
    }
    options.run = run;
    return options;
}

}  // namespace vellum
