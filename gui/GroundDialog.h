// GroundDialog: the ground's size, cells, height and colour, for "Ground...".
#pragma once

#include <wx/clrpicker.h>
#include <wx/dialog.h>
#include <wx/spinctrl.h>

#include "gui/CanvasHelpers.h"

namespace vellum {

class GroundDialog : public wxDialog {
  public:
    GroundDialog(wxWindow* parent, const TPXgroundSettings& settings);

    TPXgroundSettings settings() const;
    void setSettings(const TPXgroundSettings& settings);

  private:
    // What the dialog opened with: a colour left alone keeps its exact value, which the
    // picker's bytes would round.
    TPXgroundSettings m_initial;
    wxSpinCtrlDouble* m_size;
    wxSpinCtrl* m_cells;
    wxSpinCtrlDouble* m_level;
    wxColourPickerCtrl* m_colour;
};

}  // namespace vellum
