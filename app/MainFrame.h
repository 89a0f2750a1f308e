// The main frame: the small window from which editors and interpreters are opened. It shows the
// logo and owns the console frame; closing it ends the program.
#pragma once

#include "app/ConsoleFrame.h"
#include "app/LogoCanvas.h"
#include "gui/GraphEditorFrame.h"
#include "gui/InterpreterFrame.h"
#include "gui/ModuleEditorFrame.h"
#include "gui/RuleEditorFrame.h"
#include "gui/UserSettings.h"

#include <wx/frame.h>

#include <memory>

#include <string>

namespace vellum {

class MainFrame : public wxFrame {
  public:
    static constexpr int kExit = 1;
    static constexpr int kAbout = 6;
    static constexpr int kNewGraph = 7;
    static constexpr int kNewGraphRule = 8;
    static constexpr int kNewKoralModule = 9;
    static constexpr int kNewKoralInterpreter = 10;
    static constexpr int kRecentFiles = 11;  // the submenu; its files take kFirstRecent on
    static constexpr int kFirstRecent = 20;

    // Builds the icon, menus, logo and console frame, then shows itself.
    MainFrame(const wxString& title, const wxPoint& position, const wxSize& size);

    ConsoleFrame* consoleFrame() const { return console_; }
    // Opens a graph editor on a new untitled graph, or on `fileName` when one is given (an
    // editor whose file would not load says why on the console and stays untitled). The editor
    // is a frame of its own, closed with this one.
    GraphEditorFrame* openGraphEditor(const std::string& fileName = {});
    // Opens a rule editor on a new untitled rule, or on the rule file `fileName` when one is given
    // (a file that would not load is said on the console and the editor stays untitled).
    RuleEditorFrame* openRuleEditor(const std::string& fileName = {});
    // Opens a module editor on a new untitled module, or on `fileName` when one is given (a file
    // that would not load is said on the console and the editor stays untitled).
    ModuleEditorFrame* openModuleEditor(const std::string& fileName = {});
    // Opens an interpreter frame with an empty graph, closed with this one (a run going in it
    // is stopped first).
    // Null prompts: the toolkit's boxes.
    InterpreterFrame* openInterpreter(std::unique_ptr<EditorPrompts> prompts = {});
    LogoCanvas* logoCanvas() const { return canvas_; }
    // Opens the file in the frame its extension calls for (graphs of other tools are imported
    // into a graph editor); false, with a console line, for an extension it does not know.
    bool openFile(const std::string& fileName);
    // Where recent files and window sizes are kept from now on; until then nothing is kept.
    void useSettings(std::unique_ptr<UserSettings> settings);
    UserSettings* settings() const { return settings_.get(); }

  private:
    void buildMenus();
    void onExit(wxCommandEvent& event);
    void onClose(wxCloseEvent& event);
    void onAbout(wxCommandEvent& event);
    void onNewGraph(wxCommandEvent& event);
    void onNewInterpreter(wxCommandEvent& event);
    void onNewRule(wxCommandEvent& event);
    void onNewModule(wxCommandEvent& event);
    void onMenuOpen(wxMenuEvent& event);
    void onRecentFile(wxCommandEvent& event);

    LogoCanvas* canvas_;     // child window, owned by the frame
    ConsoleFrame* console_;  // child frame, destroyed with this one
    wxMenu* recentMenu_;     // in the File menu
    std::unique_ptr<UserSettings> settings_;
};

}  // namespace vellum
