#include "gui/AttributeTable.h"

#include <wx/button.h>
#include <wx/stattext.h>

namespace vellum {
namespace {

// In the order of the type choice.
constexpr AttributeType kTypes[] = {AttributeType::Boolean, AttributeType::Integer,
                                    AttributeType::Real, AttributeType::String,
                                    AttributeType::Vector};

}  // namespace

wxBoxSizer* captionedRow(wxWindow* parent, const char* caption, wxWindow* field, wxWindow* button) {
    auto* sizer = new wxBoxSizer(wxHORIZONTAL);
    sizer->Add(new wxStaticText(parent, wxID_ANY, caption), 0, wxALIGN_CENTER_VERTICAL | wxRIGHT,
               8);
    sizer->Add(field, 1, wxRIGHT, 4);
    if (button)
        sizer->Add(button);
    return sizer;
}

AttributeTable::AttributeTable(wxWindow* parent, const wxSize& listSize, int valueWidth, Put put,
                               Remove remove, wxWindow* extra) {
    m_list = new wxListCtrl(parent, wxID_ANY, wxDefaultPosition, listSize,
                            wxLC_REPORT | wxLC_SINGLE_SEL);
    m_list->AppendColumn("Name", wxLIST_FORMAT_LEFT, 120);
    m_list->AppendColumn("Type", wxLIST_FORMAT_LEFT, 80);
    m_list->AppendColumn("Value", wxLIST_FORMAT_LEFT, valueWidth);
    m_name = new wxTextCtrl(parent, wxID_ANY);
    wxArrayString types;
    for (AttributeType type : kTypes)
        types.Add(attributeKeyword(type));
    m_type = new wxChoice(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, types);
    m_type->SetSelection(static_cast<int>(AttributeType::String));
    m_value = new wxTextCtrl(parent, wxID_ANY);
    auto* putButton = new wxButton(parent, wxID_ANY, "Add/Change");
    auto* removeButton = new wxButton(parent, wxID_ANY, "Remove");

    m_fields = new wxBoxSizer(wxHORIZONTAL);
    m_fields->Add(m_name, 1, wxRIGHT, 4);
    m_fields->Add(m_type, 0, wxRIGHT, 4);
    m_fields->Add(m_value, 2, wxRIGHT, 4);
    if (extra) {
        // Tabbing meets it where it stands.
        extra->MoveAfterInTabOrder(m_value);
        m_fields->Add(extra, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, 4);
    }
    m_fields->Add(putButton, 0, wxRIGHT, 4);
    m_fields->Add(removeButton);

    putButton->Bind(wxEVT_BUTTON, [this, put = std::move(put)](wxCommandEvent&) {
        put(m_name->GetValue().utf8_string(), kTypes[m_type->GetSelection()],
            m_value->GetValue().utf8_string());
    });
    removeButton->Bind(wxEVT_BUTTON, [this, remove = std::move(remove)](wxCommandEvent&) {
        remove(m_name->GetValue().utf8_string());
    });
    m_list->Bind(wxEVT_LIST_ITEM_SELECTED, [this](wxListEvent& event) {
        const long row = event.GetIndex();
        m_name->SetValue(m_list->GetItemText(row, 0));
        m_type->SetStringSelection(m_list->GetItemText(row, 1));
        m_value->SetValue(m_list->GetItemText(row, 2));
        if (m_picked)
            m_picked(m_list->GetItemText(row, 2));
    });
}

void AttributeTable::addTo(wxSizer& sizer) {
    sizer.Add(m_list, 1, wxEXPAND | wxLEFT | wxRIGHT, 10);
    sizer.Add(m_fields, 0, wxEXPAND | wxALL, 10);
}

void AttributeTable::addRow(const std::string& name, AttributeType type, const std::string& value) {
    const long row = m_list->GetItemCount();
    m_list->InsertItem(row, wxString::FromUTF8(name));
    m_list->SetItem(row, 1, attributeKeyword(type));
    m_list->SetItem(row, 2, wxString::FromUTF8(value));
}

std::string AttributeTable::cell(int row, int column) const {
    return m_list->GetItemText(row, column).utf8_string();
}

}  // namespace vellum
