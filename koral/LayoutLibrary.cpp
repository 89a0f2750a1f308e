#include "koral/LayoutLibrary.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "koral/FileSearch.h"
#include "koral/KoralException.h"

namespace vellum {

namespace {

constexpr const char* kVariable = "VellumLayout";
constexpr const char* kExtension = ".layout";

bool isLayoutFile(const std::filesystem::directory_entry& entry) {
    std::error_code error;
    const std::string file = entry.path().filename().string();
    const std::size_t length = std::char_traits<char>::length(kExtension);
    return entry.is_regular_file(error) && file.size() > length &&
           file.compare(file.size() - length, length, kExtension) == 0;
}

void addLayoutsOf(const std::string& directory, std::vector<std::string>& names) {
    std::error_code error;
    std::filesystem::directory_iterator files(directory.empty() ? "." : directory, error);
    for (; !error && files != std::filesystem::directory_iterator(); files.increment(error)) {
        if (!isLayoutFile(*files))
            continue;
        const std::string file = files->path().filename().string();
        names.push_back(file.substr(0, file.find('.')));
    }
}

// Only the algorithms of the layout folders may be chosen: a name holding a folder separator
// would reach beyond them.
bool isLayoutName(const std::string& name) {
    return !name.empty() && name.find_first_of("/\\") == std::string::npos;
}

}  // namespace

std::vector<std::string> LayoutLibrary::available() {
    std::vector<std::string> directories = searchDirectories(kVariable);
    if (directories.empty())
        directories.emplace_back();
    std::vector<std::string> names;
    for (const std::string& directory : directories)
        addLayoutsOf(directory, names);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

LayoutLibrary::LayoutLibrary(const std::string& name) : name_(name) {
    const std::string fileName = name + kExtension;
    const std::string path = isLayoutName(name) ? findFile(fileName, kVariable) : "";
    if (path.empty())
        throw koralException("Could not load the library '" + fileName + "' !!!", "koralLibrary");
    library_.load(loaderPath(path));
}

std::string LayoutLibrary::description() const {
    const auto entry = library_.find<LayoutDescriptionEntry>("lyDescription");
    const char* text = entry == nullptr ? nullptr : entry();
    return text == nullptr ? std::string() : std::string(text);
}

void LayoutLibrary::configure() const {
    library_.function<LayoutConfigureEntry>("lyConfigure")();
}

bool LayoutLibrary::completeLayout(DirectedGraph& graph, KoralFrame* notifier) const {
    return library_.function<LayoutCompleteEntry>("lyCompleteLayout")(&graph, notifier) != 0;
}

}  // namespace vellum
