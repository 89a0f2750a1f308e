// Where an offset of a file stands for a person: its line and column, both counted from 1, the
// column in bytes (a tab counts 1, as does each byte of a multi-byte character), and the line's
// text. Shared by every reader that records positions and by the tools that show diagnostics in
// the compiler convention "FILE:LINE:COLUMN: error: WHAT", the source line and a caret.
#pragma once

#include <fstream>
#include <string>

#include "grammar/Diagnostics.h"

namespace vellum {

struct SourcePlace {
    int line = 1;
    int column = 1;
    long lineStart = 0;  // offset of the line's first character
};

// Places offsets of one file by reading on from the offset placed last: asked in text order,
// it reads the file once, in constant memory (an index of line starts would grow with the file,
// which may be anything a user hands over); an earlier offset rewinds.
class LineCursor {
  public:
    explicit LineCursor(std::string file) : file_(std::move(file)) {}

    // An offset past the end gives the end's place; a file that cannot be read gives 1, 1.
    SourcePlace locate(long offset);
    // The text of the line that begins at `lineStart`, without its line end, cut after `limit`
    // bytes.
    std::string lineText(long lineStart, std::size_t limit);

    const std::string& file() const { return file_; }

  private:
    void rewind();

    std::string file_;
    std::ifstream in_;
    long offset_ = 0;     // where the file stands
    int line_ = 1;        // the line of offset_
    long lineStart_ = 0;  // where that line begins
};

// The diagnostic as a compiler writes it, three lines each ended by a line feed:
// "FILE:LINE:COLUMN: error: WHAT" ("warning: " for a warning), the source line, and a caret
// under the column. Control characters of the line other than tabs are shown as "?", and a
// long line only around the column, so that the caret stays aligned. `cursor` reads the
// diagnostic's file (one cursor serves many diagnostics of a file, best in text order).
std::string renderDiagnostic(const Diagnostic& diagnostic, LineCursor& cursor);

}  // namespace vellum
