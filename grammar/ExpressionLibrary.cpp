#include "grammar/ExpressionLibrary.h"

#include <dlfcn.h>

#include <map>
#include <mutex>

#include "grammar/Paths.h"

namespace vellum {
namespace {

void* loadFile(const std::string& file) {
    return ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

// One library name: the library while some expression holds it, and the file it was found as,
// remembered so that loading it again after it was closed skips the search.
struct Entry {
    std::weak_ptr<FunctionLibrary> library;
    std::string file;
};

}  // namespace

std::vector<std::string> FunctionLibrary::candidates(const std::string& name) {
    std::vector<std::string> names = {name, name + ".so"};
    const std::string folder = pluginDirectory();
    // A name with a folder in it is a path of its own; the plug-in folder is not tried then.
    if (folder.empty() || name.find('/') != std::string::npos)
        return names;
    names.push_back(folder + "/" + name);
    names.push_back(folder + "/" + name + ".so");
    return names;
}

std::shared_ptr<FunctionLibrary> FunctionLibrary::open(const std::string& name) {
    static std::mutex mutex;
    static std::map<std::string, Entry> entries;  // only names that loaded at least once

    std::lock_guard<std::mutex> lock(mutex);
    Entry& entry = entries[name];
    if (auto shared = entry.library.lock())
        return shared;
    void* handle = entry.file.empty() ? nullptr : loadFile(entry.file);
    for (const std::string& file : handle ? std::vector<std::string>() : candidates(name)) {
        handle = loadFile(file);
        if (handle != nullptr) {
            entry.file = file;
            break;
        }
    }
    if (handle == nullptr) {
        entries.erase(name);
        return nullptr;
    }
    auto library = std::make_shared<FunctionLibrary>(Key{}, handle);
    entry.library = library;
    return library;
}

FunctionLibrary::~FunctionLibrary() {
    ::dlclose(handle_);
}

ExpressionFunction FunctionLibrary::function(const std::string& name) const {
    return reinterpret_cast<ExpressionFunction>(::dlsym(handle_, name.c_str()));
}

}  // namespace vellum
