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
    : EditorFrame(parent, wxSize(1040, 700), std::move(prompts),
                  {titlePrefix, settingsName, "graphs", kUndo, kRedo}) {
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
    appendRecentFiles(*file, kRecentFiles, kFirstRecent);
    file->Append(kExit, "E&xit");

    wxMenu* edit = newEditMenu();
    edit->Append(kCopy, "&Copy...");
    edit->Append(kDelete, "&Delete...");

    auto* options = new wxMenu;
    appendGroundItems(*options, kHideGround);
    options->Append(kRepresentation, "Vertex &representation...");
    options->Append(kAttributes, "Vertex/Edge &attributes...");
    options->Append(kGround, "&Ground...");
    options->Append(kBackground, "&Background color...");
    options->Append(kVrInterface, "Disable &VR Interface...");
    setMenus(file, edit, options);
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
    createToolBar(kFirstTool, std::move(actions));
}

void GraphEditorFrame::bindEvents() {
    Bind(wxEVT_MENU, &GraphEditorFrame::onCommand, this, kNewGraph,
         kFirstTool + static_cast<int>(toolbarToolCount) - 1);
    Bind(wxEVT_CHAR_HOOK, &GraphEditorFrame::onKey, this);
}

void GraphEditorFrame::onCommand(wxCommandEvent& event) {
    const int id = event.GetId();
    if (id >= kFirstTool) {
        useTool(static_cast<ToolbarTool>(id - kFirstTool));
        return;
    }
    if (id >= kFirstRecent) {
        if (const std::string file = recentFile(id); !file.empty()) {
            const bool own = file.size() > 3 && file.compare(file.size() - 3, 3, ".dg") == 0;
            own ? loadGraph(file) : importGraph(file);
        }
        return;
    }
    if (runGroundItem(m_pane->canvas(), id, kHideGround))
        return;
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

void GraphEditorFrame::onKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE &&
        (m_document.gestureActive() || m_pane->tool().connectionSource())) {
        cancelTools();
        m_pane->canvas().requestRepaint();
        return;
    }
    event.Skip();
}

void GraphEditorFrame::newGraph() {
    if (!confirmDiscard())
        return;
    cancelTools();
    m_document.newGraph();
    sceneReplaced();
}

bool GraphEditorFrame::loadGraph(const std::string& fileName) {
    const std::string name = fileToRead(fileName, graphFilter, "dg");
    if (name.empty())
        return false;
    // The document's reader has written why a load failed to the console.
    if (!m_document.load(name)) {
        console() << "The graph editor kept its graph: '" << name << "' could not be loaded.\n";
        return false;
    }
    graphRead(name);
    return true;
}

void GraphEditorFrame::graphRead(const std::string& name) {
    remember(name);
    sceneReplaced();
    m_pane->canvas().zoomToFit();
}

bool GraphEditorFrame::importGraph(const std::string& fileName) {
    const std::string name = fileToRead(fileName, otherToolsFilter, "graphml;*.gxl;*.dot;*.gv");
    if (name.empty())
        return false;
    bool renamable = false;
    EditResult result = m_document.importGraph(name, false, &renamable);
    if (!result && renamable) {
        std::string reason = result.message;
        while (!reason.empty() && reason.back() == '\n')
            reason.pop_back();
        const wxString question = wxString::Format(renameQuestion, wxString::FromUTF8(reason));
        if (prompts().message(this, question, "Warning", wxYES_NO | wxICON_QUESTION) != wxYES)
            return false;
        result = m_document.importGraph(name, true);
    }
    if (!report(result))
        return false;
    graphRead(name);
    return true;
}

bool GraphEditorFrame::exportGraph(const std::string& fileName) {
    const std::string name = fileToWrite(fileName, otherToolsFilter, "graphml");
    if (name.empty())
        return false;
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
    cancelTools();
    if (!m_document.insertVertex(path, {}))
        return false;
    documentChanged();
    m_pane->canvas().zoomToFit();
    return true;
}

