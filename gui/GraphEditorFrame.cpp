#include "gui/GraphEditorFrame.h"

#include <wx/bmpbndl.h>
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
namespace {

constexpr int kIconSide = 24;

struct ModeTool {
    ToolbarTool tool;
    EditMode mode;
};
constexpr ModeTool kModeTools[] = {
    {ToolbarTool::Select, EditMode::Select},
    {ToolbarTool::ObjectMove, EditMode::Move},
    {ToolbarTool::ObjectRotate, EditMode::Rotate},
    {ToolbarTool::ObjectScale, EditMode::Scale},
    {ToolbarTool::VertexSphere, EditMode::InsertSphere},
    {ToolbarTool::VertexCone, EditMode::InsertCone},
    {ToolbarTool::VertexCylinder, EditMode::InsertCylinder},
    {ToolbarTool::VertexCube, EditMode::InsertCube},
    {ToolbarTool::VertexUser, EditMode::InsertUser},
    {ToolbarTool::Connection, EditMode::Connect},
};

struct ViewTool {
    ToolbarTool tool;
    TPXviewMode mode;
};
constexpr ViewTool kViewTools[] = {
    {ToolbarTool::ViewPerspective, TPXviewMode::Perspective},
    {ToolbarTool::ViewTop, TPXviewMode::Top},
    {ToolbarTool::ViewFront, TPXviewMode::Front},
    {ToolbarTool::ViewSide, TPXviewMode::Left},
    {ToolbarTool::ViewWalk, TPXviewMode::Walk},
    {ToolbarTool::ViewFly, TPXviewMode::Fly},
};

constexpr ToolbarTool kConstraintTools[] = {
    ToolbarTool::ConstrainPx, ToolbarTool::ConstrainPy, ToolbarTool::ConstrainPz,
    ToolbarTool::ConstrainOx, ToolbarTool::ConstrainOy, ToolbarTool::ConstrainOz,
};

// Whether a tool stays pressed (views, mouse tools, constraints) rather than acting once.
bool isToggle(ToolbarTool tool) {
    switch (tool) {
        case ToolbarTool::Delete:
        case ToolbarTool::Undo:
        case ToolbarTool::Redo:
        case ToolbarTool::Zoom:
            return false;
        default:
            return true;
    }
}

wxBitmapBundle bundleOf(const ToolIcon& icon) {
    const std::string svg(icon.svg);
    return wxBitmapBundle::FromSVG(svg.c_str(), wxSize(kIconSide, kIconSide));
}

}  // namespace

GraphEditorFrame::GraphEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts)
    : wxFrame(parent, wxID_ANY, wxString(titlePrefix) + "untitled", wxDefaultPosition,
              wxSize(1040, 700)),
      m_prompts(prompts ? std::move(prompts) : std::make_unique<EditorPrompts>()),
      m_tool(m_document, EditingTool::Hooks{
                             [this] { documentChanged(); },
                             [this] { return chooseModel(); },
                             [this](const wxPoint& at) { showContextMenu(at); },
                         }) {
    buildMenus();
    buildToolBar();
    m_canvas = new TPXCanvas(this);
    m_canvas->setMouseHandler(&m_tool);
    sceneReplaced();
    bindEvents();
    Show();
}

void GraphEditorFrame::setPrompts(std::unique_ptr<EditorPrompts> prompts) {
    m_prompts = prompts ? std::move(prompts) : std::make_unique<EditorPrompts>();
}

GraphEditorFrame::~GraphEditorFrame() {
    // The canvas is destroyed after this body, with the document it shows already gone.
    m_canvas->setMouseHandler(nullptr);
    m_canvas->setScene(nullptr);
}

