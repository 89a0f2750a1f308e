// Fuzz target: arbitrary bytes read as a graph file with the graph file's own tokens and grammar,
// from memory and from a file. Without zero bytes both parses must agree on the result and the
// actions; the file parse must report where it stopped consistently, and its report must be
// written without trouble. Findings: crashes, sanitizer reports, hangs, disagreements.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "fuzz/GraphSyntax.h"
#include "grammar/ParseReport.h"
#include "tests/support/TempFile.h"

using vellum::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string content(reinterpret_cast<const char*>(data), size);
    vellum::test::TempFile file(content);
    if (file.path().empty())
        return 0;
    vellum::ConsoleCapture capture;
    vellum::fuzz::GraphSyntaxReader fromFile;
    check(fromFile.loaded());
    vellum::fuzz::ParseOutcome outcome;
    outcome.ok = fromFile.parseFile(file.path(), vellum::kExcerptBefore, vellum::kExcerptAfter,
                                    outcome.excerpt, outcome.position);
    vellum::fuzz::checkReport(outcome, content);
    if (!outcome.ok)
        vellum::reportSyntaxError("File", file.path(), outcome.position, fromFile.lineNumber(),
                                  outcome.excerpt);

    vellum::fuzz::GraphSyntaxReader fromString;
    const bool ok = fromString.parseString(content);
    if (content.find('\0') == std::string::npos) {
        check(ok == outcome.ok);
        check(fromString.actions() == fromFile.actions());
    }
    return 0;
}
