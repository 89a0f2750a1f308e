#include "gui/GraphEditorFrame.h"

#include <filesystem>

#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>

#include "base/Console.h"
#include "graph/DirectedGraphVertex.h"
#include "gui/AttributesDialog.h"
#include "gui/GroundDialog.h"
#include "gui/LayoutDialog.h"
#include "gui/RepresentationDialog.h"
#include "gui/WxColour.h"
#include "gui/view/ElementLook.h"

namespace vellum {

GraphEditorFrame::GraphEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts)
    : wxFrame(parent, wxID_ANY, wxString(titlePrefix) + "untitled", wxDefaultPosition,
              wxSize(1040, 700)),
      m_prompts(prompts ? std::move(prompts) : std::make_unique<EditorPrompts>()) {
    buildMenus();
    buildToolBar();
    m_pane = std::make_unique<GraphPane>(this, m_document,
                                         EditingTool::Hooks{
                                             [this] { documentChanged(); },
                                             [this] { return chooseModel(); },
                                             [this](const wxPoint& at) { showContextMenu(at); },
                                         });
    sceneReplaced();
    bindEvents();
    Show();
}

void GraphEditorFrame::setPrompts(std::unique_ptr<EditorPrompts> prompts) {
    m_prompts = prompts ? std::move(prompts) : std::make_unique<EditorPrompts>();
}

// The pane leaves its canvas, which is destroyed after this body, with no document to show.
GraphEditorFrame::~GraphEditorFrame() = default;

void GraphEditorFrame::buildMenus() {
    auto* file = new wxMenu;
    file->Append(kNewGraph, "&New graph...");
    file->Append(kLoadGraph, "&Load graph...");
    file->Append(kSaveGraph, "&Save graph...");
    file->Append(kImportGraph, "&Import...");
    file->Append(kExportGraph, "&Export...");
    file->Append(kLayoutGraph, "L&ayout graph...");
    file->Append(kScreenshot, "Screens&hot...");
    m_recentMenu = new wxMenu;
    file->Append(kRecentFiles, "Recent &files", m_recentMenu);
    file->Append(kExit, "E&xit");

    auto* edit = new wxMenu;
    edit->Append(kUndo, "&Undo...");
    edit->Append(kRedo, "&Redo...");
    edit->Append(kCopy, "&Copy...");
    edit->Append(kDelete, "&Delete...");

    auto* options = new wxMenu;
    options->Append(kHideGround, "&Hide ground...");
    options->Append(kWireframeGround, "&Wireframe ground...");
    options->Append(kSolidGround, "&Solid ground...");
    options->Append(kTransparentGround, "&Transparent ground...");
    options->Append(kRepresentation, "Vertex &representation...");
    options->Append(kAttributes, "Vertex/Edge &attributes...");
    options->Append(kGround, "&Ground...");
    options->Append(kBackground, "&Background color...");
    options->Append(kVrInterface, "Disable &VR Interface...");

    auto* bar = new wxMenuBar;
    bar->Append(file, "&File");
    bar->Append(edit, "&Edit");
    bar->Append(options, "&Options");
    SetMenuBar(bar);
}

void GraphEditorFrame::buildToolBar() {
    EditingToolbar::Actions actions;
    actions.mode = [this](EditMode mode) { m_pane->tool().setMode(mode); };
    actions.view = [this](TPXviewMode mode) { m_pane->setView(mode); };
    actions.locks = [this](const AxisLocks& locks) { m_document.setLocks(locks); };
    actions.remove = [this] { deleteSelected(); };
    actions.undo = [this] { undo(); };
    actions.redo = [this] { redo(); };
    actions.zoom = [this] { m_pane->zoomToFit(); };
    m_toolBar = std::make_unique<EditingToolbar>(*CreateToolBar(wxTB_HORIZONTAL | wxTB_FLAT),
                                                 kFirstTool, std::move(actions));
}

