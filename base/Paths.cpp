#include "base/Paths.h"

#include <unistd.h>

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

}  // namespace vellum
