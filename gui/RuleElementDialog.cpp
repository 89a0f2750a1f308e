#include "gui/RuleElementDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>

#include "graph/AttributeExpression.h"
#include "graph/GlobMatch.h"
#include "graph/RuleObjectData.h"
#include "gui/AttributeText.h"

namespace vellum {
namespace {

constexpr AttributeType kTypes[] = {AttributeType::Boolean, AttributeType::Integer,
                                    AttributeType::Real, AttributeType::String,
                                    AttributeType::Vector};

// The value an attribute holds until its expression is evaluated.
const char* defaultText(AttributeType type) {
    switch (type) {
        case AttributeType::Boolean:
            return "false";
        case AttributeType::Integer:
            return "0";
        case AttributeType::Real:
            return "0.0";
        default:
            return "";
    }
}

std::string shownValue(const Attribute& attribute) {
    if (const std::string* expression = expressionOf(attribute))
        return "[" + *expression + "]";
    return attributeText(attribute);
}

wxBoxSizer* row(wxWindow* parent, const char* caption, wxWindow* field, wxWindow* button) {
    auto* sizer = new wxBoxSizer(wxHORIZONTAL);
    sizer->Add(new wxStaticText(parent, wxID_ANY, caption), 0, wxALIGN_CENTER_VERTICAL | wxRIGHT,
               8);
    sizer->Add(field, 1, wxRIGHT, 4);
    if (button)
        sizer->Add(button);
    return sizer;
}

}  // namespace

RuleElementDialog::RuleElementDialog(wxWindow* parent, RuleDocument& document, RuleSide side,
                                     GraphObject& element, EditorPrompts& prompts,
                                     std::function<void()> changed)
    : wxDialog(parent, wxID_ANY, "Vertex/Edge attributes", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      m_document(document),
      m_side(side),
      m_element(element),
      m_prompts(prompts),
      m_changed(std::move(changed)) {
    buildControls();
    fillList();
    fillReferences();
}

void RuleElementDialog::buildControls() {
    const bool vertex = m_element.kind() == GraphObjectKind::Vertex;
    m_label = new wxTextCtrl(this, wxID_ANY, wxString::FromUTF8(m_element.label()));
    auto* setLabelButton = new wxButton(this, wxID_ANY, "Set label");
    m_variable = new wxTextCtrl(this, wxID_ANY, wxString::FromUTF8(variableOf(m_element)));
    auto* setVariableButton = new wxButton(this, wxID_ANY, "Set variable");
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(row(this, "Label", m_label, setLabelButton), 0, wxEXPAND | wxALL, 10);
    top->Add(row(this, "Variable", m_variable, setVariableButton), 0,
             wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 10);
    if (vertex && m_side == RuleSide::Left) {
        m_forced = new wxCheckBox(this, wxID_ANY, "Forced reference (@)");
        m_forced->SetValue(isForcedReference(m_element));
        top->Add(m_forced, 0, wxLEFT | wxRIGHT | wxBOTTOM, 10);
        m_forced->Bind(wxEVT_CHECKBOX,
                       [this](wxCommandEvent&) { setForcedReference(m_forced->GetValue()); });
    }
    if (vertex && m_side == RuleSide::Right) {
        m_reference = new wxChoice(this, wxID_ANY);
        top->Add(row(this, "Stands for left-hand vertex (@)", m_reference, nullptr), 0,
                 wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 10);
        m_reference->Bind(wxEVT_CHOICE,
                          [this](wxCommandEvent&) { setReference(m_reference->GetSelection()); });
    }
    m_list = new wxListCtrl(this, wxID_ANY, wxDefaultPosition, wxSize(460, 160),
                            wxLC_REPORT | wxLC_SINGLE_SEL);
    m_list->AppendColumn("Name", wxLIST_FORMAT_LEFT, 120);
    m_list->AppendColumn("Type", wxLIST_FORMAT_LEFT, 80);
    m_list->AppendColumn("Value", wxLIST_FORMAT_LEFT, 240);
    m_name = new wxTextCtrl(this, wxID_ANY);
    wxArrayString types;
    for (AttributeType type : kTypes)
        types.Add(attributeKeyword(type));
    m_type = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, types);
    m_type->SetSelection(static_cast<int>(AttributeType::String));
    m_value = new wxTextCtrl(this, wxID_ANY);
    m_expression = new wxCheckBox(this, wxID_ANY, "Expression");
    auto* put = new wxButton(this, wxID_ANY, "Add/Change");
    auto* remove = new wxButton(this, wxID_ANY, "Remove");
    m_verdict = new wxStaticText(this, wxID_ANY, "");
    auto* editRow = new wxBoxSizer(wxHORIZONTAL);
    editRow->Add(m_name, 1, wxRIGHT, 4);
    editRow->Add(m_type, 0, wxRIGHT, 4);
    editRow->Add(m_value, 2, wxRIGHT, 4);
    editRow->Add(m_expression, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, 4);
    editRow->Add(put, 0, wxRIGHT, 4);
    editRow->Add(remove);
    top->Add(m_list, 1, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(editRow, 0, wxEXPAND | wxALL, 10);
    top->Add(m_verdict, 0, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);

    setLabelButton->Bind(wxEVT_BUTTON,
                         [this](wxCommandEvent&) { setLabel(m_label->GetValue().utf8_string()); });
    setVariableButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        setVariable(m_variable->GetValue().utf8_string());
    });
    put->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        putAttribute(m_name->GetValue().utf8_string(), kTypes[m_type->GetSelection()],
                     m_value->GetValue().utf8_string(), m_expression->GetValue());
    });
    remove->Bind(wxEVT_BUTTON,
                 [this](wxCommandEvent&) { removeAttribute(m_name->GetValue().utf8_string()); });
    auto check = [this](wxCommandEvent&) {
        if (m_expression->GetValue())
            checkTyped(m_value->GetValue().utf8_string());
        else
            m_verdict->SetLabel("");
    };
    m_value->Bind(wxEVT_TEXT, check);
    m_expression->Bind(wxEVT_CHECKBOX, check);
    m_list->Bind(wxEVT_LIST_ITEM_SELECTED, [this](wxListEvent& event) {
        const long index = event.GetIndex();
        m_name->SetValue(m_list->GetItemText(index, 0));
        m_type->SetStringSelection(m_list->GetItemText(index, 1));
        wxString value = m_list->GetItemText(index, 2);
        const bool expression = value.StartsWith("[") && value.EndsWith("]");
        m_expression->SetValue(expression);
        m_value->SetValue(expression ? value.Mid(1, value.length() - 2) : value);
    });
}

