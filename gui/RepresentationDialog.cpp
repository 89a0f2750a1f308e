#include "gui/RepresentationDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <array>

namespace vellum {
namespace {

constexpr std::array<const char*, 4> kShapes = {"sphere", "cone", "cylinder", "cube"};
constexpr int kModelChoice = static_cast<int>(kShapes.size());

}  // namespace

RepresentationDialog::RepresentationDialog(wxWindow* parent, const std::string& representation,
                                           const wxColour& colour,
                                           std::function<std::optional<std::string>()> chooseModel)
    : wxDialog(parent, wxID_ANY, "Vertex representation"), m_chooseModel(std::move(chooseModel)) {
    wxArrayString shapes;
    for (const char* shape : kShapes)
        shapes.Add(shape);
    shapes.Add("3D model file");
    m_shape = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, shapes);
    m_model = new wxTextCtrl(this, wxID_ANY);
    auto* browse = new wxButton(this, wxID_ANY, "Browse...");
    m_colour = new wxColourPickerCtrl(this, wxID_ANY, colour);

    auto* grid = new wxFlexGridSizer(2, wxSize(8, 8));
    grid->AddGrowableCol(1);
    grid->Add(new wxStaticText(this, wxID_ANY, "Shape"), 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(m_shape, 1, wxEXPAND);
    grid->Add(new wxStaticText(this, wxID_ANY, "Model file"), 0, wxALIGN_CENTER_VERTICAL);
    auto* modelRow = new wxBoxSizer(wxHORIZONTAL);
    modelRow->Add(m_model, 1, wxEXPAND | wxRIGHT, 4);
    modelRow->Add(browse);
    grid->Add(modelRow, 1, wxEXPAND);
    grid->Add(new wxStaticText(this, wxID_ANY, "Colour"), 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(m_colour);

    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(grid, 1, wxEXPAND | wxALL, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(top);
    SetSize(wxSize(std::max(GetSize().x, 420), GetSize().y));

    setRepresentation(representation);
    browse->Bind(wxEVT_BUTTON, &RepresentationDialog::onBrowse, this);
    m_shape->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { showModelField(); });
}

std::string RepresentationDialog::representation() const {
    const int choice = m_shape->GetSelection();
    if (choice >= 0 && choice < kModelChoice)
        return kShapes[choice];
    return m_model->GetValue().utf8_string();
}

void RepresentationDialog::setRepresentation(const std::string& representation) {
    for (int i = 0; i < kModelChoice; ++i)
        if (representation == kShapes[i]) {
            m_shape->SetSelection(i);
            m_model->Clear();
            return showModelField();
        }
    m_shape->SetSelection(kModelChoice);
    m_model->SetValue(wxString::FromUTF8(representation));
    showModelField();
}

void RepresentationDialog::onBrowse(wxCommandEvent&) {
    if (!m_chooseModel)
        return;
    if (const auto model = m_chooseModel())
        setRepresentation(*model);
}

void RepresentationDialog::showModelField() {
    m_model->Enable(m_shape->GetSelection() == kModelChoice);
}

}  // namespace vellum
