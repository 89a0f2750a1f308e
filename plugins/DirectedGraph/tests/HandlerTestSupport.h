// The DirectedGraph.gc tests reach the handler as modules do: through the process-wide handler
// table, opened along "koralGraphClasses" from the folder the build put the plug-in in. The
// table keeps it loaded, so the objects it made may outlive any one test.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "koral/GraphClassHandlers.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum::test {

inline GraphClassHandlers& directedGraphHandler() {
    static const bool opened = [] {
        ScopedEnvironment path("koralGraphClasses", VELLUM_HANDLER_DIRECTORY);
        return GraphClassHandlers::instance().open("DirectedGraph");
    }();
    EXPECT_TRUE(opened) << "no DirectedGraph.gc in " << VELLUM_HANDLER_DIRECTORY;
    return GraphClassHandlers::instance();
}

}  // namespace vellum::test
