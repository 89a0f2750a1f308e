#include "gui/SourceDisplay.h"

#include <wx/sizer.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace vellum {

SourceDisplay::SourceDisplay(wxWindow* parent)
    : wxFrame(parent, wxID_ANY, titlePrefix, wxDefaultPosition, wxSize(560, 480),
              wxDEFAULT_FRAME_STYLE | wxFRAME_FLOAT_ON_PARENT) {
    m_text = new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                            wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP | wxTE_NOHIDESEL);
    m_text->SetFont(wxFontInfo(10).Family(wxFONTFAMILY_TELETYPE));
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(m_text, 1, wxEXPAND);
    SetSizer(top);
    // Closing only hides it: the frame shows it again at the next statement while debug is on.
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (event.CanVeto()) {
            Hide();
            event.Veto();
        } else {
            event.Skip();
        }
    });
}

void SourceDisplay::show(const std::string& file, long begin, long end) {
    if (file != m_file) {
        std::ifstream in(file, std::ios::binary);
        std::ostringstream content;
        content << in.rdbuf();
        // The offsets count bytes of the file: keep one character per byte.
        m_text->ChangeValue(wxString::From8BitData(content.str().data(), content.str().size()));
        m_file = file;
        SetTitle(titlePrefix + wxString::FromUTF8(file));
    }
    const long last = m_text->GetLastPosition();
    begin = std::clamp(begin, 0L, last);
    end = std::clamp(end, begin, last);
    m_text->SetSelection(begin, end);
    m_text->ShowPosition(begin);
    if (!IsShown())
        Show();
}

}  // namespace vellum
