// Writing a file so that a failure never costs the old one: the text goes to a temporary file
// beside the target, which replaces the target (by rename) only once everything was written
// and closed without error. The writers of graphs and rules and the console's save use it.
#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace vellum {

class ReplacingFile {
  public:
    // A target that is a symbolic link stands for the file it names.
    explicit ReplacingFile(std::string target);
    // Removes the temporary file unless commit() succeeded.
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    // Creates the temporary file (".vellum-....tmp" in the target's folder); false when the
    // folder cannot take it, or when the target exists but is no regular file (a folder, a
    // device, a named pipe), which is never replaced.
    bool open();
    // The stream to write to (classic "C" formatting, large buffer); valid after open().
    std::ostream& stream() { return stream_; }
    // Flushes, closes and syncs the temporary file to the disk, gives it the permissions of the
    // file it replaces and renames it over the target. False when any of that failed; the target is
    // then as it was.
    bool commit();
    // Why open() or commit() failed, in the system's words; empty while nothing failed.
    const std::string& failure() const { return failure_; }

  private:
    bool fail(const char* reason = nullptr);

    std::string target_;
    std::string temporary_;  // empty until open() created it
    std::vector<char> buffer_;
    std::ofstream stream_;
    bool committed_ = false;
    std::string failure_;
};

}  // namespace vellum