bool GraphEditorFrame::saveGraph(const std::string& fileName) {
    const std::string name = fileToWrite(fileName, graphFilter, "dg");
    if (name.empty())
        return false;
    const bool saved = report(m_document.save(name));
    if (saved)
        remember(name);
    // A save under a new name shows the scene anew (models are found beside the file).
    sceneReplaced();
    return saved;
}

void GraphEditorFrame::adoptGraph(DirectedGraph& graph) {
    cancelTools();
    m_document.adopt(graph);
    sceneReplaced();
    m_pane->zoomToFit();
}

void GraphEditorFrame::layoutGraph() {
    LayoutDialog dialog(this);
    // The user's last choice comes first; one that no longer loads is simply not chosen.
    if (settings())
        if (const std::string kept = settings()->choice(layoutChoice); !kept.empty())
            dialog.choose(kept);
    if (prompts().showModal(dialog) != wxID_OK || !dialog.library())
        return;
    if (settings())
        settings()->setChoice(layoutChoice, dialog.library()->name());
    cancelTools();
    // Painting at once shows the progress without handing control to the user mid-layout.
    report(m_document.layout(*dialog.library(), [this] { m_pane->canvas().paintNow(); }));
    documentChanged();
}

bool GraphEditorFrame::screenshot(const std::string& fileName) {
    return saveCanvasScreenshot(*this, prompts(), m_pane->canvas(), fileName);
}

void GraphEditorFrame::undo() {
    cancelTools();
    m_document.undo();
    documentChanged();
}

void GraphEditorFrame::redo() {
    cancelTools();
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
    GraphObject* element = selectedElementOf(m_document);
    if (!element)
        return;
    cancelTools();
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
    if (prompts().showModal(dialog) != wxID_OK)
        return;
    // A colour left alone keeps its exact value, which the dialog's bytes would round.
    std::optional<TPXrgb> colour;
    if (dialog.colour() != toWxColour(look.colour))
        colour = toRgb(dialog.colour());
    report(m_document.setLook(*vertex, dialog.representation(), colour));
    documentChanged();
}

void GraphEditorFrame::editAttributes() {
    GraphObject* element = selectedElementOf(m_document);
    if (!element)
        return;
    AttributesDialog dialog(this, m_document, *element, prompts(), [this] { documentChanged(); });
    prompts().showModal(dialog);
    documentChanged();
}

void GraphEditorFrame::editGround() {
    GroundDialog dialog(this, m_pane->canvas().helpers().groundSettings());
    if (prompts().showModal(dialog) != wxID_OK)
        return;
    m_pane->canvas().helpers().setGroundSettings(dialog.settings());
    m_pane->canvas().requestRepaint();
}

void GraphEditorFrame::chooseBackground() {
    chooseCanvasBackground(*this, prompts(), m_pane->canvas());
}

void GraphEditorFrame::setVrEnabled(bool enabled) {
    m_pane->canvas().setVrEnabled(enabled);
    GetMenuBar()->SetLabel(kVrInterface,
                           enabled ? "Disable &VR Interface..." : "Enable &VR Interface...");
    m_pane->canvas().requestRepaint();
}

void GraphEditorFrame::showContextMenu(const wxPoint& at) {
    wxMenu menu;
    menu.Append(kRepresentation, "Change representation");
    menu.Append(kAttributes, "Edit attributes");
    menu.Append(kCopy, "Copy object");
    menu.Append(kDelete, "Delete");
    popupMenu(menu, m_pane->canvas(), at);
}

std::optional<std::string> GraphEditorFrame::chooseModel() {
    const wxString name = prompts().fileName(this, modelFilter, "3rd", false);
    if (name.empty())
        return std::nullopt;
    return name.utf8_string();
}

void GraphEditorFrame::sceneReplaced() {
    m_pane->sceneReplaced();
    documentChanged();
}

void GraphEditorFrame::documentChanged() {
    showDocument(m_document.fileName(), m_document.canUndo(), m_document.canRedo());
    m_pane->canvas().requestRepaint();
}

}  // namespace vellum
