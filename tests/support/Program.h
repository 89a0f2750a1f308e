// Test support: another program (usually vellum-cli) run as a separate process, with its
// standard output, standard error and exit status captured. The one way tests start a program.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vellum::test {

struct ProgramOptions {
    // The folder the program starts in; empty: the test's own.
    std::string workingDirectory;
    // Variables set (a value) or removed (none) in the program's environment; the rest of the
    // test's environment is passed on.
    std::map<std::string, std::optional<std::string>> environment;
    // Standard error into the same stream as standard output, interleaved as written.
    bool errorIntoOutput = false;
};

struct ProgramResult {
    std::string out;
    std::string err;
    int status = -1;  // the exit status; -1 when it did not exit normally or in time
};

// A started program; killed if still running when the object goes.
class Program {
  public:
    Program(const std::vector<std::string>& argv, const ProgramOptions& options = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Waits until standard output holds `text`, at most `limit`; false if it never came.
    bool waitForOutput(const std::string& text,
                       std::chrono::seconds limit = std::chrono::seconds(30)) const;
    // Sends SIGINT, as Ctrl-C at a terminal would.
    void interrupt() const;
    // Waits for the end, at most `limit`, and returns what the program wrote.
    ProgramResult wait(std::chrono::seconds limit = std::chrono::seconds(120));

  private:
    std::string folder_;  // holds the files standard output and error go to
    pid_t pid_ = -1;
    bool finished_ = false;
};

inline ProgramResult runProgram(const std::vector<std::string>& argv,
                                const ProgramOptions& options = {}) {
    return Program(argv, options).wait();
}

// vellum-cli of this build run with the arguments.
ProgramResult runCli(const std::vector<std::string>& arguments, const ProgramOptions& options = {});
std::string cliPath();

}  // namespace vellum::test
