#include "gui/view/StepPictureWriter.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "gui/view/PngWriter.h"

namespace vellum {

namespace {

constexpr const char* kPrefix = "step-";
constexpr const char* kSuffix = ".png";

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// The first picture of a recording in `folder`, empty when there is none; `error` is set when
// the folder cannot be listed.
std::string firstPictureIn(const std::filesystem::path& folder, std::string& error) {
    std::error_code failed;
    for (std::filesystem::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string name = entry->path().filename().string();
        if (StepPictureWriter::isPictureName(name))
            return name;
    }
    if (failed)
        error = "cannot list the folder '" + folder.string() + "' (" + failed.message() + ")";
    return {};
}

}  // namespace

std::string StepPictureWriter::fileName(int number) {
    char name[32];
    std::snprintf(name, sizeof name, "%s%06d%s", kPrefix, number, kSuffix);
    return name;
}

bool StepPictureWriter::isPictureName(const std::string& name) {
    return name.rfind(kPrefix, 0) == 0 && endsWith(name, kSuffix);
}

std::optional<StepPictureWriter> StepPictureWriter::open(const std::string& folder,
                                                         std::string& error) {
    if (folder.empty()) {
        error = "no folder named for the pictures";
        return std::nullopt;
    }
    const std::filesystem::path path(folder);
    std::error_code failed;
    if (!std::filesystem::exists(path, failed))
        std::filesystem::create_directories(path, failed);
    if (failed) {
        error = "cannot create the folder '" + folder + "' (" + failed.message() + ")";
        return std::nullopt;
    }
    if (!std::filesystem::is_directory(path, failed)) {
        error = "'" + folder + "' is no folder";
        return std::nullopt;
    }
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
        error = "cannot write into the folder '" + folder + "' (" + std::strerror(errno) + ")";
        return std::nullopt;
    }
    const std::string existing = firstPictureIn(path, error);
    if (!error.empty())
        return std::nullopt;
    if (!existing.empty()) {
        error = "the folder '" + folder + "' already holds pictures of a recording ('" + existing +
                "'); choose another folder or remove them";
        return std::nullopt;
    }
    return StepPictureWriter(folder);
}

std::string StepPictureWriter::path(int number) const {
    return (std::filesystem::path(m_folder) / fileName(number)).string();
}

bool StepPictureWriter::write(int number, const TPXimage& picture, std::string& error) const {
    if (number < 0 || number > kLastNumber) {
        error = "picture number " + std::to_string(number) + " is outside 0 to " +
                std::to_string(kLastNumber);
        return false;
    }
    const std::string file = path(number);
    std::error_code failed;
    if (std::filesystem::symlink_status(file, failed).type() !=
        std::filesystem::file_type::not_found) {
        error = failed ? "cannot look for the picture '" + file + "' (" + failed.message() + ")"
                       : "the picture '" + file + "' exists already and is not replaced";
        return false;
    }
    if (!writePng(picture, file)) {
        error = "cannot write the picture '" + file + "'";
        return false;
    }
    return true;
}

}  // namespace vellum
