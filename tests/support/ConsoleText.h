// Test support: the interpreter's console text made comparable across runs.
#pragma once

#include <regex>
#include <string>

namespace vellum::test {

// The console text with the run time of each READY line replaced by "T".
inline std::string withoutTime(const std::string& text) {
    static const std::regex time(R"(\.\.\.[-+.e0-9]+ seconds\.)");
    return std::regex_replace(text, time, "...T seconds.");
}

}  // namespace vellum::test