void GraphEditorFrame::bindEvents() {
    Bind(wxEVT_MENU, &GraphEditorFrame::onCommand, this, kNewGraph,
         kFirstTool + static_cast<int>(toolbarToolCount) - 1);
    Bind(wxEVT_CLOSE_WINDOW, &GraphEditorFrame::onClose, this);
    Bind(wxEVT_MENU_OPEN, &GraphEditorFrame::onMenuOpen, this);
    Bind(wxEVT_CHAR_HOOK, &GraphEditorFrame::onKey, this);
}

void GraphEditorFrame::onCommand(wxCommandEvent& event) {
    const int id = event.GetId();
    if (id >= kFirstTool) {
        useTool(static_cast<ToolbarTool>(id - kFirstTool));
        return;
    }
    if (id >= kFirstRecent) {
        if (const wxMenuItem* item = m_recentMenu->FindItem(id)) {
            const std::string file = item->GetHelp().utf8_string();
            const bool own = file.size() > 3 && file.compare(file.size() - 3, 3, ".dg") == 0;
            own ? loadGraph(file) : importGraph(file);
        }
        return;
    }
    switch (id) {
        case kNewGraph:
            return newGraph();
        case kLoadGraph:
            loadGraph();
            return;
        case kSaveGraph:
            saveGraph();
            return;
        case kImportGraph:
            importGraph();
            return;
        case kExportGraph:
            exportGraph();
            return;
        case kLayoutGraph:
            return layoutGraph();
        case kScreenshot:
            screenshot();
            return;
        case kExit:
            Close();
            return;
        case kUndo:
            return undo();
        case kRedo:
            return redo();
        case kCopy:
            return copySelected();
        case kDelete:
            return deleteSelected();
        case kHideGround:
            return setGround(TPXgroundMode::Hidden);
        case kWireframeGround:
            return setGround(TPXgroundMode::Wireframe);
        case kSolidGround:
            return setGround(TPXgroundMode::Solid);
        case kTransparentGround:
            return setGround(TPXgroundMode::Transparent);
        case kRepresentation:
            return changeRepresentation();
        case kAttributes:
            return editAttributes();
        case kGround:
            return editGround();
        case kBackground:
            return chooseBackground();
        case kVrInterface:
            return setVrEnabled(!m_pane->canvas().vrEnabled());
        default:
            event.Skip();
    }
}

void GraphEditorFrame::useSettings(UserSettings* settings) {
    m_settings = settings;
    if (m_settings)
        if (const std::optional<wxSize> size = m_settings->windowSize(settingsName))
            SetSize(*size);
}

void GraphEditorFrame::remember(const std::string& fileName) {
    if (m_settings)
        m_settings->addRecentFile("graphs", fileName);
}

void GraphEditorFrame::onMenuOpen(wxMenuEvent& event) {
    event.Skip();
    fillRecentMenu(*m_recentMenu,
                   m_settings ? m_settings->recentFiles("graphs") : std::vector<std::string>{},
                   kFirstRecent);
}

void GraphEditorFrame::onClose(wxCloseEvent& event) {
    if (event.CanVeto() && !confirmDiscard()) {
        event.Veto();
        return;
    }
    if (m_settings)
        m_settings->setWindowSize(settingsName, GetSize());
    m_pane->tool().cancel();
    Destroy();
}

void GraphEditorFrame::onKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE &&
        (m_document.gestureActive() || m_pane->tool().connectionSource())) {
        m_pane->tool().cancel();
        m_pane->canvas().requestRepaint();
        return;
    }
    event.Skip();
}

void GraphEditorFrame::useTool(ToolbarTool tool) {
    m_toolBar->use(tool);
}

bool GraphEditorFrame::confirmDiscard() {
    if (!m_document.modified())
        return true;
    return m_prompts->message(this, discardQuestion, "Alert", wxYES_NO | wxICON_QUESTION) == wxYES;
}

void GraphEditorFrame::newGraph() {
    if (!confirmDiscard())
        return;
    m_pane->tool().cancel();
    m_document.newGraph();
    sceneReplaced();
}

bool GraphEditorFrame::loadGraph(const std::string& fileName) {
    if (!confirmDiscard())
        return false;
    std::string name = fileName;
    if (name.empty())
        name = m_prompts->fileName(this, graphFilter, "dg", false).utf8_string();
    if (name.empty())
        return false;
    m_pane->tool().cancel();
    // The document's reader has written why a load failed to the console.
    if (!m_document.load(name)) {
        console() << "The graph editor kept its graph: '" << name << "' could not be loaded.\n";
        return false;
    }
    remember(name);
    sceneReplaced();
    m_pane->canvas().zoomToFit();
    return true;
}

