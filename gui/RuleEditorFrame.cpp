#include "gui/RuleEditorFrame.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>

#include "base/Console.h"
#include "graph/ElementPositions.h"
#include "graph/GraphReader.h"
#include "graph/Matcher.h"
#include "graph/PreparedRule.h"
#include "graph/RuleApplication.h"
#include "gui/GraphEditorFrame.h"
#include "gui/RuleElementDialog.h"
#include "gui/RulePropertiesDialog.h"
#include "gui/RuleTrialDialog.h"
#include "gui/WxColour.h"
#include "gui/view/ElementLook.h"
#include "gui/view/ScenePainter.h"
#include "gui/view/ScenePicture.h"

namespace vellum {
namespace {

RuleSide other(RuleSide side) {
    return side == RuleSide::Left ? RuleSide::Right : RuleSide::Left;
}

const char* captionOf(RuleSide side) {
    return side == RuleSide::Left ? "left-hand side" : "right-hand side";
}

// The identity of the object that shows `element` in the document's scene; 0 when none.
std::uint32_t identityOf(GraphDocument& document, const GraphObject* element) {
    if (element == nullptr)
        return 0;
    if (element->kind() == GraphObjectKind::Vertex) {
        const TPXnode* object =
            document.scene().objectOf(*static_cast<const DirectedGraphVertex*>(element));
        return object ? object->identity() : 0;
    }
    const GraphEdgeObject* object =
        document.scene().objectOf(*static_cast<const DirectedGraphEdge*>(element));
    return object ? object->identity() : 0;
}

// A swatch of the legend: a coloured square and what the colour means.
wxSizer* legendEntry(wxWindow* parent, const TPXrgb& colour, const char* text) {
    auto* swatch = new wxPanel(parent, wxID_ANY, wxDefaultPosition, wxSize(14, 14));
    swatch->SetBackgroundColour(toWxColour(colour));
    auto* entry = new wxBoxSizer(wxHORIZONTAL);
    entry->Add(swatch, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, 4);
    entry->Add(new wxStaticText(parent, wxID_ANY, text), 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, 16);
    return entry;
}

}  // namespace

RuleEditorFrame::RuleEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts)
    : EditorFrame(parent, wxSize(1100, 640), std::move(prompts),
                  {titlePrefix, settingsName, "rules", kUndo, kRedo}) {
    buildMenus();
    buildToolBar();
    buildBody();
    bindEvents();
    activate(RuleSide::Left);
    documentChanged();
    Show();
}

// The panes leave their canvases, destroyed after this body, with no document to show.
RuleEditorFrame::~RuleEditorFrame() = default;

void RuleEditorFrame::buildMenus() {
    auto* file = new wxMenu;
    file->Append(kNewRule, "&New graphrule...");
    file->Append(kLoadRule, "&Load graphrule...");
    file->Append(kSaveRule, "&Save graphrule...");
    file->Append(kExportPicture, "E&xport picture...");
    file->Append(kTryOnGraph, "&Try on graph...");
    file->Append(kScreenshot, "Screens&hot...");
    appendRecentFiles(*file, kRecentFiles, kFirstRecent);
    file->Append(kExit, "&Close");

    wxMenu* edit = newEditMenu();
    edit->Append(kDelete, "&Delete...");
    edit->Append(kKeepOnRight, "&Keep on the right");
    edit->Append(kAttributes, "Vertex/Edge &attributes...");
    edit->Append(kProperties, "Rule &properties...");

    auto* options = new wxMenu;
    appendGroundItems(*options, kHideGround);
    options->Append(kBackground, "&Background color...");
    options->AppendCheckItem(kCoupleCameras, "&Couple the cameras");
    options->Check(kCoupleCameras, m_coupled);
    setMenus(file, edit, options);
}

