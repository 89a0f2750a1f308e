#include "gui/CpuPropertiesDialog.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

namespace vellum {

CpuPropertiesDialog::CpuPropertiesDialog(wxWindow* parent, const InterpreterOptions& options)
    : wxDialog(parent, wxID_ANY, "CPU properties") {
    const bool stepMode = options.snooze < 0;
    m_snooze =
        new wxSpinCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                       wxSP_ARROW_KEYS, 0, maxSnooze, std::clamp(options.snooze, 0, maxSnooze));
    m_messageBox = new wxCheckBox(this, wxID_ANY, "Single step: ask before each &step");
    m_morphism = new wxCheckBox(this, wxID_ANY, "Highlight each &match");
    m_intermediate = new wxCheckBox(this, wxID_ANY, "Show &intermediate states");
    m_debug = new wxCheckBox(this, wxID_ANY, "Show the &source of the running statement");
    m_messageBox->SetValue(stepMode);
    m_morphism->SetValue(options.morphism);
    m_intermediate->SetValue(options.intermediate);
    m_debug->SetValue(options.debug);
    m_snooze->Enable(!stepMode);
    // In single-step mode the user sets the pace: the snooze has no say.
    m_messageBox->Bind(wxEVT_CHECKBOX,
                       [this](wxCommandEvent& event) { m_snooze->Enable(!event.IsChecked()); });

    auto* snooze = new wxBoxSizer(wxHORIZONTAL);
    snooze->Add(new wxStaticText(this, wxID_ANY, "S&nooze after each step (ms, 0 for none):"), 0,
                wxALIGN_CENTER_VERTICAL | wxRIGHT, 8);
    snooze->Add(m_snooze, 0);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(snooze, 0, wxALL, 10);
    for (wxCheckBox* box : {m_messageBox, m_morphism, m_intermediate, m_debug})
        top->Add(box, 0, wxLEFT | wxRIGHT | wxBOTTOM, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
}

InterpreterOptions CpuPropertiesDialog::options() const {
    InterpreterOptions options;
    options.snooze =
        m_messageBox->GetValue() ? InterpreterOptions::kStepMode : m_snooze->GetValue();
    options.morphism = m_morphism->GetValue();
    options.intermediate = m_intermediate->GetValue();
    options.debug = m_debug->GetValue();
    return options;
}

}  // namespace vellum
