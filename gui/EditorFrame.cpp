#include "gui/EditorFrame.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>

namespace vellum {

EditorFrame::EditorFrame(wxWindow* parent, const wxSize& size,
                         std::unique_ptr<EditorPrompts> prompts, const Traits& traits)
    : wxFrame(parent, wxID_ANY, wxString(traits.titlePrefix) + "untitled", wxDefaultPosition, size),
      m_traits(traits) {
    setPrompts(std::move(prompts));
    Bind(wxEVT_CLOSE_WINDOW, &EditorFrame::onClose, this);
}

void EditorFrame::setPrompts(std::unique_ptr<EditorPrompts> prompts) {
    m_prompts = prompts ? std::move(prompts) : std::make_unique<EditorPrompts>();
}

void EditorFrame::useSettings(UserSettings* settings) {
    m_settings = settings;
    if (m_settings)
        if (const std::optional<wxSize> size = m_settings->windowSize(m_traits.settingsName))
            SetSize(*size);
}

bool EditorFrame::confirmDiscard() {
    if (!modified())
        return true;
    return m_prompts->message(this, discardQuestion, "Alert", wxYES_NO | wxICON_QUESTION) == wxYES;
}

void EditorFrame::createToolBar(int firstId, EditingToolbar::Actions actions,
                                const std::string& zoomTip) {
    m_toolBar = std::make_unique<EditingToolbar>(*CreateToolBar(wxTB_HORIZONTAL | wxTB_FLAT),
                                                 firstId, std::move(actions), zoomTip);
}

wxMenu* EditorFrame::newEditMenu() const {
    auto* edit = new wxMenu;
    edit->Append(m_traits.undoId, "&Undo...");
    edit->Append(m_traits.redoId, "&Redo...");
    return edit;
}

void EditorFrame::setMenus(wxMenu* file, wxMenu* edit, wxMenu* options) {
    auto* bar = new wxMenuBar;
    bar->Append(file, "&File");
    bar->Append(edit, "&Edit");
    bar->Append(options, "&Options");
    SetMenuBar(bar);
}

void EditorFrame::appendRecentFiles(wxMenu& file, int id, int firstId) {
    m_recentMenu = new wxMenu;
    file.Append(id, "Recent &files", m_recentMenu);
    Bind(wxEVT_MENU_OPEN, [this, firstId](wxMenuEvent& event) {
        event.Skip();
        fillRecentMenu(
            *m_recentMenu,
            m_settings ? m_settings->recentFiles(m_traits.recentKind) : std::vector<std::string>{},
            firstId);
    });
}

std::string EditorFrame::recentFile(int id) const {
    const wxMenuItem* item = m_recentMenu ? m_recentMenu->FindItem(id) : nullptr;
    return item ? item->GetHelp().utf8_string() : std::string();
}

void EditorFrame::remember(const std::string& fileName) {
    if (m_settings)
        m_settings->addRecentFile(m_traits.recentKind, fileName);
}

std::string EditorFrame::fileToRead(const std::string& fileName, const wxString& filter,
                                    const wxString& extension) {
    if (!confirmDiscard())
        return {};
    std::string name = m_prompts->fileNameOr(fileName, this, filter, extension, false);
    if (!name.empty())
        cancelTools();
    return name;
}

std::string EditorFrame::fileToWrite(const std::string& fileName, const wxString& filter,
                                     const wxString& extension) {
    std::string name = m_prompts->fileNameOr(fileName, this, filter, extension, true);
    if (!name.empty())
        cancelTools();
    return name;
}

bool EditorFrame::report(const EditResult& result) {
    if (!result)
        m_prompts->message(this, wxString::FromUTF8(result.message), result.title,
                           wxOK | (result.title == "Warning" ? wxICON_WARNING : wxICON_ERROR));
    return result.done;
}

GraphObject* EditorFrame::selectedElementOf(GraphDocument& document) {
    if (GraphObject* element = document.elementOf(document.selected()))
        return element;
    EditResult result;
    document.selectedVertex(result);
    report(result);
    return nullptr;
}

void EditorFrame::showDocument(const std::string& fileName, bool canUndo, bool canRedo) {
    SetTitle(wxString(m_traits.titlePrefix) +
             (fileName.empty() ? wxString("untitled") : wxString::FromUTF8(fileName)));
    m_toolBar->enableHistory(canUndo, canRedo);
    GetMenuBar()->Enable(m_traits.undoId, canUndo);
    GetMenuBar()->Enable(m_traits.redoId, canRedo);
}

void EditorFrame::popupMenu(wxMenu& menu, TPXCanvas& canvas, const wxPoint& at) {
    m_prompts->popupMenu(*this, menu, ScreenToClient(canvas.ClientToScreen(at)));
}

void EditorFrame::onClose(wxCloseEvent& event) {
    if (event.CanVeto() && !confirmDiscard()) {
        event.Veto();
        return;
    }
    if (m_settings)
        m_settings->setWindowSize(m_traits.settingsName, GetSize());
    cancelTools();
    Destroy();
}

}  // namespace vellum
