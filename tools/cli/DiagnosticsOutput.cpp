#include "tools/cli/DiagnosticsOutput.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "grammar/SourceLines.h"

namespace vellum::cli {
namespace {

// The diagnostics grouped by file, in the order the files were first named, and in text order
// within a file (the readers record some findings only at the end of a part).
std::vector<const Diagnostic*> inTextOrder(const Diagnostics& diagnostics) {
    std::map<std::string, std::size_t> fileOrder;
    std::vector<const Diagnostic*> sorted;
    for (const Diagnostic& diagnostic : diagnostics.all()) {
        fileOrder.try_emplace(diagnostic.file, fileOrder.size());
        sorted.push_back(&diagnostic);
    }
    std::stable_sort(sorted.begin(), sorted.end(), [&](const Diagnostic* a, const Diagnostic* b) {
        const std::size_t fileA = fileOrder[a->file];
        const std::size_t fileB = fileOrder[b->file];
        return fileA != fileB ? fileA < fileB : a->offset < b->offset;
    });
    return sorted;
}

}  // namespace

void printDiagnostics(std::ostream& out, const Diagnostics& diagnostics, bool warnings) {
    std::map<std::string, LineCursor> cursors;  // one per file: each reads its file once
    std::size_t shown = 0;
    std::size_t left = 0;
    for (const Diagnostic* item : inTextOrder(diagnostics)) {
        const Diagnostic& diagnostic = *item;
        if (!warnings && diagnostic.severity == Severity::Warning)
            continue;
        if (shown == kMaxShown) {
            ++left;
            continue;
        }
        LineCursor& cursor = cursors.try_emplace(diagnostic.file, diagnostic.file).first->second;
        out << renderDiagnostic(diagnostic, cursor);
        ++shown;
    }
    if (left > 0)
        out << "vellum-cli: " << left << " more not shown\n";
    out.flush();
}

ErrorsOnStandardError::~ErrorsOnStandardError() {
    printDiagnostics(std::cerr, found_, false);
}

}  // namespace vellum::cli
