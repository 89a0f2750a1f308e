// The settings a newcomer does not have to make: at start-up each program points the search
// variables of the extension libraries at its bundled plug-in folder and gives the graph class
// DirectedGraph its file extensions. A variable the user has set, even to an empty value, wins.
#pragma once

#include "base/SearchPaths.h"

namespace vellum {

// Sets, each only when unset: "koralGraphClasses" and "VellumLayout" to pluginDirectory(),
// "DirectedGraphEXTGRAPH" to "dg", "DirectedGraphEXTRULE" to "drl". Call it once, first thing
// in main().
void applyBundledDefaults(SearchPaths& paths = SearchPaths::instance());

}  // namespace vellum
