#include "gui/UnitChooserDialog.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

#include <fstream>
#include <sstream>

#include "koral/KoralSourcePosition.h"
#include "koral/KoralUnit.h"

namespace vellum {
namespace {

std::string fileText(const std::string& fileName) {
    std::ifstream in(fileName, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The condition's text from the module file, or `missing` when the unit has none (or the file
// has changed since it was compiled).
std::string conditionText(const std::string& source, const koralSourcePosition* position,
                          const std::string& missing) {
    if (position == nullptr || position->begin < 0 || position->end <= position->begin ||
        static_cast<std::size_t>(position->end) > source.size())
        return missing;
    return source.substr(position->begin, position->end - position->begin);
}

}  // namespace

UnitChooserDialog::UnitChooserDialog(wxWindow* parent, const koralModule& module)
    : wxDialog(parent, wxID_ANY, "Transformation units"),
      m_module(module),
      m_source(fileText(module.file())) {
    wxArrayString names;
    for (const auto& unit : module.units())
        names.Add(wxString::FromUTF8(unit->name()));
    m_names = new wxListBox(this, wxID_ANY, wxDefaultPosition, wxSize(320, 160), names);
    m_conditions = new wxTextCtrl(this, wxID_ANY, {}, wxDefaultPosition, wxSize(320, 90),
                                  wxTE_MULTILINE | wxTE_READONLY);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(new wxStaticText(this, wxID_ANY, "Module " + wxString::FromUTF8(module.name())), 0,
             wxLEFT | wxRIGHT | wxTOP, 10);
    top->Add(m_names, 1, wxEXPAND | wxALL, 10);
    top->Add(m_conditions, 0, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
    m_names->Bind(wxEVT_LISTBOX, [this](wxCommandEvent& event) { show(event.GetSelection()); });
    if (!names.empty()) {
        m_names->SetSelection(0);
        show(0);
    }
}

bool UnitChooserDialog::choose(const std::string& name) {
    const int index = m_names->FindString(wxString::FromUTF8(name), true);
    if (index == wxNOT_FOUND)
        return false;
    m_names->SetSelection(index);
    show(index);
    return true;
}

const koralUnit* UnitChooserDialog::unit() const {
    const int index = m_names->GetSelection();
    if (index == wxNOT_FOUND || static_cast<std::size_t>(index) >= m_module.units().size())
        return nullptr;
    return m_module.units()[index].get();
}

void UnitChooserDialog::show(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= m_module.units().size())
        return;
    const koralUnit& unit = *m_module.units()[index];
    const std::string text = conditionText(m_source, unit.initialPosition(), "initial : (none)") +
                             "\n" +
                             conditionText(m_source, unit.terminalPosition(), "terminal : (none)");
    m_conditions->ChangeValue(wxString::FromUTF8(text));
}

}  // namespace vellum
