#include "koral/KoralMethodBinding.h"

#include "koral/KoralException.h"

namespace vellum {

namespace {

constexpr const char* kClass = "koralLibrary";

koralException missingMethod(const std::string& method, const std::string& library) {
    return koralException(
        "Could not find the method '" + method + "' in the library '" + library + "' !!!", kClass);
}

}  // namespace

KoralMethodBinding::KoralMethodBinding(const std::string& identifier) {
    const std::size_t dot = identifier.find('.');
    if (dot == std::string::npos)
        throw koralException("Could not find the character '.'", kClass);
    libraryName_ = identifier.substr(0, dot);
    methodName_ = identifier.substr(dot + 1);
    library_.load(libraryName_);
    method_ = library_.find<KoralMethodEntry>(methodName_);
    if (method_ == nullptr)
        throw missingMethod(methodName_, libraryName_);
    error_ = library_.find<KoralErrorEntry>("Error");
    if (error_ == nullptr)
        throw missingMethod("Error", libraryName_);
}

bool KoralMethodBinding::call(DirectedGraph& graph, KoralFrame* frame) const {
    return method_(&graph, frame) != 0;
}

std::string KoralMethodBinding::error(const koralUnit* unit) const {
    const char* text = error_(unit);
    return text == nullptr ? std::string() : std::string(text);
}

}  // namespace vellum
