// The settings a newcomer does not have to make: at start-up each program points the search
// variables of the extension libraries at its bundled plug-in folder and gives the graph class
// DirectedGraph its file extensions. A variable the user has set, even to an empty value, wins.
#pragma once

namespace vellum {

// Sets, each only when unset: "koralGraphClasses" and "VellumLayout" to pluginDirectory(),
// "DirectedGraphEXTGRAPH" to "dg", "DirectedGraphEXTRULE" to "drl". Call it once, first thing
// in main(), before any thread starts (the environment is not thread-safe to change).
void applyBundledDefaults();

}  // namespace vellum
