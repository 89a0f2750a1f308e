// Fuzz target: arbitrary bytes read as a .dot file (see InterchangeFuzz.h).
#include "fuzz/InterchangeFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return vellum::fuzz::readInterchange(data, size, ".dot");
}
