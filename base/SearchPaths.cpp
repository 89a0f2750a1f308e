#include "base/SearchPaths.h"

#include <cstdlib>

namespace vellum {

SearchPaths& SearchPaths::instance() {
    static SearchPaths paths;
    return paths;
}

std::optional<std::string> SearchPaths::lookUp(const std::string& name) const {
    const auto it = values_.find(name);
    if (it != values_.end())
        return it->second;
    // Read only, never written by the program, so concurrent readers are safe.
    const char* value = std::getenv(name.c_str());
    if (value == nullptr)
        return std::nullopt;
    return std::string(value);
}

bool SearchPaths::isSet(const std::string& name) const {
    std::lock_guard<std::mutex> lock(mutex_);
    return lookUp(name).has_value();
}

std::string SearchPaths::value(const std::string& name) const {
    std::lock_guard<std::mutex> lock(mutex_);
    return lookUp(name).value_or(std::string());
}

void SearchPaths::set(const std::string& name, std::string value) {
    std::lock_guard<std::mutex> lock(mutex_);
    values_[name] = std::move(value);
}

bool SearchPaths::setDefault(const std::string& name, const std::string& value) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (lookUp(name))
        return false;
    values_[name] = value;
    return true;
}

void SearchPaths::reset(const std::string& name) {
    std::lock_guard<std::mutex> lock(mutex_);
    values_.erase(name);
}

}  // namespace vellum
