#include "koral/BundledDefaults.h"

#include "base/Paths.h"
#include "base/SearchPaths.h"

namespace vellum {

void applyBundledDefaults(SearchPaths& paths) {
    const std::string plugins = pluginDirectory();
    // Without a known plug-in folder there is nothing sensible to point the paths at.
    if (!plugins.empty()) {
        paths.setDefault("koralGraphClasses", plugins);
        paths.setDefault("VellumLayout", plugins);
    }
    paths.setDefault("DirectedGraphEXTGRAPH", "dg");
    paths.setDefault("DirectedGraphEXTRULE", "drl");
}

}  // namespace vellum
