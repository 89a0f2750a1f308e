// CpuPropertiesDialog (IDD_CPU): the options of the interpreter's runs, edited together: the
// snooze in milliseconds, single-step mode (the step dialog at every notification), highlighting
// of each match, intermediate states and the source display. The caller takes the options over
// only when the dialog was confirmed.
#pragma once

#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/spinctrl.h>

#include "gui/InterpreterListener.h"

namespace vellum {

class CpuPropertiesDialog : public wxDialog {
  public:
    // The longest pause the dialog offers, in milliseconds.
    static constexpr int maxSnooze = 60000;

    CpuPropertiesDialog(wxWindow* parent, const InterpreterOptions& options);

    InterpreterOptions options() const;
    // The controls, for tests that fill the dialog as a user would.
    wxSpinCtrl& snoozeControl() { return *m_snooze; }
    wxCheckBox& messageBoxControl() { return *m_messageBox; }
    wxCheckBox& morphismControl() { return *m_morphism; }
    wxCheckBox& intermediateControl() { return *m_intermediate; }
    wxCheckBox& debugControl() { return *m_debug; }

  private:
    wxSpinCtrl* m_snooze;
    wxCheckBox* m_messageBox;
    wxCheckBox* m_morphism;
    wxCheckBox* m_intermediate;
    wxCheckBox* m_debug;
};

}  // namespace vellum
