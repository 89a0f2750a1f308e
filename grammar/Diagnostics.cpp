#include "grammar/Diagnostics.h"

#include <algorithm>

namespace vellum {
namespace {

thread_local Diagnostics* currentCollector = nullptr;

}  // namespace

void Diagnostics::add(Diagnostic diagnostic) {
    items_.push_back(std::move(diagnostic));
}

std::size_t Diagnostics::count(Severity severity) const {
    return static_cast<std::size_t>(
        std::count_if(items_.begin(), items_.end(),
                      [severity](const Diagnostic& item) { return item.severity == severity; }));
}

Diagnostics* Diagnostics::current() {
    return currentCollector;
}

DiagnosticsScope::DiagnosticsScope(Diagnostics& collector) : previous_(currentCollector) {
    currentCollector = &collector;
}

DiagnosticsScope::~DiagnosticsScope() {
    currentCollector = previous_;
}

std::string plainMessage(std::string message) {
    while (!message.empty() && (message.back() == '!' || message.back() == ' '))
        message.pop_back();
    return message;
}

void diagnose(Severity severity, const std::string& file, long offset, std::string message) {
    if (Diagnostics* collector = Diagnostics::current())
        collector->add(severity, file, offset, std::move(message));
}

}  // namespace vellum
