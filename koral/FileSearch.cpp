#include "koral/FileSearch.h"

#include <filesystem>
#include <system_error>

#include "base/SearchPaths.h"

namespace vellum {
namespace {

bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

bool endsInSeparator(const std::string& directory) {
    return !directory.empty() && (directory.back() == '/' || directory.back() == '\\');
}

}  // namespace

std::vector<std::string> searchDirectories(const std::string& variable) {
    const std::string value = SearchPaths::instance().value(variable);
    std::vector<std::string> directories;
    std::size_t start = 0;
    while (start <= value.size()) {
        std::size_t end = value.find(';', start);
        if (end == std::string::npos)
            end = value.size();
        // An empty entry (";;", a trailing ";") names no folder: joined with a file name it
        // would point at the root folder.
        if (end > start)
            directories.push_back(value.substr(start, end - start));
        start = end + 1;
    }
    return directories;
}

std::string joinPath(const std::string& directory, const std::string& fileName) {
    if (!endsInSeparator(directory))
        return directory + "/" + fileName;
    return directory.substr(0, directory.size() - 1) + "/" + fileName;
}

std::string findFile(const std::string& fileName, const std::string& variable) {
    const std::vector<std::string> directories = searchDirectories(variable);
    if (SearchPaths::instance().value(variable).empty())
        return isFile(fileName) ? fileName : std::string();
    for (const std::string& directory : directories) {
        const std::string candidate = joinPath(directory, fileName);
        if (isFile(candidate))
            return candidate;
    }
    return {};
}

std::string loaderPath(const std::string& file) {
    if (file.empty() || file.find('/') != std::string::npos)
        return file;
    return "./" + file;
}

}  // namespace vellum