bool GraphEditorFrame::importGraph(const std::string& fileName) {
    if (!confirmDiscard())
        return false;
    std::string name = fileName;
    if (name.empty())
        name = m_prompts->fileName(this, otherToolsFilter, "graphml;*.gxl;*.dot;*.gv", false)
                   .utf8_string();
    if (name.empty())
        return false;
    m_pane->tool().cancel();
    bool renamable = false;
    EditResult result = m_document.importGraph(name, false, &renamable);
    if (!result && renamable) {
        std::string reason = result.message;
        while (!reason.empty() && reason.back() == '\n')
            reason.pop_back();
        const wxString question = wxString::Format(renameQuestion, wxString::FromUTF8(reason));
        if (m_prompts->message(this, question, "Warning", wxYES_NO | wxICON_QUESTION) != wxYES)
            return false;
        result = m_document.importGraph(name, true);
    }
    if (!report(result))
        return false;
    remember(name);
    sceneReplaced();
    m_pane->canvas().zoomToFit();
    return true;
}

bool GraphEditorFrame::exportGraph(const std::string& fileName) {
    std::string name = fileName;
    if (name.empty())
        name = m_prompts->fileName(this, otherToolsFilter, "graphml", true).utf8_string();
    if (name.empty())
        return false;
    m_pane->tool().cancel();
    if (!report(m_document.exportGraph(name)))
        return false;
    remember(name);
    return true;
}

bool GraphEditorFrame::showModel(const std::string& fileName) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(fileName, error)) {
        console() << "Could not load gometry '" << fileName << "' !!!\n";
        return false;
    }
    // Found wherever the graph is saved later.
    const std::string path = std::filesystem::absolute(fileName, error).lexically_normal().string();
    m_pane->tool().cancel();
    if (!m_document.insertVertex(path, {}))
        return false;
    documentChanged();
    m_pane->canvas().zoomToFit();
    return true;
}

bool GraphEditorFrame::saveGraph(const std::string& fileName) {
    std::string name = fileName;
    if (name.empty())
        name = m_prompts->fileName(this, graphFilter, "dg", true).utf8_string();
    if (name.empty())
        return false;
    m_pane->tool().cancel();
    const bool saved = report(m_document.save(name));
    if (saved)
        remember(name);
    // A save under a new name shows the scene anew (models are found beside the file).
    sceneReplaced();
    return saved;
}

void GraphEditorFrame::adoptGraph(DirectedGraph& graph) {
    m_pane->tool().cancel();
    m_document.adopt(graph);
    sceneReplaced();
    m_pane->zoomToFit();
}

void GraphEditorFrame::layoutGraph() {
    LayoutDialog dialog(this);
    // The user's last choice comes first; one that no longer loads is simply not chosen.
    if (m_settings)
        if (const std::string kept = m_settings->choice(layoutChoice); !kept.empty())
            dialog.choose(kept);
    if (m_prompts->showModal(dialog) != wxID_OK || !dialog.library())
        return;
    if (m_settings)
        m_settings->setChoice(layoutChoice, dialog.library()->name());
    m_pane->tool().cancel();
    // Painting at once shows the progress without handing control to the user mid-layout.
    report(m_document.layout(*dialog.library(), [this] { m_pane->canvas().paintNow(); }));
    documentChanged();
}

bool GraphEditorFrame::screenshot(const std::string& fileName) {
    return saveCanvasScreenshot(*this, *m_prompts, m_pane->canvas(), fileName);
}

void GraphEditorFrame::undo() {
    m_pane->tool().cancel();
    m_document.undo();
    documentChanged();
}

void GraphEditorFrame::redo() {
    m_pane->tool().cancel();
    m_document.redo();
    documentChanged();
}

void GraphEditorFrame::copySelected() {
    EditResult result;
    DirectedGraphVertex* vertex = m_document.selectedVertex(result);
    if (!report(result))
        return;
    m_document.copy(*vertex);
    documentChanged();
}

