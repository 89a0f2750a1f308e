// RepresentationDialog: a vertex's shape (sphere, cone, cylinder, cube or a 3D model file) and
// its colour, for "Vertex representation..." and "Change representation".
#pragma once

#include <wx/choice.h>
#include <wx/clrpicker.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>

#include <functional>
#include <optional>
#include <string>

namespace vellum {

class RepresentationDialog : public wxDialog {
  public:
    // `chooseModel` asks for a model file when the user browses for one.
    RepresentationDialog(wxWindow* parent, const std::string& representation,
                         const wxColour& colour,
                         std::function<std::optional<std::string>()> chooseModel);

    // The chosen shape name, or the model file's name.
    std::string representation() const;
    void setRepresentation(const std::string& representation);
    wxColour colour() const { return m_colour->GetColour(); }
    void setColour(const wxColour& colour) { m_colour->SetColour(colour); }

  private:
    void onBrowse(wxCommandEvent& event);
    void showModelField();

    std::function<std::optional<std::string>()> m_chooseModel;
    wxChoice* m_shape;
    wxTextCtrl* m_model;
    wxColourPickerCtrl* m_colour;
};

}  // namespace vellum
