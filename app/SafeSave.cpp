#include "app/SafeSave.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace vellum {
namespace {

// Closes its descriptor unless release() handed the closing over to the caller.
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    int release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }

  private:
    int fd_;
};

// Tries a few names so that a leftover from an earlier crash does not block the save.
FileDescriptor createTemporaryBeside(const std::string& path, std::string& temporaryPath) {
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        temporaryPath =
            path + ".saving-" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
        const int fd = ::open(temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return FileDescriptor(fd);
    }
    errno = EEXIST;
    return FileDescriptor(-1);
}

bool writeAll(int fd, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(fd, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        content.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

void keepPermissionsOf(const std::string& path, int fd) {
    struct stat existing {};
    if (::stat(path.c_str(), &existing) == 0 && S_ISREG(existing.st_mode))
        ::fchmod(fd, existing.st_mode & 07777);
}

bool fail(std::string& reason, const std::string& temporaryPath) {
    reason = std::strerror(errno);
    if (!temporaryPath.empty())
        ::unlink(temporaryPath.c_str());
    return false;
}

}  // namespace

bool saveReplacing(const std::string& path, std::string_view content, std::string& reason) {
    if (path.empty()) {
        reason = "no file name given";
        return false;
    }
    std::string temporaryPath;
    FileDescriptor file = createTemporaryBeside(path, temporaryPath);
    if (!file.valid())
        return fail(reason, {});
    keepPermissionsOf(path, file.get());
    if (!writeAll(file.get(), content) || ::fsync(file.get()) != 0)
        return fail(reason, temporaryPath);
    if (::close(file.release()) != 0)
        return fail(reason, temporaryPath);
    if (std::rename(temporaryPath.c_str(), path.c_str()) != 0)
        return fail(reason, temporaryPath);
    return true;
}

}  // namespace vellum