std::string RuleElementDialog::checkTyped(const std::string& text) {
    const std::string reason = m_document.expressionProblem(text);
    m_verdict->SetLabel(reason.empty() ? wxString("The expression compiles.")
                                       : wxString::FromUTF8("The expression " + reason));
    return reason;
}

bool RuleElementDialog::setLabel(const std::string& label) {
    return done(m_document.setLabel(m_side, m_element, label));
}

bool RuleElementDialog::setVariable(const std::string& name) {
    return done(m_document.setVariable(m_side, m_element, name));
}

bool RuleElementDialog::setForcedReference(bool forced) {
    if (m_element.kind() != GraphObjectKind::Vertex)
        return false;
    return done(m_document.setForcedReference(m_side, static_cast<DirectedGraphVertex&>(m_element),
                                              forced));
}

bool RuleElementDialog::setReference(int choice) {
    if (m_side != RuleSide::Right || m_element.kind() != GraphObjectKind::Vertex || choice < 0 ||
        choice > static_cast<int>(m_leftVertices.size()))
        return false;
    DirectedGraphVertex* left = choice == 0 ? nullptr : m_leftVertices[choice - 1];
    return done(m_document.setReference(static_cast<DirectedGraphVertex&>(m_element), left));
}

bool RuleElementDialog::putAttribute(const std::string& name, AttributeType type,
                                     const std::string& value, bool expression) {
    std::string why;
    std::unique_ptr<Attribute> attribute =
        attributeFromText(name, type, expression ? defaultText(type) : value, why);
    if (!attribute)
        return done(EditResult::failure("Alert", why));
    if (expression)
        return done(m_document.setAttribute(m_side, m_element, std::move(attribute), value));
    return done(m_document.setAttribute(m_side, m_element, std::move(attribute)));
}

bool RuleElementDialog::removeAttribute(const std::string& name) {
    return done(m_document.removeAttribute(m_side, m_element, name));
}

std::string RuleElementDialog::cell(int index, int column) const {
    return m_list->GetItemText(index, column).utf8_string();
}

bool RuleElementDialog::done(const EditResult& result) {
    if (!result) {
        m_prompts.message(this, wxString::FromUTF8(result.message), result.title,
                          wxOK | wxICON_ERROR);
        return false;
    }
    m_label->SetValue(wxString::FromUTF8(m_element.label()));
    m_variable->SetValue(wxString::FromUTF8(variableOf(m_element)));
    fillList();
    if (m_changed)
        m_changed();
    return true;
}

void RuleElementDialog::fillList() {
    m_list->DeleteAllItems();
    long index = 0;
    for (const Attribute& attribute : m_element.attributes()) {
        // The editor's own shapes and places are not the rule's: the file does not get them.
        if (isInternalName(attribute.name()) || RuleDocument::isEditorLook(m_element, attribute))
            continue;
        m_list->InsertItem(index, wxString::FromUTF8(attribute.name()));
        m_list->SetItem(index, 1, attributeKeyword(attribute.type()));
        m_list->SetItem(index, 2, wxString::FromUTF8(shownValue(attribute)));
        ++index;
    }
}

void RuleElementDialog::fillReferences() {
    if (!m_reference)
        return;
    m_leftVertices.clear();
    m_reference->Append("none");
    int chosen = 0;
    int position = 0;
    for (DirectedGraphVertex& left : m_document.side(RuleSide::Left).graph().vertices()) {
        ++position;
        m_leftVertices.push_back(&left);
        const int number = m_document.numberOf(left);
        std::string text = "vertex " + std::to_string(position);
        if (number > 0)
            text += " (" + std::to_string(number) + ")";
        if (!left.label().empty())
            text += " " + left.label();
        m_reference->Append(wxString::FromUTF8(text));
        if (referenceOf(m_element) == &left)
            chosen = position;
    }
    m_reference->SetSelection(chosen);
}

}  // namespace vellum
