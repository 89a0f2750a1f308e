// The settings dialog of a bundled layout: one field per setting of its schema (a choice for a
// word, a text field for a number, with what it takes beside it), OK and Cancel. OK refuses a
// value the schema refuses, says why in red inside the dialog and puts the focus on that field.
// Each field is named after its setting and the reason line "reason", so tests can find them.
// Built only with the GUI; it lives in a plug-in that may be unloaded afterwards, so it binds its
// handlers to lambdas and registers nothing with wxWidgets that outlives the dialog.
#pragma once

#include <wx/dialog.h>
#include <wx/stattext.h>

#include <optional>
#include <string>
#include <vector>

#include "plugins/layoutsettings/SettingsSchema.h"

namespace vellum::layoutsettings {

class SettingsDialog : public wxDialog {
  public:
    // `note`, when not empty, is shown where a refusal would be (e.g. why the defaults are shown).
    SettingsDialog(wxWindow* parent, const std::string& title, const SettingsSchema& schema,
                   const SettingValues& values, const std::string& note);

    // True on the GUI thread of a running wxWidgets program, the only place to show a dialog.
    static bool canShow();
    // Shows the dialog over the active window; the values chosen on OK, none on Cancel.
    static std::optional<SettingValues> edit(const std::string& title, const SettingsSchema& schema,
                                             const SettingValues& values, const std::string& note);

    // The fields' values, each in its canonical spelling; all accepted once OK was taken.
    SettingValues values() const;

  private:
    std::string fieldText(std::size_t index) const;
    // False, with the reason shown and the field focused, when a field holds a refused value.
    bool acceptable();

    const SettingsSchema& schema_;
    std::vector<wxWindow*> fields_;  // in the schema's order: a wxChoice or a wxTextCtrl each
    wxStaticText* reason_;
};

}  // namespace vellum::layoutsettings