void RuleEditorFrame::buildToolBar() {
    EditingToolbar::Actions actions;
    actions.mode = [this](EditMode mode) {
        m_left->tool().setMode(mode);
        m_right->tool().setMode(mode);
    };
    actions.view = [this](TPXviewMode mode) {
        activePane().setView(mode);
        cameraMoved(m_active);
    };
    actions.locks = [this](const AxisLocks& locks) {
        m_document.side(RuleSide::Left).setLocks(locks);
        m_document.side(RuleSide::Right).setLocks(locks);
    };
    actions.remove = [this] { deleteSelected(); };
    actions.undo = [this] { undo(); };
    actions.redo = [this] { redo(); };
    actions.zoom = [this] {
        activePane().zoomToFit();
        cameraMoved(m_active);
    };
    createToolBar(kFirstTool, std::move(actions), zoomTip);
}

std::unique_ptr<GraphPane> RuleEditorFrame::makePane(wxWindow* parent, RuleSide side) {
    auto pane = std::make_unique<GraphPane>(
        parent, m_document.side(side),
        EditingTool::Hooks{
            [this, side] {
                selectionFollows(side);
                documentChanged();
            },
            {},
            [this, side](const wxPoint& at) { showContextMenu(side, at); },
        },
        [this, side] { activate(side); });
    pane->canvas().setCameraListener([this, side] { cameraMoved(side); });
    // Coupled, both sides fit and orbit the whole rule, so they agree.
    pane->canvas().setBoundsProvider([this, side] {
        const TPXboundingBox own = m_document.side(side).scene().bounds();
        return m_coupled ? unionOf(own, m_document.side(other(side)).scene().bounds()) : own;
    });
    return pane;
}

void RuleEditorFrame::buildBody() {
    auto* body = new wxPanel(this);
    auto* sides = new wxBoxSizer(wxHORIZONTAL);
    for (RuleSide side : {RuleSide::Left, RuleSide::Right}) {
        auto* column = new wxBoxSizer(wxVERTICAL);
        m_captions[static_cast<int>(side)] = new wxStaticText(body, wxID_ANY, captionOf(side));
        column->Add(m_captions[static_cast<int>(side)], 0, wxALL, 4);
        std::unique_ptr<GraphPane> pane = makePane(body, side);
        column->Add(&pane->canvas(), 1, wxEXPAND);
        (side == RuleSide::Left ? m_left : m_right) = std::move(pane);
        sides->Add(column, 1, wxEXPAND | wxALL, 2);
    }
    auto* legend = new wxBoxSizer(wxHORIZONTAL);
    legend->Add(legendEntry(body, {0.2, 0.5, 1},
                            "kept: \"(n)\", the same number and colour on "
                            "both sides"));
    legend->Add(legendEntry(body, RuleDocument::deletedColour, "deleted: left only"));
    legend->Add(legendEntry(body, RuleDocument::createdColour, "created: right only"));
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(sides, 1, wxEXPAND);
    top->Add(legend, 0, wxALL, 6);
    body->SetSizer(top);
}

void RuleEditorFrame::bindEvents() {
    Bind(wxEVT_MENU, &RuleEditorFrame::onCommand, this, kNewRule,
         kFirstTool + static_cast<int>(toolbarToolCount) - 1);
    Bind(wxEVT_CHAR_HOOK, &RuleEditorFrame::onKey, this);
}

void RuleEditorFrame::onCommand(wxCommandEvent& event) {
    const int id = event.GetId();
    if (toolBar().handle(id) || runGroundItem(activePane().canvas(), id, kHideGround))
        return;
    if (id >= kFirstRecent && id < kFirstTool) {
        if (const std::string file = recentFile(id); !file.empty())
            loadRule(file);
        return;
    }
    switch (id) {
        case kNewRule:
            return newRule();
        case kLoadRule:
            loadRule();
            return;
        case kSaveRule:
            saveRule();
            return;
        case kExportPicture:
            exportPicture();
            return;
        case kTryOnGraph:
            tryOnGraph();
            return;
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
        case kDelete:
            return deleteSelected();
        case kKeepOnRight:
            return keepSelected();
        case kAttributes:
            return editAttributes();
        case kProperties:
            return editProperties();
        case kBackground:
            return chooseCanvasBackground(*this, prompts(), activePane().canvas());
        case kCoupleCameras:
            return setCoupled(!m_coupled);
        default:
            event.Skip();
    }
}

