#include "gui/RuleTrialDialog.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

namespace vellum {

RuleTrialDialog::RuleTrialDialog(wxWindow* parent, const std::string& graphName,
                                 const std::vector<std::string>& occurrences)
    : wxDialog(parent, wxID_ANY, "Try on graph", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    m_list = new wxListBox(this, wxID_ANY, wxDefaultPosition, wxSize(360, 200));
    for (const std::string& line : occurrences)
        m_list->Append(wxString::FromUTF8(line));
    m_list->Append(std::to_string(occurrences.size()) + " occurrences");
    const wxString modes[] = {"0: the first occurrence that passes",
                              "1: the one the rule's match finds",
                              "2: every disjoint occurrence that passes"};
    m_mode = new wxRadioBox(this, wxID_ANY, "Apply to a copy of the graph in mode",
                            wxDefaultPosition, wxDefaultSize, 3, modes, 1, wxRA_SPECIFY_COLS);
    m_mode->SetSelection(1);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(new wxStaticText(this, wxID_ANY,
                              wxString::FromUTF8("Occurrences in '" + graphName +
                                                 "' (vertex positions | edge positions):")),
             0, wxALL, 10);
    top->Add(m_list, 1, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(m_mode, 0, wxEXPAND | wxALL, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
}

std::vector<std::string> RuleTrialDialog::lines() const {
    std::vector<std::string> shown;
    for (unsigned i = 0; i < m_list->GetCount(); ++i)
        shown.push_back(m_list->GetString(i).utf8_string());
    return shown;
}

}  // namespace vellum