void GraphEditorFrame::buildMenus() {
    auto* file = new wxMenu;
    file->Append(kNewGraph, "&New graph...");
    file->Append(kLoadGraph, "&Load graph...");
    file->Append(kSaveGraph, "&Save graph...");
    file->Append(kLayoutGraph, "L&ayout graph...");
    file->Append(kScreenshot, "Screens&hot...");
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
    m_toolBar = CreateToolBar(wxTB_HORIZONTAL | wxTB_FLAT);
    m_toolBar->SetToolBitmapSize(wxSize(kIconSide, kIconSide));
    for (const ToolIcon& icon : toolIcons()) {
        const wxBitmapBundle normal = bundleOf(icon);
        wxBitmapBundle disabled;
        if (!icon.disabledBitmap.empty())
            disabled = wxBitmapBundle::FromBitmap(
                normal.GetBitmap(wxSize(kIconSide, kIconSide)).ConvertToDisabled());
        const wxString tip(std::string(icon.tooltip));
        m_toolBar->AddTool(toolId(icon.tool), tip, normal, disabled,
                           isToggle(icon.tool) ? wxITEM_CHECK : wxITEM_NORMAL, tip);
    }
    m_toolBar->Realize();
    m_toolBar->ToggleTool(toolId(ToolbarTool::ViewPerspective), true);
    m_toolBar->ToggleTool(toolId(ToolbarTool::Select), true);
}

void GraphEditorFrame::bindEvents() {
    Bind(wxEVT_MENU, &GraphEditorFrame::onCommand, this, kNewGraph,
         kFirstTool + static_cast<int>(toolbarToolCount) - 1);
    Bind(wxEVT_CLOSE_WINDOW, &GraphEditorFrame::onClose, this);
    Bind(wxEVT_CHAR_HOOK, &GraphEditorFrame::onKey, this);
}

void GraphEditorFrame::onCommand(wxCommandEvent& event) {
    const int id = event.GetId();
    if (id >= kFirstTool) {
        useTool(static_cast<ToolbarTool>(id - kFirstTool));
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
            return setVrEnabled(!m_canvas->vrEnabled());
        default:
            event.Skip();
    }
}

void GraphEditorFrame::onClose(wxCloseEvent& event) {
    if (event.CanVeto() && !confirmDiscard()) {
        event.Veto();
        return;
    }
    m_tool.cancel();
    Destroy();
}

void GraphEditorFrame::onKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE &&
        (m_document.gestureActive() || m_tool.connectionSource())) {
        m_tool.cancel();
        m_canvas->requestRepaint();
        return;
    }
    event.Skip();
}

void GraphEditorFrame::useTool(ToolbarTool tool) {
    for (const ModeTool& entry : kModeTools)
        if (entry.tool == tool)
            return chooseMode(entry.tool, entry.mode);
    for (const ViewTool& entry : kViewTools)
        if (entry.tool == tool)
            return chooseView(entry.tool, entry.mode);
    switch (tool) {
        case ToolbarTool::Delete:
            return deleteSelected();
        case ToolbarTool::Undo:
            return undo();
        case ToolbarTool::Redo:
            return redo();
        case ToolbarTool::Zoom:
            m_canvas->zoomToFit();
            m_canvas->requestRepaint();
            return;
        default:
            return updateLocks();  // a constraint tool
    }
}

void GraphEditorFrame::chooseMode(ToolbarTool tool, EditMode mode) {
    // The mouse tools behave as one group of which exactly one is pressed.
    for (const ModeTool& entry : kModeTools)
        m_toolBar->ToggleTool(toolId(entry.tool), entry.tool == tool);
    m_tool.setMode(mode);
}

void GraphEditorFrame::chooseView(ToolbarTool tool, TPXviewMode mode) {
    for (const ViewTool& entry : kViewTools)
        m_toolBar->ToggleTool(toolId(entry.tool), entry.tool == tool);
    m_canvas->setViewMode(mode);
    m_canvas->requestRepaint();
}

void GraphEditorFrame::updateLocks() {
    AxisLocks locks;
    for (int axis = 0; axis < 3; ++axis) {
        locks.translation[axis] = m_toolBar->GetToolState(toolId(kConstraintTools[axis]));
        locks.rotation[axis] = m_toolBar->GetToolState(toolId(kConstraintTools[3 + axis]));
    }
    m_document.setLocks(locks);
}

