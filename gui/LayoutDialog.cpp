#include "gui/LayoutDialog.h"

#include <wx/sizer.h>

#include "koral/KoralException.h"

namespace vellum {

LayoutDialog::LayoutDialog(wxWindow* parent) : wxDialog(parent, wxID_ANY, "Layout graph") {
    wxArrayString names;
    for (const std::string& name : LayoutLibrary::available())
        names.Add(wxString::FromUTF8(name));
    m_names = new wxListBox(this, wxID_ANY, wxDefaultPosition, wxSize(260, 160), names);
    m_description = new wxStaticText(
        this, wxID_ANY, names.empty() ? "No layout libraries found." : "Choose a layout.");
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(m_names, 1, wxEXPAND | wxALL, 10);
    top->Add(m_description, 0, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
    m_names->Bind(wxEVT_LISTBOX,
                  [this](wxCommandEvent& event) { load(event.GetString().utf8_string()); });
    if (!names.empty())
        choose(names[0].utf8_string());
}

LayoutDialog::~LayoutDialog() = default;

bool LayoutDialog::choose(const std::string& name) {
    const int index = m_names->FindString(wxString::FromUTF8(name), true);
    if (index == wxNOT_FOUND)
        return false;
    m_names->SetSelection(index);
    load(name);
    return true;
}

void LayoutDialog::load(const std::string& name) {
    m_library.reset();
    try {
        m_library = std::make_unique<LayoutLibrary>(name);
        const std::string text = m_library->description();
        m_description->SetLabel(text.empty() ? wxString("(no description)")
                                             : wxString::FromUTF8(text));
    } catch (const koralException& error) {
        m_description->SetLabel(wxString::FromUTF8(error.what()));
    }
    m_description->Wrap(260);
    Layout();
}

}  // namespace vellum
