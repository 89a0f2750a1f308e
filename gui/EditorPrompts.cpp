#include "gui/EditorPrompts.h"

#include <wx/dirdlg.h>

#include <wx/colordlg.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>

namespace vellum {

int EditorPrompts::message(wxWindow* parent, const wxString& text, const wxString& title,
                           long style) {
    return wxMessageBox(text, title, style, parent);
}

wxString EditorPrompts::fileName(wxWindow* parent, const wxString& filter,
                                 const wxString& extension, bool save) {
    const long flags = save ? wxFD_SAVE | wxFD_OVERWRITE_PROMPT : wxFD_OPEN | wxFD_FILE_MUST_EXIST;
    return wxFileSelector(filter, wxEmptyString, wxEmptyString, extension,
                          filter + "|*." + extension, flags, parent);
}

std::string EditorPrompts::fileNameOr(const std::string& given, wxWindow* parent,
                                      const wxString& filter, const wxString& extension,
                                      bool save) {
    if (!given.empty())
        return given;
    return fileName(parent, filter, extension, save).utf8_string();
}

wxString EditorPrompts::folderName(wxWindow* parent, const wxString& message) {
    return wxDirSelector(message, wxEmptyString, wxDD_DEFAULT_STYLE, wxDefaultPosition, parent);
}

std::optional<wxColour> EditorPrompts::colour(wxWindow* parent, const wxColour& initial) {
    const wxColour chosen = wxGetColourFromUser(parent, initial);
    if (!chosen.IsOk())
        return std::nullopt;
    return chosen;
}

int EditorPrompts::showModal(wxDialog& dialog) {
    return dialog.ShowModal();
}

void EditorPrompts::popupMenu(wxWindow& window, wxMenu& menu, const wxPoint& at) {
    window.PopupMenu(&menu, at);
}

}  // namespace vellum
