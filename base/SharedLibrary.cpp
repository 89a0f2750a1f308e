#include "base/SharedLibrary.h"

#include <dlfcn.h>

#include <utility>

#include "base/LibraryFile.h"
#include "base/Paths.h"

namespace vellum {

SharedLibrary::~SharedLibrary() {
    close();
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), file_(std::move(other.file_)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    if (this != &other) {
        close();
        handle_ = std::exchange(other.handle_, nullptr);
        file_ = std::move(other.file_);
    }
    return *this;
}

void SharedLibrary::close() noexcept {
    if (handle_ != nullptr)
        ::dlclose(handle_);
    handle_ = nullptr;
    file_.clear();
}

std::vector<std::string> SharedLibrary::candidates(const std::string& name) {
    std::vector<std::string> names = {name, name + ".so"};
    const std::string folder = pluginDirectory();
    if (folder.empty() || name.find('/') != std::string::npos)
        return names;
    names.push_back(folder + "/" + name);
    names.push_back(folder + "/" + name + ".so");
    return names;
}

SharedLibrary SharedLibrary::open(const std::string& name) {
    for (const std::string& file : candidates(name)) {
        SharedLibrary library = openFile(file);
        if (library.loaded())
            return library;
    }
    return {};
}

SharedLibrary SharedLibrary::openFile(const std::string& file) {
    SharedLibrary library;
    // An empty name would give the program itself, which is no library.
    if (file.empty())
        return library;
    // Checked first: a path as it stands, a bare name where the loader's search through
    // LD_LIBRARY_PATH would find it (the system's own folders are the system's business).
    const bool bare = file.find('/') == std::string::npos;
    if (isCutShortLibrary(bare ? findOnLibraryPath(file) : file))
        return library;
    library.handle_ = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library.handle_ != nullptr)
        library.file_ = file;
    return library;
}

void* SharedLibrary::symbol(const std::string& name) const {
    return handle_ == nullptr ? nullptr : ::dlsym(handle_, name.c_str());
}

}  // namespace vellum
