// Start-up of the desktop program: the main frame (which builds the console frame) and the
// banner on the console. The application object and the GUI tests start the same way.
#pragma once

#include "app/MainFrame.h"

#include <string>
#include <vector>

namespace vellum {

inline constexpr char kVersionLine[] = "Vellum v2 r5";
inline constexpr char kCopyrightLine[] = "Copyright (c) 2026 the Vellum developers";

// Opens the main frame and writes the banner, then a graph editor for each graph file (".dg")
// among `files`; other files are named on the console as not opened. The frame belongs to the
// toolkit, like every top-level window; closing it ends the program.
MainFrame* startUp(const std::vector<std::string>& files = {});

}  // namespace vellum
