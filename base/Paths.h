// Where the running program and its bundled plug-ins are. Programs find their plug-in folder
// relative to their own executable, so the same layout works in the build tree and installed:
// bin/PROGRAM and lib/vellum/plugins/.
#pragma once

#include <string>

namespace vellum {

// The folder of the running executable (no trailing "/"); empty if it cannot be determined.
std::string executableDirectory();
// The bundled plug-in folder (no trailing "/"), derived from executableDirectory().
std::string pluginDirectory();

// Environment variables: an unset variable and an empty one are told apart.
bool environmentIsSet(const char* name);
std::string environmentValue(const char* name);
// Sets the variable only when it is unset, so that a value the user chose always wins.
void setEnvironmentDefault(const char* name, const std::string& value);

}  // namespace vellum
