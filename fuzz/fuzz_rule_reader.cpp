// Fuzz target: arbitrary bytes read by the real rule file reader; a rule that reads is written
// and must read again, unless the writer refuses it with its reason.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "graph/DirectedGraphRule.h"
#include "graph/RuleReader.h"
#include "graph/RuleWriter.h"
#include "tests/support/TempFile.h"

using vellum::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vellum::test::TempFile file(std::string(reinterpret_cast<const char*>(data), size));
    if (file.path().empty())
        return 0;
    vellum::ConsoleCapture capture;
    const auto rule = vellum::loadRule(file.path());
    if (!rule)
        return 0;
    vellum::test::TempFile copy("");
    capture.reset();
    if (!vellum::saveRule(*rule, copy.path())) {
        check(capture.text().find(" in a rule file\nCould not write the file '") !=
              std::string::npos);
        return 0;
    }
    check(vellum::loadRule(copy.path()) != nullptr);
    return 0;
}
