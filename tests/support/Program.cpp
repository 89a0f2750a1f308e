#include "tests/support/Program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/support/TempFolder.h"

extern char** environ;

namespace vellum::test {

namespace {

// The test's environment with the options' changes.
std::vector<std::string> environmentFor(const ProgramOptions& options) {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (options.environment.count(text.substr(0, text.find('='))) == 0)
            entries.push_back(text);
    }
    for (const auto& [name, value] : options.environment)
        if (value)
            entries.push_back(name + "=" + *value);
    return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

Program::Program(const std::vector<std::string>& argv, const ProgramOptions& options) {
    std::string pattern = (std::filesystem::temp_directory_path() / "vellum_program_XXXXXX");
    if (argv.empty() || ::mkdtemp(pattern.data()) == nullptr)
        return;
    folder_ = pattern;
    // Everything the child needs is made before the fork: after it, only system calls.
    const std::string out = folder_ + "/out";
    const std::string err = options.errorIntoOutput ? out : folder_ + "/err";
    std::vector<std::string> words = argv;
    std::vector<std::string> environment = environmentFor(options);
    std::vector<char*> arguments = pointersTo(words);
    std::vector<char*> variables = pointersTo(environment);
    const char* directory =
        options.workingDirectory.empty() ? nullptr : options.workingDirectory.c_str();
    const bool merged = options.errorIntoOutput;
    pid_ = ::fork();
    if (pid_ == 0) {
        const int o = ::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int e = merged ? o : ::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (o < 0 || e < 0 || ::dup2(o, 1) < 0 || ::dup2(e, 2) < 0 ||
            (directory != nullptr && ::chdir(directory) != 0))
            ::_exit(127);
        ::execve(arguments[0], arguments.data(), variables.data());
        ::_exit(127);
    }
}

Program::~Program() {
    if (pid_ > 0 && !finished_) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    if (!folder_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
}

bool Program::waitForOutput(const std::string& text, std::chrono::seconds limit) const {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (TempFolder::read(folder_ + "/out").find(text) == std::string::npos) {
        if (folder_.empty() || std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

void Program::interrupt() const {
    if (pid_ > 0 && !finished_)
        ::kill(pid_, SIGINT);
}

ProgramResult Program::wait(std::chrono::seconds limit) {
    ProgramResult result;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (pid_ > 0 && !finished_ && std::chrono::steady_clock::now() < deadline) {
        int status = 0;
        const pid_t ended = ::waitpid(pid_, &status, WNOHANG);
        if (ended == pid_) {
            finished_ = true;
            result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            break;
        }
        if (ended < 0)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (!folder_.empty()) {
        result.out = TempFolder::read(folder_ + "/out");
        result.err = TempFolder::read(folder_ + "/err");
    }
    return result;
}

std::string cliPath() {
    return VELLUM_CLI_PATH;
}

ProgramResult runCli(const std::vector<std::string>& arguments, const ProgramOptions& options) {
    std::vector<std::string> argv = {cliPath()};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return runProgram(argv, options);
}

}  // namespace vellum::test
