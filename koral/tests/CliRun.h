// Test support: vellum-cli run as a separate program, for the tests of its commands and of what
// only a freshly started program sees (the loader's search path). Needs VELLUM_CLI_PATH.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <vector>

namespace vellum::test {

struct CliRun {
    std::string out;
    int status = -1;  // -1 when it did not exit normally (a crash)
};

// Runs vellum-cli with the arguments (each quoted for the shell) and, before them, the shell
// words of `environment` ("NAME='value' "); standard error is dropped.
inline CliRun cli(const std::vector<std::string>& arguments, const std::string& environment = {}) {
    std::string command = environment + "'" + VELLUM_CLI_PATH + "'";
    for (const std::string& argument : arguments)
        command += " '" + argument + "'";
    command += " 2>/dev/null";
    CliRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        run.out.append(buffer, n);
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

}  // namespace vellum::test
