#include "koral/BundledDefaults.h"

#include "base/Paths.h"

namespace vellum {

void applyBundledDefaults() {
    const std::string plugins = pluginDirectory();
    // Without a known plug-in folder there is nothing sensible to point the paths at.
    if (!plugins.empty()) {
        setEnvironmentDefault("koralGraphClasses", plugins);
        setEnvironmentDefault("VellumLayout", plugins);
    }
    setEnvironmentDefault("DirectedGraphEXTGRAPH", "dg");
    setEnvironmentDefault("DirectedGraphEXTRULE", "drl");
}

}  // namespace vellum
