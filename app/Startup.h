// Start-up of the desktop program: the main frame (which builds the console frame) and the
// banner on the console. The application object and the GUI tests start the same way.
#pragma once

#include "app/CommandLine.h"
#include "app/MainFrame.h"

#include <functional>
#include <string>
#include <vector>

namespace vellum {

inline constexpr char kVersionLine[] = "Vellum v2 r5";
inline constexpr char kCopyrightLine[] = "Copyright (c) 2026 the Vellum developers";

// Opens the main frame and writes the banner, then a graph editor for each graph file (".dg")
// among `files`; other files are named on the console as not opened. The frame belongs to the
// toolkit, like every top-level window; closing it ends the program.
MainFrame* startUp(const std::vector<std::string>& files = {});

// The same for the program's options: with a run asked for, an interpreter frame loads the
// graph, takes the snooze and the layout, and starts the unit. With --quit-when-done the
// program ends once the run has (or could not start): `finished` hears the exit status, 0 for
// a run that ended normally, and the main frame closes.
MainFrame* startUp(const StartupOptions& options, std::function<void(int status)> finished = {});

}  // namespace vellum
