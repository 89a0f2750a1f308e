// LayoutDialog: the layout algorithms found along the "VellumLayout" path, with the description
// of the one chosen, for "Layout graph...". It loads the chosen library so that the editor can
// run it, and says in place of a description why one would not load.
#pragma once

#include <wx/dialog.h>
#include <wx/listbox.h>
#include <wx/stattext.h>

#include <memory>
#include <string>

#include "koral/LayoutLibrary.h"

namespace vellum {

class LayoutDialog : public wxDialog {
  public:
    explicit LayoutDialog(wxWindow* parent);
    ~LayoutDialog() override;

    // Chooses the algorithm `name`; false when the list has no such name.
    bool choose(const std::string& name);
    // The loaded library of the chosen algorithm, or null when none is chosen or it would not
    // load.
    const LayoutLibrary* library() const { return m_library.get(); }
    // Hands the loaded library over to the caller (null as above).
    std::unique_ptr<LayoutLibrary> takeLibrary() { return std::move(m_library); }
    wxString description() const { return m_description->GetLabel(); }

  private:
    void load(const std::string& name);

    wxListBox* m_names;
    wxStaticText* m_description;
    std::unique_ptr<LayoutLibrary> m_library;
};

}  // namespace vellum
