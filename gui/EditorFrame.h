// EditorFrame: what the graph editor and the rule editor share as frames of one document: the
// prompts every question goes through, the editing toolbar, the user's settings (the window's
// size and the recent files of the document's kind), the title naming the file, the undo and redo
// state of menu and toolbar, the question before modified work is lost, and the box that shows a
// refused edit. Each editor keeps its menus' own items, its document and its commands.
#pragma once

#include <wx/frame.h>

#include <memory>
#include <string>

#include "gui/EditingToolbar.h"
#include "gui/EditorPrompts.h"
#include "gui/TPXCanvas.h"
#include "gui/UserSettings.h"
#include "gui/edit/EditResult.h"
#include "gui/edit/GraphDocument.h"

namespace vellum {

class EditorFrame : public wxFrame {
  public:
    static constexpr const char* discardQuestion =
        "Document was modified!\nAll changes will be lost.\nContinue?";

    EditorPrompts& prompts() { return *m_prompts; }
    // Null: the toolkit's boxes again.
    void setPrompts(std::unique_ptr<EditorPrompts> prompts);
    // Where the files this editor reads and writes are listed and its size is kept (it takes the
    // size kept there now); null: nothing is kept. The settings outlive the editor.
    void useSettings(UserSettings* settings);
    // The toolbar's tools: the view, mouse and constraint tools take their toggled state.
    void useTool(ToolbarTool tool) { m_toolBar->use(tool); }
    // Asks before modified work is closed or replaced; true to go on.
    bool confirmDiscard();

  protected:
    // What tells one editor from another to the shared part.
    struct Traits {
        const char* titlePrefix;   // the title is this and the file name
        const char* settingsName;  // the window whose size the settings keep
        const char* recentKind;    // the list of recent files the editor's files join
        int undoId;                // the Edit menu's history items
        int redoId;
    };

    // Titled "untitled" until a file is shown; null prompts: the toolkit's boxes.
    EditorFrame(wxWindow* parent, const wxSize& size, std::unique_ptr<EditorPrompts> prompts,
                const Traits& traits);

    // Whether the document holds changes not saved.
    virtual bool modified() const = 0;
    // Ends every gesture and connection of the editor's tools.
    virtual void cancelTools() = 0;

    // The toolbar, its tools taking the ids from `firstId` on; an empty `zoomTip` keeps the zoom
    // tool's own tooltip.
    void createToolBar(int firstId, EditingToolbar::Actions actions,
                       const std::string& zoomTip = {});
    EditingToolbar& toolBar() { return *m_toolBar; }
    // Null when nothing is kept.
    UserSettings* settings() const { return m_settings; }
    // An Edit menu that begins with the history items "&Undo..." and "&Redo...".
    wxMenu* newEditMenu() const;
    // The menu bar of the File, Edit and Options menus, which it takes.
    void setMenus(wxMenu* file, wxMenu* edit, wxMenu* options);
    // Appends the "Recent &files" submenu as item `id` of `file`, its files taking the ids from
    // `firstId` on; the settings' list fills it whenever a menu opens.
    void appendRecentFiles(wxMenu& file, int id, int firstId);
    // The file of item `id` of the recent files; empty when it is none of them.
    std::string recentFile(int id) const;
    // A file this editor read or wrote goes to the front of the recent ones.
    void remember(const std::string& fileName);

    // The file a command that replaces the document reads, and the file one writes: `fileName`,
    // or else the one the user chooses (reading, only once a modified document may go); empty
    // when the user stopped the command. Tools' gestures end before the file is used.
    std::string fileToRead(const std::string& fileName, const wxString& filter,
                           const wxString& extension);
    std::string fileToWrite(const std::string& fileName, const wxString& filter,
                            const wxString& extension);

    // Shows a refused command's reason; true when it was done.
    bool report(const EditResult& result);
    // The element selected in `document`; null, after saying why, when there is none.
    GraphObject* selectedElementOf(GraphDocument& document);
    // The title names `fileName`; the undo and redo items and tools follow the history.
    void showDocument(const std::string& fileName, bool canUndo, bool canRedo);
    // The context menu at window point `at` of `canvas`.
    void popupMenu(wxMenu& menu, TPXCanvas& canvas, const wxPoint& at);

  private:
    void onClose(wxCloseEvent& event);

    Traits m_traits;
    std::unique_ptr<EditorPrompts> m_prompts;
    UserSettings* m_settings = nullptr;
    std::unique_ptr<EditingToolbar> m_toolBar;
    wxMenu* m_recentMenu = nullptr;  // in the File menu
};

}  // namespace vellum
