#include "gui/GroundDialog.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

#include "gui/WxColour.h"

namespace vellum {

GroundDialog::GroundDialog(wxWindow* parent, const TPXgroundSettings& settings)
    : wxDialog(parent, wxID_ANY, "Ground") {
    m_size = new wxSpinCtrlDouble(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize,
                                  wxSP_ARROW_KEYS, 0.001, 10000, settings.size, 1);
    m_size->SetDigits(3);
    m_cells = new wxSpinCtrl(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS,
                             1, 1000, settings.cells);
    m_level = new wxSpinCtrlDouble(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize,
                                   wxSP_ARROW_KEYS, -10000, 10000, settings.level, 0.1);
    m_level->SetDigits(3);
    m_colour = new wxColourPickerCtrl(this, wxID_ANY);

    auto* grid = new wxFlexGridSizer(2, wxSize(8, 8));
    auto row = [&](const char* label, wxWindow* control) {
        grid->Add(new wxStaticText(this, wxID_ANY, label), 0, wxALIGN_CENTER_VERTICAL);
        grid->Add(control, 1, wxEXPAND);
    };
    row("Size", m_size);
    row("Cells per side", m_cells);
    row("Height", m_level);
    row("Colour", m_colour);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(grid, 1, wxEXPAND | wxALL, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
    setSettings(settings);
}

TPXgroundSettings GroundDialog::settings() const {
    TPXgroundSettings settings;
    settings.size = m_size->GetValue();
    settings.cells = m_cells->GetValue();
    settings.level = m_level->GetValue();
    const wxColour chosen = m_colour->GetColour();
    settings.colour = chosen == toWxColour(m_initial.colour) ? m_initial.colour : toRgb(chosen);
    return settings;
}

void GroundDialog::setSettings(const TPXgroundSettings& settings) {
    m_initial = settings;
    m_size->SetValue(settings.size);
    m_cells->SetValue(settings.cells);
    m_level->SetValue(settings.level);
    m_colour->SetColour(toWxColour(settings.colour));
}

}  // namespace vellum
