// Diagnostics: what the readers found wrong in a file, as records a tool can act on (file,
// character offset, severity, message) beside the console's fixed report. A collector receives
// them while a DiagnosticsScope holds it on the current thread; with none in scope nothing is
// recorded. The collector travels with the thread rather than through the calls because rules
// are also read inside graph class handlers, whose entry points carry only a file name.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vellum {

enum class Severity { Error, Warning };

struct Diagnostic {
    std::string file;
    long offset = 0;  // characters from the start of the file
    Severity severity = Severity::Error;
    std::string message;  // the reason in words, without "error: " or a trailing line feed
};

class Diagnostics {
  public:
    void add(Diagnostic diagnostic);
    void add(Severity severity, std::string file, long offset, std::string message) {
        add(Diagnostic{std::move(file), offset, severity, std::move(message)});
    }

    const std::vector<Diagnostic>& all() const { return items_; }
    std::size_t size() const { return items_.size(); }
    std::size_t count(Severity severity) const;
    void clear() { items_.clear(); }

    // The collector in scope on this thread, or null.
    static Diagnostics* current();

  private:
    friend class DiagnosticsScope;
    std::vector<Diagnostic> items_;
};

// Makes `collector` the current one on this thread for its lifetime; the one before it is
// current again afterwards, so scopes nest.
class DiagnosticsScope {
  public:
    explicit DiagnosticsScope(Diagnostics& collector);
    ~DiagnosticsScope();
    DiagnosticsScope(const DiagnosticsScope&) = delete;
    DiagnosticsScope& operator=(const DiagnosticsScope&) = delete;

  private:
    Diagnostics* previous_;
};

// A console message as a diagnostic says it: without its trailing "!" marks and blanks.
std::string plainMessage(std::string message);

// Records into the current collector, if there is one.
void diagnose(Severity severity, const std::string& file, long offset, std::string message);

}  // namespace vellum
