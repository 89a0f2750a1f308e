// Runs part of a test in a child process with limits the test process itself must not take
// on: files that may not grow beyond a given size, the way a full disk stops a save halfway,
// or the rights of an ordinary user, so that folder permissions apply even to root. The
// child's standard output, where the console writes, comes back with its exit status. Also
// lists a folder, to find files left behind.
#pragma once

#include <grp.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace vellum::test {

struct ChildResult {
    int status = -1;     // the exit status; 128 + the signal's number when a signal ended it
    std::string output;  // what the child wrote to standard output
};

// Forks; the child exits with what `body` returns. Nothing the child does reaches the test's
// own state, so `body` reports by its result and its output.
inline ChildResult runInChild(const std::function<int()>& body) {
    std::fflush(nullptr);  // or the child would write the parent's buffered output again
    int channel[2];
    if (::pipe(channel) != 0)
        return {};
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(channel[0]);
        ::close(channel[1]);
        return {};
    }
    if (child == 0) {
        ::close(channel[0]);
        ::dup2(channel[1], STDOUT_FILENO);
        ::close(channel[1]);
        const int status = body();
        std::fflush(nullptr);
        ::_exit(status);
    }
    ::close(channel[1]);
    ChildResult result;
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(channel[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        result.output.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(channel[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

// Runs `body` in a child whose files may not grow beyond `limit` bytes.
inline ChildResult runWithFileSizeLimit(rlim_t limit, const std::function<int()>& body) {
    return runInChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit size{limit, limit};
        if (::setrlimit(RLIMIT_FSIZE, &size) != 0)
            return 125;
        return body();
    });
}

// The exit status of a child that could not give up root's rights; its output says why.
constexpr int kCouldNotDropPrivileges = 124;

// Runs `body` in a child with the rights of the user and group "nobody" (65534) when the test
// runs as root; an ordinary user has no rights to give up and runs `body` as it is.
inline ChildResult runUnprivileged(const std::function<int()>& body) {
    return runInChild([&] {
        if (::geteuid() != 0)
            return body();
        constexpr uid_t kNobody = 65534;
        const char* step = ::setgroups(0, nullptr) != 0 ? "setgroups"
                           : ::setgid(kNobody) != 0     ? "setgid"
                           : ::setuid(kNobody) != 0     ? "setuid"
                                                        : nullptr;
        if (step != nullptr) {
            std::printf("cannot drop root's rights: %s: %s\n", step, std::strerror(errno));
            return kCouldNotDropPrivileges;
        }
        return body();
    });
}

// The names of the entries of a folder, sorted.
inline std::vector<std::string> entriesOf(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace vellum::test
