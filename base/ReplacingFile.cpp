#include "base/ReplacingFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <locale>
#include <random>

namespace vellum {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;
constexpr int kNameAttempts = 64;

// Where the text really goes: through a symbolic link to the file it names, so that saving
// updates that file instead of putting a plain file in place of the link.
std::string resolveLinks(const std::string& target) {
    std::error_code error;
    if (!std::filesystem::is_symlink(target, error))
        return target;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(target, error);
    return error ? target : resolved.string();
}

// Only a regular file (or none yet) may be replaced: renaming over a folder fails anyway, and
// over a device or named pipe it would put a plain file in place of a system's node.
bool mayReplace(const std::string& target) {
    std::error_code error;
    const auto status = std::filesystem::status(target, error);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

// Creates a new, empty file with a fresh name in the folder of `target`; its permissions follow
// the umask as those of any new file do. The name does not grow with the target's, so a target
// whose name is as long as the system allows can be saved too. Empty result when none could be
// created.
std::string createTemporaryBeside(const std::string& target) {
    std::filesystem::path folder = std::filesystem::path(target).parent_path();
    if (folder.empty())
        folder = ".";
    std::random_device seed;
    std::mt19937 random(seed());
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string name = (folder / (".vellum-" + std::to_string(::getpid()) + "-" +
                                            std::to_string(random() % 1000000u) + ".tmp"))
                                     .string();
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

ReplacingFile::ReplacingFile(std::string target) : target_(resolveLinks(target)) {}

ReplacingFile::~ReplacingFile() {
    if (stream_.is_open())
        stream_.close();
    if (!committed_ && !temporary_.empty())
        std::remove(temporary_.c_str());
}

bool ReplacingFile::fail(const char* reason) {
    failure_ = reason != nullptr ? reason : std::strerror(errno);
    return false;
}

bool ReplacingFile::open() {
    if (!mayReplace(target_))
        return fail("not a regular file");
    temporary_ = createTemporaryBeside(target_);
    if (temporary_.empty())
        return fail();
    buffer_.resize(kBufferSize);
    stream_.rdbuf()->pubsetbuf(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    stream_.open(temporary_, std::ios::out | std::ios::trunc);
    stream_.imbue(std::locale::classic());
    return stream_.is_open() || fail();
}

bool ReplacingFile::commit() {
    if (!stream_.is_open())
        return fail("not open");
    stream_.flush();
    const bool written = stream_.good();
    if (!written)
        failure_ = std::strerror(errno);  // the failing write's reason, before close touches it
    stream_.close();
    if (!written)
        return false;
    if (stream_.fail() || !syncToDisk(temporary_))
        return fail();
    struct stat existing {};
    if (::stat(target_.c_str(), &existing) == 0)
        ::chmod(temporary_.c_str(), existing.st_mode & 07777);
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0)
        return fail();
    committed_ = true;
    return true;
}

}  // namespace vellum
