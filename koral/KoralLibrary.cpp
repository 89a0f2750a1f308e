#include "koral/KoralLibrary.h"

#include "koral/KoralException.h"

namespace vellum {

namespace {
constexpr const char* kClass = "koralLibrary";
}  // namespace

void koralLibrary::load(const std::string& fileName) {
    library_ = SharedLibrary::open(fileName);
    if (!library_.loaded())
        throw koralException("Could not load the library '" + fileName + "' !!!", kClass);
}

void* koralLibrary::function(const std::string& name) const {
    if (!library_.loaded())
        throw koralException("No library loaded!!!", kClass);
    void* entry = library_.symbol(name);
    if (entry == nullptr)
        throw koralException("Could find the function '" + name + "' !!!", kClass);
    return entry;
}

}  // namespace vellum
