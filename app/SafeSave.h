// Saving a whole text to a file so that a failure never costs the user the file already there,
// through ReplacingFile: the text goes to a temporary file beside the target, which replaces the
// target only once it is completely written and synced.
#pragma once

#include <string>
#include <string_view>

namespace vellum {

// Writes content to path, replacing any file of that name. Returns true on success; on failure
// returns false with the system's reason in `reason`, leaves an existing file as it was and
// removes the temporary file. An existing file's permission bits are kept.
bool saveReplacing(const std::string& path, std::string_view content, std::string& reason);

}  // namespace vellum