void RuleEditorFrame::onKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE) {
        cancelTools();
        activePane().canvas().requestRepaint();
        return;
    }
    event.Skip();
}

void RuleEditorFrame::activate(RuleSide side) {
    m_active = side;
    for (RuleSide each : {RuleSide::Left, RuleSide::Right}) {
        wxStaticText* caption = m_captions[static_cast<int>(each)];
        wxFont font = caption->GetFont();
        font.SetWeight(each == side ? wxFONTWEIGHT_BOLD : wxFONTWEIGHT_NORMAL);
        caption->SetFont(font);
        caption->SetLabel(wxString(captionOf(each)) + (each == side ? "  (toolbar)" : ""));
    }
    toolBar().showView(activePane().canvas().viewMode());
}

void RuleEditorFrame::setCoupled(bool coupled) {
    m_coupled = coupled;
    GetMenuBar()->Check(kCoupleCameras, coupled);
    if (coupled)
        cameraMoved(m_active);
}

void RuleEditorFrame::cameraMoved(RuleSide side) {
    if (!m_coupled)
        return;
    TPXCanvas& from = pane(side).canvas();
    TPXCanvas& to = pane(other(side)).canvas();
    to.setViewMode(from.viewMode());
    to.navigator().camera() = from.camera();
    to.requestRepaint();
}

void RuleEditorFrame::cancelTools() {
    m_left->tool().cancel();
    m_right->tool().cancel();
}

void RuleEditorFrame::newRule() {
    if (!confirmDiscard())
        return;
    cancelTools();
    m_document.newRule();
    scenesReplaced();
}

bool RuleEditorFrame::loadRule(const std::string& fileName) {
    const std::string name = fileToRead(fileName, ruleFilter, "drl");
    if (name.empty())
        return false;
    if (!report(m_document.load(name))) {
        console() << "The rule editor kept its rule: '" << name << "' could not be loaded.\n";
        return false;
    }
    remember(name);
    scenesReplaced();
    activePane().zoomToFit();
    cameraMoved(m_active);
    return true;
}

bool RuleEditorFrame::saveRule(const std::string& fileName) {
    const std::string name = fileToWrite(fileName, ruleFilter, "drl");
    if (name.empty())
        return false;
    const bool saved = report(m_document.save(name));
    if (saved)
        remember(name);
    documentChanged();
    return saved;
}

bool RuleEditorFrame::exportPicture(const std::string& fileName) {
    const std::string name = prompts().fileNameOr(fileName, this, pngFilter, "png", true);
    if (name.empty())
        return false;
    const std::unique_ptr<DirectedGraphRule> rule = m_document.fileRule();
    std::string error;
    TPXCanvas::releaseCurrentContext();
    const std::optional<TPXimage> picture = rulePicture(*rule, pictureWidth, pictureHeight, error);
    if (!picture || !writePicture(*picture, name, error))
        return report(EditResult::failure("Alert", error));
    return true;
}

GraphEditorFrame* RuleEditorFrame::tryOnGraph(const std::string& fileName) {
    const std::string name = prompts().fileNameOr(fileName, this, graphFilter, "dg", false);
    if (name.empty())
        return nullptr;
    const std::unique_ptr<DirectedGraphRule> rule = m_document.fileRule();
    DirectedGraph host;
    {
        ConsoleCapture reason(true);
        if (!vellum::loadGraph(name, host)) {
            report(EditResult::failure("Alert", reason.text()));
            return nullptr;
        }
    }
    std::vector<std::string> lines;
    {
        const ElementPositions positions(host);
        for (const GraphMorphism& occurrence : rule->prepared().matcher().findAll(host))
            lines.push_back(positions.line(occurrence));
    }
    RuleTrialDialog dialog(this, name, lines);
    if (prompts().showModal(dialog) != wxID_OK)
        return nullptr;
    const int result = applyRule(&host, rule.get(), dialog.mode());
    setOutUnplaced(host);
    auto* editor = new GraphEditorFrame(GetParent());
    editor->adoptGraph(host);
    prompts().message(
        this,
        wxString::FromUTF8("Result " + std::to_string(result) + " in mode " +
                           std::to_string(dialog.mode()) + ": " + applyResultText(result)),
        "Try on graph", wxOK | wxICON_INFORMATION);
    return editor;
}

