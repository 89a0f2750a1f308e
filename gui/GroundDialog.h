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
    wxSpinCtrlDouble* m_size;
    wxSpinCtrl* m_cells;
    wxSpinCtrlDouble* m_level;
    wxColourPickerCtrl* m_colour;
};

}  // namespace vellum
