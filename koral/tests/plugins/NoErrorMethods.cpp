// A method library for the tests ("noerror.so") whose method exists but which lacks the
// mandatory Error entry, so that it cannot be bound.
#include "koral/PluginApi.h"

VELLUM_KORAL_METHOD(work) {
    return 1;
}
