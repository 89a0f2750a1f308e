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

}  // namespace vellum
