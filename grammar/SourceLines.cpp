#include "grammar/SourceLines.h"

namespace vellum {
namespace {

// What renderDiagnostic shows of a long line: this many bytes, beginning well before the column.
constexpr std::size_t kShownBytes = 160;
constexpr std::size_t kShownBeforeColumn = 60;

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t') || byte == 0x7f;
}

}  // namespace

SourcePlace LineCursor::locate(long offset) {
    // Opened on first use, once the file is known to be a regular one (opening a named pipe
    // would wait for a writer).
    if (!in_.is_open())
        in_.open(file_, std::ios::binary);
    if (offset < offset_)
        rewind();
    std::streambuf* text = in_.rdbuf();
    while (offset_ < offset && in_) {
        const auto c = text->sbumpc();
        if (c == std::char_traits<char>::eof())
            break;
        ++offset_;
        if (c == '\n') {
            ++line_;
            lineStart_ = offset_;
        }
    }
    return {line_, static_cast<int>(offset_ - lineStart_) + 1, lineStart_};
}

void LineCursor::rewind() {
    in_.clear();
    in_.seekg(0);
    offset_ = 0;
    line_ = 1;
    lineStart_ = 0;
}

std::string LineCursor::lineText(long lineStart, std::size_t limit) {
    std::ifstream in(file_, std::ios::binary);
    std::string line;
    if (!in.seekg(lineStart))
        return line;
    for (char c; line.size() < limit && in.get(c) && c != '\n';)
        line.push_back(c);
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

std::string renderDiagnostic(const Diagnostic& diagnostic, LineCursor& cursor) {
    const SourcePlace place = cursor.locate(diagnostic.offset);
    std::string out = diagnostic.file + ":" + std::to_string(place.line) + ":" +
                      std::to_string(place.column) + ": " +
                      (diagnostic.severity == Severity::Error ? "error: " : "warning: ") +
                      diagnostic.message + "\n";
    const auto column = static_cast<std::size_t>(place.column - 1);
    const std::size_t from =
        column > kShownBytes - kShownBeforeColumn ? column - kShownBeforeColumn : 0;
    std::string line = cursor.lineText(place.lineStart + static_cast<long>(from), kShownBytes);
    std::string caret = from > 0 ? "   " : "";
    for (std::size_t i = 0; i < column - from; ++i)
        caret += i < line.size() && line[i] == '\t' ? '\t' : ' ';
    for (char& c : line) {
        if (isControl(c))
            c = '?';
    }
    out += (from > 0 ? "..." : "") + line + "\n" + caret + "^\n";
    return out;
}

}  // namespace vellum
