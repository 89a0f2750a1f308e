// koralLibrary: one extension library of the transformation language (a method library, a
// graph class handler or a layout algorithm), loaded by file name and unloaded when the wrapper
// goes. Errors are koralException with class "koralLibrary", in the system's own wording.
#pragma once

#include <string>

#include "base/SharedLibrary.h"

namespace vellum {

class koralLibrary {
  public:
    koralLibrary() = default;
    koralLibrary(koralLibrary&&) noexcept = default;
    koralLibrary& operator=(koralLibrary&&) noexcept = default;
    koralLibrary(const koralLibrary&) = delete;
    koralLibrary& operator=(const koralLibrary&) = delete;

    // Loads the library, found as SharedLibrary::open() finds it (the name, the name + ".so",
    // both in the bundled plug-in folder for a name without "/"), in place of any library held
    // before. A file cut short (an interrupted copy) is skipped unread, since the system loader
    // would crash on it. Throws "Could not load the library 'NAME' !!!", and then holds nothing.
    void load(const std::string& fileName);

    bool loaded() const { return library_.loaded(); }
    // The file that was loaded; empty when nothing is.
    const std::string& file() const { return library_.file(); }

    // The entry of that name. Throws "No library loaded!!!" when nothing is loaded and
    // "Could find the function 'NAME' !!!" (so worded) when the library does not export it.
    void* function(const std::string& name) const;
    // The entry, or null when nothing is loaded or it is not exported; never throws.
    void* find(const std::string& name) const { return library_.symbol(name); }

    // function() and find() as a typed entry point.
    template <typename Entry>
    Entry function(const std::string& name) const {
        return reinterpret_cast<Entry>(function(name));
    }
    template <typename Entry>
    Entry find(const std::string& name) const {
        return reinterpret_cast<Entry>(find(name));
    }

  private:
    SharedLibrary library_;
};

}  // namespace vellum
