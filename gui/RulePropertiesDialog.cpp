#include "gui/RulePropertiesDialog.h"

#include <wx/sizer.h>

namespace vellum {

RulePropertiesDialog::RulePropertiesDialog(wxWindow* parent, const RuleDocument& document)
    : wxDialog(parent, wxID_ANY, "Rule properties", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      m_document(document) {
    m_name = new wxTextCtrl(this, wxID_ANY, wxString::FromUTF8(document.name()));
    m_condition = new wxTextCtrl(this, wxID_ANY, wxString::FromUTF8(document.condition()),
                                 wxDefaultPosition, wxSize(420, -1));
    m_verdict = new wxStaticText(this, wxID_ANY, "");
    std::string names;
    for (const RuleVariable& variable : document.variables())
        names += (names.empty() ? "" : ", ") + variable.name;
    m_variables = new wxStaticText(
        this, wxID_ANY,
        wxString::FromUTF8("Variables: " + (names.empty() ? std::string("none") : names)));
    auto* grid = new wxFlexGridSizer(2, 8, 8);
    grid->AddGrowableCol(1);
    grid->Add(new wxStaticText(this, wxID_ANY, "Name"), 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(m_name, 1, wxEXPAND);
    grid->Add(new wxStaticText(this, wxID_ANY, "Application condition"), 0,
              wxALIGN_CENTER_VERTICAL);
    grid->Add(m_condition, 1, wxEXPAND);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(grid, 0, wxEXPAND | wxALL, 10);
    top->Add(m_verdict, 0, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(m_variables, 0, wxEXPAND | wxALL, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
    m_condition->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { check(); });
    check();
}

void RulePropertiesDialog::check() {
    const std::string text = condition();
    m_problem = text.empty() ? std::string() : m_document.expressionProblem(text);
    if (text.empty())
        m_verdict->SetLabel("No application condition.");
    else if (m_problem.empty())
        m_verdict->SetLabel("The condition compiles.");
    else
        m_verdict->SetLabel(wxString::FromUTF8("The condition " + m_problem));
}

}  // namespace vellum
