#include "grammar/ExpressionLibrary.h"

#include <map>
#include <mutex>

namespace vellum {
namespace {

// One library name: the library while some expression holds it, and the file it was found as,
// remembered so that loading it again after it was closed skips the search.
struct Entry {
    std::weak_ptr<FunctionLibrary> library;
    std::string file;
};

}  // namespace

std::vector<std::string> FunctionLibrary::candidates(const std::string& name) {
    return SharedLibrary::candidates(name);
}

std::shared_ptr<FunctionLibrary> FunctionLibrary::open(const std::string& name) {
    static std::mutex mutex;
    static std::map<std::string, Entry> entries;  // only names that loaded at least once

    std::lock_guard<std::mutex> lock(mutex);
    Entry& entry = entries[name];
    if (auto shared = entry.library.lock())
        return shared;
    SharedLibrary loaded =
        entry.file.empty() ? SharedLibrary::open(name) : SharedLibrary::openFile(entry.file);
    if (!loaded.loaded()) {
        entries.erase(name);
        return nullptr;
    }
    entry.file = loaded.file();
    auto library = std::make_shared<FunctionLibrary>(Key{}, std::move(loaded));
    entry.library = library;
    return library;
}

ExpressionFunction FunctionLibrary::function(const std::string& name) const {
    return reinterpret_cast<ExpressionFunction>(library_.symbol(name));
}

}  // namespace vellum
