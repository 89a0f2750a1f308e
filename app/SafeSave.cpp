#include "app/SafeSave.h"

#include "base/ReplacingFile.h"

namespace vellum {

bool saveReplacing(const std::string& path, std::string_view content, std::string& reason) {
    if (path.empty()) {
        reason = "no file name given";
        return false;
    }
    ReplacingFile file(path);
    if (!file.open()) {
        reason = file.failure();
        return false;
    }
    file.stream().write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.commit()) {
        reason = file.failure();
        return false;
    }
    return true;
}

}  // namespace vellum
