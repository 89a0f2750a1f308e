// Test support: a file with given bytes in the temporary folder, removed again when the object
// goes. Used by the tests and the fuzz targets that read through the file mode of the source.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace vellum::test {

class TempFile {
  public:
    explicit TempFile(std::string_view content) {
        const char* dir = std::getenv("TMPDIR");
        std::string pattern =
            std::string(dir != nullptr && *dir != 0 ? dir : "/tmp") + "/vellum-test-XXXXXX";
        const int fd = ::mkstemp(pattern.data());
        if (fd < 0)
            return;
        path_ = pattern;
        std::size_t written = 0;
        while (written < content.size()) {
            const ssize_t n = ::write(fd, content.data() + written, content.size() - written);
            if (n <= 0)
                break;
            written += static_cast<std::size_t>(n);
        }
        ::close(fd);
    }
    ~TempFile() {
        if (!path_.empty())
            std::remove(path_.c_str());
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    // Empty when the file could not be created.
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace vellum::test
