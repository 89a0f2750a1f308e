#include "grammar/Cache.h"

#include <sys/stat.h>

#include <cstring>

#include "base/Console.h"

namespace vellum {

Cache::Cache(long capacity) : capacity_(capacity) {
    if (!(0 < capacity_)) {
        reportAssertion("0 < Size", "src/Cache", __LINE__);
        capacity_ = 1;
    }
}

Cache::~Cache() = default;

bool Cache::open(const std::string& fileName) {
    close();
    // Only a regular file can be measured and read at random: a named pipe would block the
    // open until a writer comes, and a device may never end.
    struct stat info {};
    if (::stat(fileName.c_str(), &info) == 0 && !S_ISREG(info.st_mode))
        return false;
    std::FILE* f = std::fopen(fileName.c_str(), "rb");
    if (f == nullptr)
        return false;
    ownedFile_.reset(f);
    file_ = f;
    if (measureAndFill())
        return true;
    close();
    return false;
}

bool Cache::attach(std::FILE* file) {
    close();
    if (file == nullptr)
        return false;
    file_ = file;
    if (measureAndFill())
        return true;
    close();
    return false;
}

bool Cache::attach(const char* text) {
    close();
    if (text == nullptr)
        return false;
    text_ = text;
    length_ = static_cast<long>(std::strlen(text));
    position_ = 0;
    return true;
}

void Cache::close() {
    ownedFile_.reset();
    file_ = nullptr;
    text_ = nullptr;
    buffer_.clear();
    buffer_.shrink_to_fit();
    bufferStart_ = 0;
    bufferCount_ = 0;
    length_ = 0;
    position_ = 0;
}

bool Cache::measureAndFill() {
    if (std::fseek(file_, 0, SEEK_END) != 0)
        return false;
    length_ = std::ftell(file_);
    if (length_ < 0)
        return false;
    position_ = 0;
    if (buffer_.empty())
        buffer_.resize(static_cast<std::size_t>(capacity_));
    bufferStart_ = 0;
    bufferCount_ = 0;
    return length_ == 0 || refill(0);
}

bool Cache::refill(long from) {
    if (file_ == nullptr || std::fseek(file_, from, SEEK_SET) != 0)
        return false;
    const std::size_t got = std::fread(buffer_.data(), 1, buffer_.size(), file_);
    bufferStart_ = from;
    bufferCount_ = static_cast<long>(got);
    return got > 0;
}

void Cache::excerpt(long from, long to, std::string& out) {
    out.clear();
    if (from < 0)
        from = 0;
    if (to > length_)
        to = length_;
    seek(from);
    while (tell() >= 0 && tell() < to) {
        const char c = read();
        if (c == 0)
            break;
        out.push_back(c);
    }
}

int Cache::lineNumber() {
    const long at = position_;
    int lines = 1;
    seek(0);
    while (tell() >= 0 && tell() < at) {
        if (read() == '\n')
            ++lines;
    }
    seek(at);
    return lines;
}

}  // namespace vellum
