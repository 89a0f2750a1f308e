// AttributeTable: the part of an element's dialog that lists its attributes (name, type keyword,
// value text) and the fields and buttons below the list that add, change or remove one. Picking
// a row copies it into the fields; what the buttons do is the dialog's.
#pragma once

#include <wx/choice.h>
#include <wx/listctrl.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include <functional>
#include <string>

#include "graph/Attribute.h"

namespace vellum {

// A row of a dialog: a caption, a field that takes the room left, and a button (may be null).
wxBoxSizer* captionedRow(wxWindow* parent, const char* caption, wxWindow* field, wxWindow* button);

class AttributeTable {
  public:
    using Put =
        std::function<void(const std::string& name, AttributeType type, const std::string& value)>;
    using Remove = std::function<void(const std::string& name)>;

    // The controls, children of `parent`; `extra` (null: none) stands after the value field.
    AttributeTable(wxWindow* parent, const wxSize& listSize, int valueWidth, Put put, Remove remove,
                   wxWindow* extra = nullptr);

    // The list, then the row of fields, each with a border of 10 (the list's none below).
    void addTo(wxSizer& sizer);
    void clear() { m_list->DeleteAllItems(); }
    void addRow(const std::string& name, AttributeType type, const std::string& value);
    int rowCount() const { return m_list->GetItemCount(); }
    std::string cell(int row, int column) const;
    wxTextCtrl& valueField() { return *m_value; }
    // Called after a picked row was copied into the fields, with its value text.
    void onPicked(std::function<void(const wxString& value)> picked) {
        m_picked = std::move(picked);
    }

  private:
    wxListCtrl* m_list;
    wxTextCtrl* m_name;
    wxChoice* m_type;
    wxTextCtrl* m_value;
    wxBoxSizer* m_fields;
    std::function<void(const wxString&)> m_picked;
};

}  // namespace vellum
