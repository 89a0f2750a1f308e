// ModuleEditorFrame: the Koral module editor, a text window with emacs-like keys whose text is
// highlighted by the module scanner after every edit, that compiles the module (placing the
// caret where the compiler stopped), runs one of its units in an interpreter frame and exports
// the module as an HTML page with pictures of its rules. Event handlers only translate: the
// commands are public for tests, and every question to the user goes through EditorPrompts.
#pragma once

#include <wx/frame.h>
#include <wx/stc/stc.h>
#include <wx/weakref.h>

#include <functional>
#include <memory>
#include <string>

#include "gui/EditorPrompts.h"
#include "gui/EmacsKeys.h"
#include "gui/InterpreterFrame.h"
#include "gui/UserSettings.h"
#include "koral/KoralModule.h"
#include "koral/ModuleHighlighter.h"

namespace vellum {

class ModuleEditorFrame : public wxFrame {
  public:
    static constexpr const char* titlePrefix = "Koral Editor - ";
    static constexpr const char* applicationName = "Koral Editor v2";  // the frame's window name
    static constexpr const char* moduleFilter = "Koral modules (*.mod)";
    static constexpr const char* htmlFilter = "Hypertext files (*.html)";
    static constexpr const char* saveQuestion =
        "This file has been modified.\n\nDo you want to save?";
    static constexpr const char* quitQuestion =
        "This file has been modified.\n\nAre you sure you want to quit?";
    static constexpr const char* compileFailure =
        "The module contains errors!\nSee console output for more information!";
    static constexpr const char* exportTitle = "MOD 2 HTML v1";
    static constexpr const char* exportDone = "HMTL export successfull!!!";

    // The text control's styles: plain text, then one per highlight category (its number + 1).
    static constexpr int kPlainStyle = 0;
    static constexpr int kErrorMarker = 1;  // the line the compiler stopped in

    enum Command {
        kNewModule = wxID_HIGHEST + 1,
        kLoadModule,
        kSaveModule,
        kSaveHtml,
        kHighlight,
        kExit,
        kCompile,
        kRunUnit,
    };

    // Makes the interpreter frame that "Run unit" runs in, when it has none open.
    using InterpreterMaker = std::function<InterpreterFrame*()>;

    // A new editor with an empty, untitled module, shown. Null prompts: the toolkit's boxes.
    explicit ModuleEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts = {});
    ~ModuleEditorFrame() override;

    wxStyledTextCtrl& text() { return *m_text; }
    // The file the text was loaded from or saved to; empty while untitled.
    const std::string& fileName() const { return m_file; }
    bool modified() const { return m_text->GetModify(); }
    // The interpreter frame that the last run went to, while it is open; else null.
    InterpreterFrame* interpreter() const { return m_interpreter.get(); }
    void setInterpreterMaker(InterpreterMaker maker) { m_makeInterpreter = std::move(maker); }
    // Where the modules it reads and writes are listed (the main frame shows the list: this
    // frame's menus are fixed) and its size is kept; it takes the size kept there now. Null:
    // nothing is kept. The settings outlive the editor.
    void useSettings(UserSettings* settings);
    static constexpr const char* settingsName = "module editor";

    // Commands, as the menus run them; each asks its questions through the prompts.
    // An empty untitled module, after confirmDiscard(). False when the user kept the text.
    bool newModule();
    // Loads `fileName` (asked for when empty) after confirmDiscard(); a file that cannot be read
    // leaves the text as it was and says why on the console. False when nothing was loaded.
    bool loadModule(const std::string& fileName = {});
    // Writes the text to `fileName` (asked for when empty and untitled: else its own file).
    bool saveModule(const std::string& fileName = {});
    // Writes the HTML page of the text to `fileName` (asked for when empty), with the rules it
    // names as pictures beside it; the box "MOD 2 HTML v1" says when it is done.
    bool saveHtml(const std::string& fileName = {});
    // Highlights the whole text again.
    void highlightAll();
    // Compiles the text, first offering to save it when modified (an unsaved text is compiled
    // as it stands). On errors the "Alert" box says so and the caret goes to where the compiler
    // stopped, its line marked. Null then; else the module, valid until the caches are cleared.
    const koralModule* compile();
    // Compiles, lets the user choose a unit, and starts it in the interpreter frame after the
    // initial graph has been chosen there. False when nothing started.
    bool runUnit();
    // True when the text may be left: unmodified, or the user says yes to the quit question.
    bool confirmDiscard();
    // Runs an editing action on the text as its keys would.
    void perform(EditorAction action);

  private:
    class ScratchCopy;

    void buildMenus();
    void setUpText();
    void updateTitle();
    void setText(const std::string& bytes);
    // Places the caret at `offset` of the text and marks its line.
    void showError(long offset);
    // The file to compile: the module's own when saved, else a scratch copy of the text.
    std::string fileToCompile();
    void restyle(ModuleHighlighter::Range range);

    void onCommand(wxCommandEvent& event);
    void onKeyDown(wxKeyEvent& event);
    void onModified(wxStyledTextEvent& event);
    void onStyleNeeded(wxStyledTextEvent& event);
    void onClose(wxCloseEvent& event);

    std::unique_ptr<EditorPrompts> m_prompts;
    UserSettings* m_settings = nullptr;
    wxStyledTextCtrl* m_text;         // child window, owned by the frame
    ModuleHighlighter m_highlighter;  // in step with the text after every change
    KeySequences m_keys;
    std::string m_file;
    std::unique_ptr<ScratchCopy> m_scratch;  // of an unsaved text, for the compiler
    wxWeakRef<InterpreterFrame> m_interpreter;
    InterpreterMaker m_makeInterpreter;
};

}  // namespace vellum
