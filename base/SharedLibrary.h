// A shared library opened at run time through the system loader, closed when its owner goes,
// and the one search rule that every kind of extension (function, method, layout and graph class
// libraries) is found by. A bare name reaches the loader as it stands, the way a program's own
// libraries are found, and the bundled plug-in folder stands in for the folder beside the program.
#pragma once

#include <string>
#include <vector>

namespace vellum {

class SharedLibrary {
  public:
    SharedLibrary() = default;
    ~SharedLibrary();
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    // The files tried for `name`, in order: the name as given and with ".so" appended, then, for
    // a name without "/", both in the bundled plug-in folder. A name with "/" is a path of its
    // own; a bare name goes through the loader's own search (LD_LIBRARY_PATH, system folders).
    static std::vector<std::string> candidates(const std::string& name);
    // The first candidate that loads; a library with nothing loaded when none does. Writes no
    // message: the caller reports.
    static SharedLibrary open(const std::string& name);
    // Exactly that file, with no candidates (the loader still searches for a name without "/").
    // A file cut short is not opened (see LibraryFile.h).
    static SharedLibrary openFile(const std::string& file);

    bool loaded() const { return handle_ != nullptr; }
    // The file that was loaded; empty when nothing is loaded.
    const std::string& file() const { return file_; }
    // The entry exported under exactly that name; null when absent or nothing is loaded.
    void* symbol(const std::string& name) const;

  private:
    void close() noexcept;

    void* handle_ = nullptr;  // owned: closed by the destructor
    std::string file_;
};

}  // namespace vellum
