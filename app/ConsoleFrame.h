// The console frame: a window that shows the console log in a read-only text control, with
// commands to clear it and to save its content as a text file. It attaches its sink to the
// console while it exists.
#pragma once

#include "app/TextCtrlSink.h"

#include <wx/frame.h>
#include <wx/textctrl.h>

#include <memory>
#include <string>

namespace vellum {

class ConsoleFrame : public wxFrame {
  public:
    static constexpr int kClearConsole = 2;
    static constexpr int kSaveContent = 4;

    explicit ConsoleFrame(wxWindow* parent);
    ~ConsoleFrame() override;

    wxTextCtrl* textControl() const { return text_; }

    // Empties the console (every sink, this frame's control included).
    void clearContent();
    // Writes the control's content to path. Returns false after saying why on the console (and
    // in *failure when given); an existing file of that name is then left as it was.
    bool saveContentTo(const std::string& path, std::string* failure = nullptr);
    // Asks for a file name and saves there; a failure is also shown in an "Alert" box.
    void saveContentAsked();

  private:
    void buildMenus();
    void onClear(wxCommandEvent& event);
    void onSave(wxCommandEvent& event);
    void onClose(wxCloseEvent& event);

    wxTextCtrl* text_;                    // child window, owned by the frame
    std::shared_ptr<TextCtrlSink> sink_;  // attached to the console for the frame's lifetime
};

}  // namespace vellum
