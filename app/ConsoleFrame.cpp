#include "app/ConsoleFrame.h"

#include "app/SafeSave.h"
#include "base/Console.h"

#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>

namespace vellum {
namespace {

const wxPoint kConsolePosition(420, 5);
const wxSize kConsoleSize(560, 420);

std::string saveFailure(const std::string& path, const std::string& reason) {
    return "Cannot save the console to '" + path + "': " + reason + " !!!";
}

}  // namespace

ConsoleFrame::ConsoleFrame(wxWindow* parent)
    : wxFrame(parent, wxID_ANY, "Vellum - Console", kConsolePosition, kConsoleSize),
      text_(new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                           wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP)) {
    text_->SetFont(wxFont(wxFontInfo(9).Family(wxFONTFAMILY_TELETYPE)));
    buildMenus();
    Bind(wxEVT_CLOSE_WINDOW, &ConsoleFrame::onClose, this);
    sink_ = std::make_shared<TextCtrlSink>(text_, this);
    Console::instance().addSink(sink_);
    Show();
}

ConsoleFrame::~ConsoleFrame() {
    // Once removeSink returns no thread is inside the sink, since the console calls sinks
    // under its lock.
    Console::instance().removeSink(sink_.get());
    sink_->detach();
}

void ConsoleFrame::buildMenus() {
    auto* edit = new wxMenu;
    edit->Append(kClearConsole, "&Clear console...");
    edit->Append(kSaveContent, "&Save content...");
    auto* bar = new wxMenuBar;
    bar->Append(edit, "&Edit");
    SetMenuBar(bar);
    Bind(wxEVT_MENU, &ConsoleFrame::onClear, this, kClearConsole);
    Bind(wxEVT_MENU, &ConsoleFrame::onSave, this, kSaveContent);
}

void ConsoleFrame::clearContent() {
    Console::instance().clear();
}

bool ConsoleFrame::saveContentTo(const std::string& path, std::string* failure) {
    std::string reason;
    if (saveReplacing(path, text_->GetValue().utf8_string(), reason))
        return true;
    const std::string message = saveFailure(path, reason);
    console() << message << "\n";
    if (failure)
        *failure = message;
    return false;
}

void ConsoleFrame::saveContentAsked() {
    const wxString chosen =
        wxFileSelector("Text file (*.txt)", wxEmptyString, wxEmptyString, "txt",
                       "Text file (*.txt)|*.txt", wxFD_SAVE | wxFD_OVERWRITE_PROMPT, this);
    if (chosen.empty())
        return;
    std::string failure;
    if (!saveContentTo(std::string(chosen.fn_str()), &failure))
        wxMessageBox(wxString::FromUTF8(failure), "Alert", wxOK | wxICON_EXCLAMATION, this);
}

void ConsoleFrame::onClear(wxCommandEvent&) {
    clearContent();
}

void ConsoleFrame::onSave(wxCommandEvent&) {
    saveContentAsked();
}

// The console lives as long as the main frame; closing it on its own only puts it aside.
void ConsoleFrame::onClose(wxCloseEvent& event) {
    if (!event.CanVeto()) {
        event.Skip();
        return;
    }
    event.Veto();
    Iconize(true);
}

}  // namespace vellum
