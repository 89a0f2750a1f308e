#include "gui/AttributesDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "gui/AttributeText.h"

namespace vellum {
namespace {

constexpr AttributeType kTypes[] = {AttributeType::Boolean, AttributeType::Integer,
                                    AttributeType::Real, AttributeType::String,
                                    AttributeType::Vector};

}  // namespace

AttributesDialog::AttributesDialog(wxWindow* parent, GraphDocument& document, GraphObject& element,
                                   EditorPrompts& prompts, std::function<void()> changed)
    : wxDialog(parent, wxID_ANY, "Vertex/Edge attributes", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      m_document(document),
      m_element(element),
      m_prompts(prompts),
      m_changed(std::move(changed)) {
    m_label = new wxTextCtrl(this, wxID_ANY, wxString::FromUTF8(element.label()));
    auto* setLabelButton = new wxButton(this, wxID_ANY, "Set label");
    m_list = new wxListCtrl(this, wxID_ANY, wxDefaultPosition, wxSize(420, 180),
                            wxLC_REPORT | wxLC_SINGLE_SEL);
    m_list->AppendColumn("Name", wxLIST_FORMAT_LEFT, 120);
    m_list->AppendColumn("Type", wxLIST_FORMAT_LEFT, 80);
    m_list->AppendColumn("Value", wxLIST_FORMAT_LEFT, 200);
    m_name = new wxTextCtrl(this, wxID_ANY);
    wxArrayString types;
    for (AttributeType type : kTypes)
        types.Add(attributeKeyword(type));
    m_type = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, types);
    m_type->SetSelection(static_cast<int>(AttributeType::String));
    m_value = new wxTextCtrl(this, wxID_ANY);
    auto* put = new wxButton(this, wxID_ANY, "Add/Change");
    auto* remove = new wxButton(this, wxID_ANY, "Remove");

    auto* labelRow = new wxBoxSizer(wxHORIZONTAL);
    labelRow->Add(new wxStaticText(this, wxID_ANY, "Label"), 0, wxALIGN_CENTER_VERTICAL | wxRIGHT,
                  8);
    labelRow->Add(m_label, 1, wxRIGHT, 4);
    labelRow->Add(setLabelButton);
    auto* editRow = new wxBoxSizer(wxHORIZONTAL);
    editRow->Add(m_name, 1, wxRIGHT, 4);
    editRow->Add(m_type, 0, wxRIGHT, 4);
    editRow->Add(m_value, 2, wxRIGHT, 4);
    editRow->Add(put, 0, wxRIGHT, 4);
    editRow->Add(remove);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(labelRow, 0, wxEXPAND | wxALL, 10);
    top->Add(m_list, 1, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(editRow, 0, wxEXPAND | wxALL, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);

    setLabelButton->Bind(wxEVT_BUTTON,
                         [this](wxCommandEvent&) { setLabel(m_label->GetValue().utf8_string()); });
    put->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        putAttribute(m_name->GetValue().utf8_string(), kTypes[m_type->GetSelection()],
                     m_value->GetValue().utf8_string());
    });
    remove->Bind(wxEVT_BUTTON,
                 [this](wxCommandEvent&) { removeAttribute(m_name->GetValue().utf8_string()); });
    m_list->Bind(wxEVT_LIST_ITEM_SELECTED, &AttributesDialog::onRowSelected, this);
    fillList();
}

bool AttributesDialog::setLabel(const std::string& label) {
    return done(m_document.setLabel(m_element, label));
}

bool AttributesDialog::putAttribute(const std::string& name, AttributeType type,
                                    const std::string& value) {
    std::string why;
    std::unique_ptr<Attribute> attribute = attributeFromText(name, type, value, why);
    if (!attribute)
        return done(EditResult::failure("Alert", why));
    return done(m_document.setAttribute(m_element, std::move(attribute)));
}

bool AttributesDialog::removeAttribute(const std::string& name) {
    return done(m_document.removeAttribute(m_element, name));
}

std::string AttributesDialog::cell(int row, int column) const {
    return m_list->GetItemText(row, column).utf8_string();
}

bool AttributesDialog::done(const EditResult& result) {
    if (!result) {
        m_prompts.message(this, wxString::FromUTF8(result.message), result.title,
                          wxOK | wxICON_ERROR);
        return false;
    }
    m_label->SetValue(wxString::FromUTF8(m_element.label()));
    fillList();
    if (m_changed)
        m_changed();
    return true;
}

void AttributesDialog::fillList() {
    m_list->DeleteAllItems();
    long row = 0;
    for (const Attribute& attribute : m_element.attributes()) {
        m_list->InsertItem(row, wxString::FromUTF8(attribute.name()));
        m_list->SetItem(row, 1, attributeKeyword(attribute.type()));
        m_list->SetItem(row, 2, wxString::FromUTF8(attributeText(attribute)));
        ++row;
    }
}

void AttributesDialog::onRowSelected(wxListEvent& event) {
    const long row = event.GetIndex();
    m_name->SetValue(m_list->GetItemText(row, 0));
    m_type->SetStringSelection(m_list->GetItemText(row, 1));
    m_value->SetValue(m_list->GetItemText(row, 2));
}

}  // namespace vellum
