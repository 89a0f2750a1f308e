// The console: the system's one log. Every library writes its messages here, as lines ending in a
// line feed; where they end up is decided by the sinks attached (standard output for the command
// line, a capture buffer for tests, the console frame's text control in the desktop program).
// Writes, clearing and saving are serialised by the console's own lock, since the interpreter's
// worker thread writes too.
#pragma once

#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

// Receives the console's text. Called with the console's lock held: a sink must not write to the
// console itself.
class ConsoleSink {
  public:
    virtual ~ConsoleSink() = default;
    virtual void append(std::string_view text) = 0;
    virtual void clear() {}
};

class Console {
  public:
    static Console& instance();

    // Appends text to every sink, as one unit (no other write interleaves with it).
    void write(std::string_view text);
    // Empties every sink (the console frame's "Clear console").
    void clear();

    void addSink(std::shared_ptr<ConsoleSink> sink);
    void removeSink(const ConsoleSink* sink);

    // Standard output is a sink like the others, on by default so that programs without a
    // console frame show their messages.
    void setStandardOutput(bool on);
    bool standardOutput() const;

  private:
    Console();

    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<ConsoleSink>> sinks_;
    std::shared_ptr<ConsoleSink> stdoutSink_;
    bool stdoutOn_ = true;
};

// One insertion statement: collects `console() << a << b << "\n"` and hands it to the console as
// one write when the statement ends, so that lines of two threads never mix.
class ConsoleStream {
  public:
    ConsoleStream() = default;
    ConsoleStream(const ConsoleStream&) = delete;
    ConsoleStream& operator=(const ConsoleStream&) = delete;
    ~ConsoleStream();

    template <typename T>
    ConsoleStream& operator<<(const T& value) {
        buffer_ << value;
        return *this;
    }

  private:
    std::ostringstream buffer_;
};

inline ConsoleStream console() {
    return {};
}

// A sink that keeps everything it is given; content() returns it. Thread-safe on its own.
class CaptureSink : public ConsoleSink {
  public:
    void append(std::string_view text) override;
    void clear() override;
    std::string content() const;

  private:
    mutable std::mutex mutex_;
    std::string text_;
};

// Attaches a capture sink for its lifetime and, by default, silences standard output meanwhile:
// tests read exactly what a part wrote.
class ConsoleCapture {
  public:
    explicit ConsoleCapture(bool keepStandardOutput = false);
    ~ConsoleCapture();
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    std::string text() const { return sink_->content(); }
    void reset() { sink_->clear(); }

  private:
    std::shared_ptr<CaptureSink> sink_;
    bool previousStandardOutput_;
};

// Reports a failed precondition the way the containers and the input source do: through the
// console, naming the condition, the source and the line, and execution goes on.
void reportAssertion(std::string_view condition, std::string_view source, int line);

}  // namespace vellum