void GraphEditorFrame::deleteSelected() {
    GraphObject* element = m_document.elementOf(m_document.selected());
    if (!element) {
        EditResult result;
        m_document.selectedVertex(result);
        report(result);
        return;
    }
    m_pane->tool().cancel();
    m_document.remove(*element);
    m_document.select(0);
    documentChanged();
}

void GraphEditorFrame::changeRepresentation() {
    EditResult result;
    DirectedGraphVertex* vertex = m_document.selectedVertex(result);
    if (!report(result))
        return;
    const VertexLook look = readVertexLook(*vertex);
    RepresentationDialog dialog(this, look.representation, toWxColour(look.colour),
                                [this] { return chooseModel(); });
    if (m_prompts->showModal(dialog) != wxID_OK)
        return;
    // A colour left alone keeps its exact value, which the dialog's bytes would round.
    std::optional<TPXrgb> colour;
    if (dialog.colour() != toWxColour(look.colour))
        colour = toRgb(dialog.colour());
    report(m_document.setLook(*vertex, dialog.representation(), colour));
    documentChanged();
}

void GraphEditorFrame::editAttributes() {
    GraphObject* element = m_document.elementOf(m_document.selected());
    if (!element) {
        EditResult result;
        m_document.selectedVertex(result);
        report(result);
        return;
    }
    AttributesDialog dialog(this, m_document, *element, *m_prompts, [this] { documentChanged(); });
    m_prompts->showModal(dialog);
    documentChanged();
}

void GraphEditorFrame::editGround() {
    GroundDialog dialog(this, m_pane->canvas().helpers().groundSettings());
    if (m_prompts->showModal(dialog) != wxID_OK)
        return;
    m_pane->canvas().helpers().setGroundSettings(dialog.settings());
    m_pane->canvas().requestRepaint();
}

void GraphEditorFrame::chooseBackground() {
    chooseCanvasBackground(*this, *m_prompts, m_pane->canvas());
}

void GraphEditorFrame::setVrEnabled(bool enabled) {
    m_pane->canvas().setVrEnabled(enabled);
    GetMenuBar()->SetLabel(kVrInterface,
                           enabled ? "Disable &VR Interface..." : "Enable &VR Interface...");
    m_pane->canvas().requestRepaint();
}

void GraphEditorFrame::setGround(TPXgroundMode mode) {
    setCanvasGround(m_pane->canvas(), mode);
}

void GraphEditorFrame::showContextMenu(const wxPoint& at) {
    wxMenu menu;
    menu.Append(kRepresentation, "Change representation");
    menu.Append(kAttributes, "Edit attributes");
    menu.Append(kCopy, "Copy object");
    menu.Append(kDelete, "Delete");
    m_prompts->popupMenu(*this, menu, ScreenToClient(m_pane->canvas().ClientToScreen(at)));
}

std::optional<std::string> GraphEditorFrame::chooseModel() {
    const wxString name = m_prompts->fileName(this, modelFilter, "3rd", false);
    if (name.empty())
        return std::nullopt;
    return name.utf8_string();
}

bool GraphEditorFrame::report(const EditResult& result) {
    if (!result)
        m_prompts->message(this, wxString::FromUTF8(result.message), result.title,
                           wxOK | (result.title == "Warning" ? wxICON_WARNING : wxICON_ERROR));
    return result.done;
}

void GraphEditorFrame::sceneReplaced() {
    m_pane->sceneReplaced();
    documentChanged();
}

void GraphEditorFrame::documentChanged() {
    updateTitle();
    m_toolBar->enableHistory(m_document.canUndo(), m_document.canRedo());
    GetMenuBar()->Enable(kUndo, m_document.canUndo());
    GetMenuBar()->Enable(kRedo, m_document.canRedo());
    m_pane->canvas().requestRepaint();
}

void GraphEditorFrame::updateTitle() {
    const std::string& name = m_document.fileName();
    SetTitle(wxString(titlePrefix) +
             (name.empty() ? wxString("untitled") : wxString::FromUTF8(name)));
}

}  // namespace vellum
