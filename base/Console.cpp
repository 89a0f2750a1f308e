#include "base/Console.h"

#include <algorithm>
#include <cstdio>

namespace vellum {
namespace {

class StandardOutputSink : public ConsoleSink {
  public:
    void append(std::string_view text) override {
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
    }
};

}  // namespace

Console& Console::instance() {
    static Console console;
    return console;
}

Console::Console() : stdoutSink_(std::make_shared<StandardOutputSink>()) {}

void Console::write(std::string_view text) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (stdoutOn_)
        stdoutSink_->append(text);
    for (const auto& sink : sinks_)
        sink->append(text);
}

void Console::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& sink : sinks_)
        sink->clear();
}

void Console::addSink(std::shared_ptr<ConsoleSink> sink) {
    std::lock_guard<std::mutex> lock(mutex_);
    sinks_.push_back(std::move(sink));
}

void Console::removeSink(const ConsoleSink* sink) {
    std::lock_guard<std::mutex> lock(mutex_);
    sinks_.erase(std::remove_if(sinks_.begin(), sinks_.end(),
                                [sink](const auto& s) { return s.get() == sink; }),
                 sinks_.end());
}

void Console::setStandardOutput(bool on) {
    std::lock_guard<std::mutex> lock(mutex_);
    stdoutOn_ = on;
}

bool Console::standardOutput() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return stdoutOn_;
}

ConsoleStream::~ConsoleStream() {
    const std::string text = buffer_.str();
    if (!text.empty())
        Console::instance().write(text);
}

void CaptureSink::append(std::string_view text) {
    std::lock_guard<std::mutex> lock(mutex_);
    text_.append(text);
}

void CaptureSink::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    text_.clear();
}

std::string CaptureSink::content() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return text_;
}

ConsoleCapture::ConsoleCapture(bool keepStandardOutput)
    : sink_(std::make_shared<CaptureSink>()),
      previousStandardOutput_(Console::instance().standardOutput()) {
    Console::instance().addSink(sink_);
    if (!keepStandardOutput)
        Console::instance().setStandardOutput(false);
}

ConsoleCapture::~ConsoleCapture() {
    Console::instance().removeSink(sink_.get());
    Console::instance().setStandardOutput(previousStandardOutput_);
}

void reportAssertion(std::string_view condition, std::string_view source, int line) {
    console() << "Assertion failed: " << condition << ", file " << source << ", line " << line
              << "\n";
}

}  // namespace vellum
