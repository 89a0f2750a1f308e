// RuleElementDialog: one vertex or edge of a rule, for the rule editor's "Vertex/Edge
// attributes..." and "Edit attributes": its label (a "*" on the left-hand side matches any), the
// variable it declares, a left-hand vertex's forced-reference mark, the left-hand vertex a
// right-hand vertex stands for, and its attributes, each a value or an expression (in square
// brackets in the file). An expression is checked as it is typed, with the reason shown when it
// would not compile. Each change goes to the document at once as one undo step; a refused
// change is shown in a box with its reason.
#pragma once

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gui/AttributeTable.h"
#include "gui/EditorPrompts.h"
#include "gui/edit/RuleDocument.h"

namespace vellum {

class RuleElementDialog : public wxDialog {
  public:
    // `changed` is called after every change that was made.
    RuleElementDialog(wxWindow* parent, RuleDocument& document, RuleSide side, GraphObject& element,
                      EditorPrompts& prompts, std::function<void()> changed);

    // What the controls do, with what the user typed or chose; true when the document took it.
    bool setLabel(const std::string& label);
    bool setVariable(const std::string& name);
    bool setForcedReference(bool forced);
    // Index 0 is "none", then the left-hand vertices in order.
    bool setReference(int choice);
    bool putAttribute(const std::string& name, AttributeType type, const std::string& value,
                      bool expression);
    bool removeAttribute(const std::string& name);
    // Checks the expression field as typing does and shows the verdict; returns it (empty
    // when the expression would compile).
    std::string checkTyped(const std::string& text);

    int rowCount() const { return m_table->rowCount(); }
    std::string cell(int row, int column) const { return m_table->cell(row, column); }
    std::string verdict() const { return m_verdict->GetLabel().utf8_string(); }

  private:
    void buildControls();
    void fillList();
    void fillReferences();
    bool done(const EditResult& result);

    RuleDocument& m_document;
    RuleSide m_side;
    GraphObject& m_element;
    EditorPrompts& m_prompts;
    std::function<void()> m_changed;
    std::vector<DirectedGraphVertex*>
        m_leftVertices;  // the reference choice's entries after "none"
    wxTextCtrl* m_label = nullptr;
    wxTextCtrl* m_variable = nullptr;
    wxCheckBox* m_forced = nullptr;
    wxChoice* m_reference = nullptr;
    wxCheckBox* m_expression = nullptr;
    std::unique_ptr<AttributeTable> m_table;
    wxStaticText* m_verdict = nullptr;
};

}  // namespace vellum
