#include "gui/InterpreterStepDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace vellum {

InterpreterStepDialog::InterpreterStepDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, "Koral CPU") {
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    for (const auto& [id, label] :
         {std::pair<int, const char*>{kStep, "&Step"}, {kGo, "&Go"}, {kStop, "S&top"}}) {
        auto* button = new wxButton(this, id, label);
        button->Bind(wxEVT_BUTTON, [this, id = id](wxCommandEvent&) { EndModal(id); });
        buttons->Add(button, 0, wxALL, 5);
    }
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(new wxStaticText(this, wxID_ANY, "The Koral CPU waits for the next step."), 0, wxALL,
             10);
    top->Add(buttons, 0, wxALIGN_CENTER | wxBOTTOM, 5);
    SetSizerAndFit(top);
    // Closing the box goes on as Go does rather than leaving the run waiting.
    SetEscapeId(kGo);
}

}  // namespace vellum
