#include "graph/ReplacingFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <locale>
#include <random>

namespace vellum {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;
constexpr int kNameAttempts = 64;

// Creates a new, empty file with a fresh name beside `target`; its permissions follow the
// umask as those of any new file do. Empty result when none could be created.
std::string createTemporaryBeside(const std::string& target) {
    std::random_device seed;
    std::mt19937 random(seed());
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string name =
            target + ".~" + std::to_string(::getpid()) + "-" + std::to_string(random() % 1000000u);
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            ::close(fd);
            return name;
        }
        if (errno != EEXIST)
            return {};
    }
    return {};
}

// Forces the file's contents to the disk, so that a crash right after the rename cannot leave
// an empty file where the old one was.
bool syncToDisk(const std::string& file) {
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    return synced;
}

}  // namespace

ReplacingFile::ReplacingFile(std::string target) : target_(std::move(target)) {}

ReplacingFile::~ReplacingFile() {
    if (stream_.is_open())
        stream_.close();
    if (!committed_ && !temporary_.empty())
        std::remove(temporary_.c_str());
}

bool ReplacingFile::open() {
    temporary_ = createTemporaryBeside(target_);
    if (temporary_.empty())
        return false;
    buffer_.resize(kBufferSize);
    stream_.rdbuf()->pubsetbuf(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    stream_.open(temporary_, std::ios::out | std::ios::trunc);
    stream_.imbue(std::locale::classic());
    return stream_.is_open();
}

bool ReplacingFile::commit() {
    if (!stream_.is_open())
        return false;
    stream_.flush();
    const bool written = stream_.good();
    stream_.close();
    if (!written || stream_.fail() || !syncToDisk(temporary_))
        return false;
    struct stat existing {};
    if (::stat(target_.c_str(), &existing) == 0)
        ::chmod(temporary_.c_str(), existing.st_mode & 07777);
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0)
        return false;
    committed_ = true;
    return true;
}

}  // namespace vellum