bool GraphEditorFrame::confirmDiscard() {
    if (!m_document.modified())
        return true;
    return m_prompts->message(this, discardQuestion, "Alert", wxYES_NO | wxICON_QUESTION) == wxYES;
}

void GraphEditorFrame::newGraph() {
    if (!confirmDiscard())
        return;
    m_tool.cancel();
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
    m_tool.cancel();
    // The document's reader has written why a load failed to the console.
    if (!m_document.load(name)) {
        console() << "The graph editor kept its graph: '" << name << "' could not be loaded.\n";
        return false;
    }
    sceneReplaced();
    m_canvas->zoomToFit();
    return true;
}

bool GraphEditorFrame::saveGraph(const std::string& fileName) {
    std::string name = fileName;
    if (name.empty())
        name = m_prompts->fileName(this, graphFilter, "dg", true).utf8_string();
    if (name.empty())
        return false;
    m_tool.cancel();
    const bool saved = report(m_document.save(name));
    // A save under a new name shows the scene anew (models are found beside the file).
    sceneReplaced();
    return saved;
}

void GraphEditorFrame::layoutGraph() {
    LayoutDialog dialog(this);
    if (m_prompts->showModal(dialog) != wxID_OK || !dialog.library())
        return;
    m_tool.cancel();
    // Painting at once shows the progress without handing control to the user mid-layout.
    report(m_document.layout(*dialog.library(), [this] { m_canvas->paintNow(); }));
    documentChanged();
}

bool GraphEditorFrame::screenshot(const std::string& fileName) {
    return saveCanvasScreenshot(*this, *m_prompts, *m_canvas, fileName);
}

void GraphEditorFrame::undo() {
    m_tool.cancel();
    m_document.undo();
    documentChanged();
}

void GraphEditorFrame::redo() {
    m_tool.cancel();
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
    m_tool.cancel();
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
    GroundDialog dialog(this, m_canvas->helpers().groundSettings());
    if (m_prompts->showModal(dialog) != wxID_OK)
        return;
    m_canvas->helpers().setGroundSettings(dialog.settings());
    m_canvas->requestRepaint();
}

void GraphEditorFrame::chooseBackground() {
    chooseCanvasBackground(*this, *m_prompts, *m_canvas);
}

void GraphEditorFrame::setVrEnabled(bool enabled) {
    m_canvas->setVrEnabled(enabled);
    GetMenuBar()->SetLabel(kVrInterface,
                           enabled ? "Disable &VR Interface..." : "Enable &VR Interface...");
    m_canvas->requestRepaint();
}

void GraphEditorFrame::setGround(TPXgroundMode mode) {
    setCanvasGround(*m_canvas, mode);
}

void GraphEditorFrame::showContextMenu(const wxPoint& at) {
    wxMenu menu;
    menu.Append(kRepresentation, "Change representation");
    menu.Append(kAttributes, "Edit attributes");
    menu.Append(kCopy, "Copy object");
    menu.Append(kDelete, "Delete");
    m_prompts->popupMenu(*this, menu, ScreenToClient(m_canvas->ClientToScreen(at)));
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
    m_canvas->setScene(m_document.scene().root());
    documentChanged();
}

void GraphEditorFrame::documentChanged() {
    updateTitle();
    m_toolBar->EnableTool(toolId(ToolbarTool::Undo), m_document.canUndo());
    m_toolBar->EnableTool(toolId(ToolbarTool::Redo), m_document.canRedo());
    GetMenuBar()->Enable(kUndo, m_document.canUndo());
    GetMenuBar()->Enable(kRedo, m_document.canRedo());
    m_canvas->requestRepaint();
}

void GraphEditorFrame::updateTitle() {
    const std::string& name = m_document.fileName();
    SetTitle(wxString(titlePrefix) +
             (name.empty() ? wxString("untitled") : wxString::FromUTF8(name)));
}

}  // namespace vellum
