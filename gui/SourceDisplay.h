// SourceDisplay: the interpreter's debug window, "DEBUG Source display - " + file name, holding
// the module file read-only with the running statement's characters selected. The interpreter
// frame owns it and shows, moves and hides it on the GUI thread.
#pragma once

#include <wx/frame.h>
#include <wx/textctrl.h>

#include <string>

namespace vellum {

class SourceDisplay : public wxFrame {
  public:
    static constexpr const char* titlePrefix = "DEBUG Source display - ";

    explicit SourceDisplay(wxWindow* parent);

    // Shows `file` (read again only when it is another file than the one shown) with the
    // characters [begin, end) selected and in view.
    void show(const std::string& file, long begin, long end);
    const std::string& file() const { return m_file; }
    const wxTextCtrl& text() const { return *m_text; }

  private:
    wxTextCtrl* m_text;
    std::string m_file;
};

}  // namespace vellum