bool RuleEditorFrame::screenshot(const std::string& fileName) {
    return saveCanvasScreenshot(*this, prompts(), activePane().canvas(), fileName);
}

void RuleEditorFrame::undo() {
    cancelTools();
    m_document.undo();
    documentChanged();
}

void RuleEditorFrame::redo() {
    cancelTools();
    m_document.redo();
    documentChanged();
}

void RuleEditorFrame::deleteSelected() {
    GraphObject* element = selectedElementOf(activeDocument());
    if (!element)
        return;
    cancelTools();
    m_document.remove(m_active, *element);
    m_document.side(RuleSide::Left).select(0);
    m_document.side(RuleSide::Right).select(0);
    documentChanged();
}

void RuleEditorFrame::keepSelected() {
    if (m_active != RuleSide::Left)
        return void(report(EditResult::failure(
            "Warning", "Select a vertex or an edge of the left-hand side to keep it.")));
    GraphObject* element = selectedElementOf(activeDocument());
    if (!element)
        return;
    cancelTools();
    if (element->kind() == GraphObjectKind::Vertex)
        m_document.keepOnRight(*static_cast<DirectedGraphVertex*>(element));
    else
        m_document.keepOnRight(*static_cast<DirectedGraphEdge*>(element));
    selectionFollows(RuleSide::Left);
    documentChanged();
}

void RuleEditorFrame::editAttributes() {
    GraphObject* element = selectedElementOf(activeDocument());
    if (!element)
        return;
    RuleElementDialog dialog(this, m_document, m_active, *element, prompts(),
                             [this] { documentChanged(); });
    prompts().showModal(dialog);
    documentChanged();
}

void RuleEditorFrame::editProperties() {
    RulePropertiesDialog dialog(this, m_document);
    if (prompts().showModal(dialog) != wxID_OK)
        return;
    report(m_document.setProperties(dialog.name(), dialog.condition()));
    documentChanged();
}

void RuleEditorFrame::showContextMenu(RuleSide side, const wxPoint& at) {
    activate(side);
    wxMenu menu;
    menu.Append(kAttributes, "Edit attributes");
    if (side == RuleSide::Left)
        menu.Append(kKeepOnRight, "Keep on the right");
    menu.Append(kDelete, "Delete");
    popupMenu(menu, pane(side).canvas(), at);
}

void RuleEditorFrame::selectionFollows(RuleSide side) {
    GraphDocument& here = m_document.side(side);
    GraphDocument& there = m_document.side(other(side));
    const GraphObject* element = here.elementOf(here.selected());
    const GraphObject* partner = element ? m_document.partnerOf(side, *element) : nullptr;
    there.select(identityOf(there, partner));
}

void RuleEditorFrame::scenesReplaced() {
    m_left->sceneReplaced();
    m_right->sceneReplaced();
    documentChanged();
}

void RuleEditorFrame::documentChanged() {
    showDocument(m_document.fileName(), m_document.canUndo(), m_document.canRedo());
    // The selection on both sides wears the halo, so a kept element's partner shows at once.
    for (RuleSide side : {RuleSide::Left, RuleSide::Right}) {
        GraphDocument& document = m_document.side(side);
        document.scene().clearHighlights();
        if (const GraphObject* element = document.elementOf(document.selected()))
            document.scene().highlight(*element);
        pane(side).canvas().requestRepaint();
    }
}

}  // namespace vellum
