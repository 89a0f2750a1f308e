// EditorPrompts: every question an editor frame asks its user (message boxes, file names,
// colours, its dialogs and its context menu), in one place, so that a test can answer them
// instead of a person. The defaults are the toolkit's modal boxes.
#pragma once

#include <wx/colour.h>
#include <wx/dialog.h>
#include <wx/menu.h>
#include <wx/string.h>

#include <optional>
#include <string>

namespace vellum {

class EditorPrompts {
  public:
    virtual ~EditorPrompts() = default;
    // A message box with `style` (wxOK, wxYES_NO, icons); returns wxOK, wxYES or wxNO.
    virtual int message(wxWindow* parent, const wxString& text, const wxString& title, long style);
    // A file name; empty when the user cancels. `filter` names the files, e.g. "Graph file
    // (*.dg)", `extension` is their extension without the dot.
    virtual wxString fileName(wxWindow* parent, const wxString& filter, const wxString& extension,
                              bool save);
    // `given` when it is not empty, else fileName()'s answer in UTF-8 (empty when cancelled).
    std::string fileNameOr(const std::string& given, wxWindow* parent, const wxString& filter,
                           const wxString& extension, bool save);
    // A folder, asked for with `message`; empty when the user cancels.
    virtual wxString folderName(wxWindow* parent, const wxString& message);
    // A colour starting at `initial`; none when the user cancels.
    virtual std::optional<wxColour> colour(wxWindow* parent, const wxColour& initial);
    // Shows a dialog modally and returns its return code (wxID_OK, wxID_CANCEL).
    virtual int showModal(wxDialog& dialog);
    // Shows a context menu at window point `at` of `window`; its commands go to the window.
    virtual void popupMenu(wxWindow& window, wxMenu& menu, const wxPoint& at);
};

}  // namespace vellum
