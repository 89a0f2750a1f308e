#include "base/Paths.h"

#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace vellum {

std::string executableDirectory() {
    std::vector<char> buffer(4096);
    const ssize_t n = ::readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
    if (n <= 0)
        return {};
    std::string path(buffer.data(), static_cast<std::size_t>(n));
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string pluginDirectory() {
    const std::string bin = executableDirectory();
    if (bin.empty())
        return {};
    return bin + "/../lib/vellum/plugins";
}

bool environmentIsSet(const char* name) {
    return std::getenv(name) != nullptr;
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

void setEnvironmentDefault(const char* name, const std::string& value) {
    ::setenv(name, value.c_str(), 0);
}

}  // namespace vellum
