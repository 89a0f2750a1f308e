// AttributesDialog: the label and attributes of one vertex or edge, for "Vertex/Edge
// attributes..." and "Edit attributes". Each change goes to the document at once as one undo
// step; a change the document refuses is shown in a box with its reason and changes nothing.
#pragma once

#include <wx/dialog.h>
#include <wx/textctrl.h>

#include <functional>
#include <memory>
#include <string>

#include "gui/AttributeTable.h"
#include "gui/EditorPrompts.h"
#include "gui/edit/GraphDocument.h"

namespace vellum {

class AttributesDialog : public wxDialog {
  public:
    // `changed` is called after every change that was made.
    AttributesDialog(wxWindow* parent, GraphDocument& document, GraphObject& element,
                     EditorPrompts& prompts, std::function<void()> changed);

    // What the buttons do, with the text the user typed; true when the document took it.
    bool setLabel(const std::string& label);
    bool putAttribute(const std::string& name, AttributeType type, const std::string& value);
    bool removeAttribute(const std::string& name);

    // The rows shown: name, type keyword and value text of each attribute, in order.
    int rowCount() const { return m_table->rowCount(); }
    std::string cell(int row, int column) const { return m_table->cell(row, column); }

  private:
    void fillList();
    bool done(const EditResult& result);

    GraphDocument& m_document;
    GraphObject& m_element;
    EditorPrompts& m_prompts;
    std::function<void()> m_changed;
    wxTextCtrl* m_label;
    std::unique_ptr<AttributeTable> m_table;
};

}  // namespace vellum
