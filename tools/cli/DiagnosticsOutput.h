// How vellum-cli shows the readers' diagnostics: on standard error, in the compiler convention
// that editors and terminals link ("FILE:LINE:COLUMN: error: WHAT", the source line, a caret),
// beside the console log on standard output, which keeps its fixed form.
#pragma once

#include <iosfwd>

#include "grammar/Diagnostics.h"

namespace vellum::cli {

// Writes the diagnostics file by file, in text order within a file; warnings only when
// `warnings` is set. At most
// kMaxShown are written, then one line says how many more there were.
void printDiagnostics(std::ostream& out, const Diagnostics& diagnostics, bool warnings);

constexpr std::size_t kMaxShown = 100;

// Collects what the readers find while a command runs, and writes the errors to standard error
// when it ends (commands that want more, such as check, collect their own meanwhile).
class ErrorsOnStandardError {
  public:
    ErrorsOnStandardError() : scope_(found_) {}
    ~ErrorsOnStandardError();
    ErrorsOnStandardError(const ErrorsOnStandardError&) = delete;
    ErrorsOnStandardError& operator=(const ErrorsOnStandardError&) = delete;

  private:
    Diagnostics found_;
    DiagnosticsScope scope_;
};

}  // namespace vellum::cli
