#include "gui/RuleElementDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>

#include "graph/AttributeExpression.h"
#include "graph/GlobMatch.h"
#include "graph/RuleObjectData.h"
#include "gui/AttributeText.h"

namespace vellum {
namespace {

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
    top->Add(captionedRow(this, "Label", m_label, setLabelButton), 0, wxEXPAND | wxALL, 10);
    top->Add(captionedRow(this, "Variable", m_variable, setVariableButton), 0,
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
        top->Add(captionedRow(this, "Stands for left-hand vertex (@)", m_reference, nullptr), 0,
                 wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 10);
        m_reference->Bind(wxEVT_CHOICE,
                          [this](wxCommandEvent&) { setReference(m_reference->GetSelection()); });
    }
    m_expression = new wxCheckBox(this, wxID_ANY, "Expression");
    m_table = std::make_unique<AttributeTable>(
        this, wxSize(460, 160), 240,
        [this](const std::string& name, AttributeType type, const std::string& value) {
            putAttribute(name, type, value, m_expression->GetValue());
        },
        [this](const std::string& name) { removeAttribute(name); }, m_expression);
    m_verdict = new wxStaticText(this, wxID_ANY, "");
    m_table->addTo(*top);
    top->Add(m_verdict, 0, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);

    setLabelButton->Bind(wxEVT_BUTTON,
                         [this](wxCommandEvent&) { setLabel(m_label->GetValue().utf8_string()); });
    setVariableButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        setVariable(m_variable->GetValue().utf8_string());
    });
    auto check = [this](wxCommandEvent&) {
        if (m_expression->GetValue())
            checkTyped(m_table->valueField().GetValue().utf8_string());
        else
            m_verdict->SetLabel("");
    };
    m_table->valueField().Bind(wxEVT_TEXT, check);
    m_expression->Bind(wxEVT_CHECKBOX, check);
    // A value shown in square brackets is an expression: the field takes it without them.
    m_table->onPicked([this](const wxString& value) {
        const bool expression = value.StartsWith("[") && value.EndsWith("]");
        m_expression->SetValue(expression);
        m_table->valueField().SetValue(expression ? value.Mid(1, value.length() - 2) : value);
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
    m_table->clear();
    for (const Attribute& attribute : m_element.attributes()) {
        // The editor's own shapes and places are not the rule's: the file does not get them.
        if (isInternalName(attribute.name()) || RuleDocument::isEditorLook(m_element, attribute))
            continue;
        m_table->addRow(attribute.name(), attribute.type(), shownValue(attribute));
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
