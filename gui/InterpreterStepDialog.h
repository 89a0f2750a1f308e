// InterpreterStepDialog (IDD_CPUDBG): asked at every notification while the interpreter runs in
// single-step mode. Its modal result is the button pressed: kStep for one more notification,
// kGo to leave step mode, kStop to abort the run.
#pragma once

#include <wx/dialog.h>

namespace vellum {

class InterpreterStepDialog : public wxDialog {
  public:
    enum Button { kStep = wxID_HIGHEST + 100, kGo, kStop };

    explicit InterpreterStepDialog(wxWindow* parent);
};

}  // namespace vellum
