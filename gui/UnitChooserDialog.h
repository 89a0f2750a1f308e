// UnitChooserDialog (IDD_TUNITS): the transformation units of a module, in text order, with the
// initial and terminal conditions of the one chosen as its module file writes them, so the user
// sees what a unit expects of the graph before starting it.
#pragma once

#include <wx/dialog.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include <string>

#include "koral/KoralModule.h"

namespace vellum {

class UnitChooserDialog : public wxDialog {
  public:
    // The module must outlive the dialog. The first unit is chosen.
    UnitChooserDialog(wxWindow* parent, const koralModule& module);

    // Chooses the unit `name`; false when the module has none of that name.
    bool choose(const std::string& name);
    // The chosen unit; null when the module has none.
    const koralUnit* unit() const;
    // The conditions shown for the chosen unit.
    wxString conditions() const { return m_conditions->GetValue(); }

  private:
    void show(int index);

    const koralModule& m_module;
    std::string m_source;  // the module file's text, for the conditions
    wxListBox* m_names;
    wxTextCtrl* m_conditions;
};

}  // namespace vellum
