// RuleTrialDialog: the rule tried on a graph: every occurrence of the left-hand side, one line
// each as `vellum-cli match` lists them (positions of the images in the graph's vertex and edge
// lists), and the mode in which OK applies the rule to a copy of the graph.
#pragma once

#include <wx/dialog.h>
#include <wx/listbox.h>
#include <wx/radiobox.h>

#include <string>
#include <vector>

namespace vellum {

class RuleTrialDialog : public wxDialog {
  public:
    RuleTrialDialog(wxWindow* parent, const std::string& graphName,
                    const std::vector<std::string>& occurrences);

    int mode() const { return m_mode->GetSelection(); }
    void setMode(int mode) { m_mode->SetSelection(mode); }
    // The lines shown, the count line last.
    std::vector<std::string> lines() const;

  private:
    wxListBox* m_list;
    wxRadioBox* m_mode;
};

}  // namespace vellum
