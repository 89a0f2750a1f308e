// A graph class handler for the tests ("Bare.gc") that loads but exports none of the handler
// entries, so that every lookup meets its "could not find" message.
#include "koral/PluginApi.h"

VELLUM_PLUGIN_EXPORT int bareHandlerVersion() {
    return 1;
}
