// The desktop program's command line: graph, rule and module files to open in editors, or one unit
// to run in an interpreter frame as soon as the program is up:
//   vellum [FILE.dg | FILE.drl | FILE.mod ...]
//   vellum --run MODULE UNIT GRAPH [--snooze MS] [--layout NAME] [--quit-when-done]
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vellum {

struct RunRequest {
    std::string module;
    std::string unit;
    std::string graph;
    int snooze = 0;      // milliseconds after each notification; -1 single steps
    std::string layout;  // run after each step; empty for none
    bool quitWhenDone = false;
};

struct StartupOptions {
    std::vector<std::string> files;
    std::optional<RunRequest> run;
    bool help = false;
};

// The options in `arguments` (without the program's name); none, with `problem` saying what is
// wrong, when they cannot be understood.
std::optional<StartupOptions> parseCommandLine(const std::vector<std::string>& arguments,
                                               std::string& problem);

// The usage text, one line per form.
const char* commandLineUsage();

}  // namespace vellum
