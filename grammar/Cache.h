// The input source of every reader: an in-memory text or a file, read one character at a time
// with cheap rewinds. Files are read through a read-ahead buffer so that the scanner's frequent
// seeks back stay inside memory. Positions are character offsets from 0.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace vellum {

class Cache {
  public:
    // capacity must be greater than 0; a smaller value is reported as a failed assertion and
    // replaced by 1 so that the object stays usable.
    explicit Cache(long capacity = 1024);
    ~Cache();
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;

    // Opens a file in binary mode, measures it and fills the buffer. False when it cannot be
    // opened or positioned. Any previous source is closed first.
    bool open(const std::string& fileName);
    // The same over a file opened by the caller, who keeps owning it.
    bool attach(std::FILE* file);
    // Reads a zero-terminated text that the caller keeps alive; false for a null text.
    bool attach(const char* text);
    // Closes an owned file (a borrowed one stays open), frees the buffer, detaches the text and
    // sets the position back to 0.
    void close();

    // The character at the current position, advancing by one; at or past the end (and after a
    // failed refill, which sets the position to -1) it returns 0 and does not advance.
    char read() {
        if (position_ < 0 || position_ >= length_)
            return 0;
        if (text_ != nullptr)
            return text_[position_++];
        if (position_ < bufferStart_ || position_ >= bufferStart_ + bufferCount_) {
            if (!refill(position_)) {
                position_ = -1;
                return 0;
            }
        }
        return buffer_[static_cast<std::size_t>(position_++ - bufferStart_)];
    }
    // The character at the current position without advancing (0 at the end).
    char peek() {
        const long at = position_;
        const char c = read();
        position_ = at;
        return c;
    }

    long tell() const { return position_; }
    void seek(long position) { position_ = position; }
    long length() const { return length_; }
    bool atEnd() const { return position_ < 0 || position_ >= length_; }

    // Copies the characters from `from` (at least 0) up to `to` (at most the length), stopping
    // early at a character 0, and leaves the position after the copied text.
    void excerpt(long from, long to, std::string& out);
    // 1 + the number of line feeds before the current position; the position is restored.
    int lineNumber();

  private:
    bool measureAndFill();
    bool refill(long from);

    struct FileCloser {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };

    std::unique_ptr<std::FILE, FileCloser> ownedFile_;
    std::FILE* file_ = nullptr;  // ownedFile_ or a borrowed file; null in string mode
    const char* text_ = nullptr;
    long length_ = 0;
    long position_ = 0;
    long capacity_;
    std::vector<char> buffer_;  // empty until a file is read
    long bufferStart_ = 0;
    long bufferCount_ = 0;
};

}  // namespace vellum
