// Answers a modal dialog that the code under test shows with its own ShowModal, not through
// EditorPrompts (a layout's settings dialog, shown from inside a plug-in): a timer looks for it
// while the dialog's event loop runs and hands it to a script that fills in fields and presses
// buttons the way a user's clicks do.
#pragma once

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>
#include <wx/timer.h>
#include <wx/toplevel.h>

#include <functional>
#include <string>

namespace vellum::test {

// Sets the field named `name` (a text field or a choice) as typing or choosing would; false when
// the dialog has no such field or the choice no such word.
inline bool setField(wxDialog& dialog, const std::string& name, const std::string& value) {
    wxWindow* field = wxWindow::FindWindowByName(wxString::FromUTF8(name), &dialog);
    if (auto* text = dynamic_cast<wxTextCtrl*>(field)) {
        text->SetValue(wxString::FromUTF8(value));
        return true;
    }
    auto* choice = dynamic_cast<wxChoice*>(field);
    return choice != nullptr && choice->SetStringSelection(wxString::FromUTF8(value));
}

// The text a field named `name` shows: a text field's value, a choice's word, a label's text.
inline std::string fieldText(wxDialog& dialog, const std::string& name) {
    wxWindow* field = wxWindow::FindWindowByName(wxString::FromUTF8(name), &dialog);
    if (auto* text = dynamic_cast<wxTextCtrl*>(field))
        return text->GetValue().utf8_string();
    if (auto* choice = dynamic_cast<wxChoice*>(field))
        return choice->GetStringSelection().utf8_string();
    return field != nullptr ? field->GetLabel().utf8_string() : "(no field '" + name + "')";
}

// Clicks the dialog's button `id` (wxID_OK, wxID_CANCEL); false when it has none.
inline bool press(wxDialog& dialog, int id) {
    auto* button = dynamic_cast<wxButton*>(dialog.FindWindow(id));
    if (button == nullptr)
        return false;
    wxCommandEvent click(wxEVT_BUTTON, id);
    click.SetEventObject(button);
    button->ProcessWindowEvent(click);
    return true;
}

// While alive, runs `script` on the first modal dialog shown. A dialog the script leaves open is
// a test failure and is cancelled, so that a wrong script never hangs the test program.
class ModalDialogScript {
  public:
    explicit ModalDialogScript(std::function<void(wxDialog&)> script) : script_(std::move(script)) {
        timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { look(); });
        timer_.Start(20);
    }
    ~ModalDialogScript() { timer_.Stop(); }
    ModalDialogScript(const ModalDialogScript&) = delete;
    ModalDialogScript& operator=(const ModalDialogScript&) = delete;

    bool ran() const { return ran_; }

  private:
    void look() {
        for (wxWindow* window : wxTopLevelWindows) {
            auto* dialog = dynamic_cast<wxDialog*>(window);
            if (dialog == nullptr || !dialog->IsModal())
                continue;
            timer_.Stop();
            ran_ = true;
            script_(*dialog);
            if (dialog->IsModal()) {
                ADD_FAILURE() << "the script left the dialog '" << dialog->GetTitle().utf8_string()
                              << "' open";
                dialog->EndModal(wxID_CANCEL);
            }
            return;
        }
    }

    std::function<void(wxDialog&)> script_;
    wxTimer timer_;
    bool ran_ = false;
};

}  // namespace vellum::test
