// Start-up of the desktop program: the main frame (which builds the console frame) and the
// banner on the console. The application object and the GUI tests start the same way.
#pragma once

#include "app/MainFrame.h"

namespace vellum {

inline constexpr char kVersionLine[] = "Vellum v2 r5";
inline constexpr char kCopyrightLine[] = "Copyright (c) 2026 the Vellum developers";

// Opens the main frame and writes the banner. The frame belongs to the toolkit, like every
// top-level window; closing it ends the program.
MainFrame* startUp();

}  // namespace vellum
