// RulePropertiesDialog: the rule's name (an identifier) and its application condition (an
// expression over the rule's variables, checked as it is typed, with the reason shown when it
// would not compile), and the variables the left-hand side declares. The editor takes the
// name and the condition when the dialog ends with OK.
#pragma once

#include <wx/dialog.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <string>

#include "gui/edit/RuleDocument.h"

namespace vellum {

class RulePropertiesDialog : public wxDialog {
  public:
    RulePropertiesDialog(wxWindow* parent, const RuleDocument& document);

    std::string name() const { return m_name->GetValue().utf8_string(); }
    std::string condition() const { return m_condition->GetValue().utf8_string(); }
    void setName(const std::string& name) { m_name->ChangeValue(wxString::FromUTF8(name)); }
    // Types the condition, which is checked as typing does.
    void setCondition(const std::string& text) { m_condition->SetValue(wxString::FromUTF8(text)); }
    // The verdict on the condition as typed: empty when it would compile (or is empty).
    const std::string& problem() const { return m_problem; }
    std::string verdict() const { return m_verdict->GetLabel().utf8_string(); }
    std::string variablesText() const { return m_variables->GetLabel().utf8_string(); }

  private:
    void check();

    const RuleDocument& m_document;
    wxTextCtrl* m_name;
    wxTextCtrl* m_condition;
    wxStaticText* m_verdict;
    wxStaticText* m_variables;
    std::string m_problem;
};

}  // namespace vellum
