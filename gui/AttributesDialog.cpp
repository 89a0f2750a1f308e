#include "gui/AttributesDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>

#include "gui/AttributeText.h"

namespace vellum {

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
    m_table = std::make_unique<AttributeTable>(
        this, wxSize(420, 180), 200,
        [this](const std::string& name, AttributeType type, const std::string& value) {
            putAttribute(name, type, value);
        },
        [this](const std::string& name) { removeAttribute(name); });

    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(captionedRow(this, "Label", m_label, setLabelButton), 0, wxEXPAND | wxALL, 10);
    m_table->addTo(*top);
    top->Add(CreateStdDialogButtonSizer(wxOK), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);

    setLabelButton->Bind(wxEVT_BUTTON,
                         [this](wxCommandEvent&) { setLabel(m_label->GetValue().utf8_string()); });
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
    m_table->clear();
    for (const Attribute& attribute : m_element.attributes())
        m_table->addRow(attribute.name(), attribute.type(), attributeText(attribute));
}

}  // namespace vellum
