#include "plugins/layoutsettings/SettingsDialog.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>
#include <wx/thread.h>

#include <dlfcn.h>

namespace vellum::layoutsettings {

namespace {

constexpr int kBorder = 10;
constexpr int kFieldWidth = 140;

wxString text(const std::string& utf8) {
    return wxString::FromUTF8(utf8);
}

wxWindow* makeField(wxWindow* parent, const Setting& setting, const std::string& value) {
    if (setting.kind == Setting::Kind::Choice) {
        wxArrayString words;
        for (const std::string& choice : setting.choices)
            words.Add(text(choice));
        auto* choice = new wxChoice(parent, wxID_ANY, wxDefaultPosition, wxSize(kFieldWidth, -1),
                                    words, 0, wxDefaultValidator, text(setting.name));
        choice->SetStringSelection(text(value));
        return choice;
    }
    return new wxTextCtrl(parent, wxID_ANY, text(value), wxDefaultPosition, wxSize(kFieldWidth, -1),
                          0, wxDefaultValidator, text(setting.name));
}

// Loading a layout that links the toolkit into a program that has none (vellum-cli) brings GTK
// in, and GTK cannot be unloaded cleanly: what it registered stays behind, pointing into freed
// code. There the layout keeps itself loaded. In the desktop program the toolkit stays loaded
// anyway and the layout is unloaded as usual.
__attribute__((constructor)) void keepLoadedWithoutToolkit() {
    if (wxTheApp != nullptr)
        return;
    Dl_info self;
    if (dladdr(reinterpret_cast<void*>(&keepLoadedWithoutToolkit), &self) != 0 &&
        self.dli_fname != nullptr)
        dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}

}  // namespace

SettingsDialog::SettingsDialog(wxWindow* parent, const std::string& title,
                               const SettingsSchema& schema, const SettingValues& values,
                               const std::string& note)
    : wxDialog(parent, wxID_ANY, text(title)), schema_(schema) {
    auto* grid = new wxFlexGridSizer(3, wxSize(kBorder, kBorder / 2));
    grid->AddGrowableCol(1);
    for (const Setting& setting : schema.settings()) {
        wxWindow* field = makeField(this, setting, values.text(setting.name));
        fields_.push_back(field);
        grid->Add(new wxStaticText(this, wxID_ANY, text(setting.label)), 0,
                  wxALIGN_CENTER_VERTICAL);
        grid->Add(field, 1, wxEXPAND);
        auto* range = new wxStaticText(this, wxID_ANY, text(setting.range()));
        range->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
        grid->Add(range, 0, wxALIGN_CENTER_VERTICAL);
    }
    reason_ =
        new wxStaticText(this, wxID_ANY, text(note), wxDefaultPosition, wxDefaultSize, 0, "reason");
    reason_->SetForegroundColour(*wxRED);
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(grid, 0, wxEXPAND | wxALL, kBorder);
    top->Add(reason_, 0, wxEXPAND | wxLEFT | wxRIGHT, kBorder);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, kBorder);
    SetSizerAndFit(top);
    reason_->Wrap(GetClientSize().x - 2 * kBorder);
    Fit();
    // Skipping passes a dialog without refusals on to wxDialog's own OK, which ends it.
    Bind(
        wxEVT_BUTTON,
        [this](wxCommandEvent& event) {
            if (acceptable())
                event.Skip();
        },
        wxID_OK);
}

bool SettingsDialog::canShow() {
    return wxTheApp != nullptr && wxTheApp->IsGUI() && wxThread::IsMain();
}

std::optional<SettingValues> SettingsDialog::edit(const std::string& title,
                                                  const SettingsSchema& schema,
                                                  const SettingValues& values,
                                                  const std::string& note) {
    wxWindow* active = wxGetActiveWindow();
    wxWindow* parent = active != nullptr ? wxGetTopLevelParent(active) : wxTheApp->GetTopWindow();
    SettingsDialog dialog(parent, title, schema, values, note);
    if (dialog.ShowModal() != wxID_OK)
        return std::nullopt;
    return dialog.values();
}

SettingValues SettingsDialog::values() const {
    SettingValues result;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const Setting& setting = schema_.settings()[i];
        result.set(setting.name, setting.canonical(fieldText(i)));
    }
    return result;
}

std::string SettingsDialog::fieldText(std::size_t index) const {
    wxString value;
    if (const auto* choice = dynamic_cast<const wxChoice*>(fields_[index]))
        value = choice->GetStringSelection();
    else
        value = static_cast<const wxTextCtrl*>(fields_[index])->GetValue();
    // Blanks around a number are no reason to refuse it.
    return value.Trim(true).Trim(false).utf8_string();
}

bool SettingsDialog::acceptable() {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const std::string refusal = schema_.settings()[i].refusal(fieldText(i));
        if (refusal.empty())
            continue;
        reason_->SetLabel(text(refusal));
        reason_->Wrap(GetClientSize().x - 2 * kBorder);
        Fit();
        fields_[i]->SetFocus();
        if (auto* field = dynamic_cast<wxTextCtrl*>(fields_[i]))
            field->SelectAll();
        return false;
    }
    return true;
}

}  // namespace vellum::layoutsettings
