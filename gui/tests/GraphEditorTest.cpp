// The graph editor in a real frame under an X display, driven by the toolbar, menu and mouse
// events a user's input produces, with every question answered by a script: its title, tools and
// menus, inserting, connecting, moving under a constraint, undo and redo, attributes, files, the
// context menu, the modified prompt and a screenshot.
#include <gtest/gtest.h>
#include <wx/menu.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/Console.h"
#include "base/Paths.h"
#include "graph/DirectedGraphEdge.h"
#include "graph/DirectedGraphVertex.h"
#include "graph/GraphReader.h"
#include "gui/AttributeText.h"
#include "gui/AttributesDialog.h"
#include "gui/GraphEditorFrame.h"
#include "gui/GroundDialog.h"
#include "gui/LayoutDialog.h"
#include "gui/RepresentationDialog.h"
#include "gui/tests/ModalDialogScript.h"
#include "gui/view/ElementLook.h"
#include "gui/view/PngWriter.h"
#include "gui/view/tests/OffscreenFixture.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::pixelAt;
using test::Rgb;

struct Asked {
    std::string text;
    std::string title;
};

// Answers the editor's questions from queues and notes what it asked.
class ScriptedPrompts : public EditorPrompts {
  public:
    int message(wxWindow*, const wxString& text, const wxString& title, long style) override {
        asked.push_back({text.utf8_string(), title.utf8_string()});
        if (!(style & wxYES_NO))
            return wxOK;
        const bool yes = answers.empty() || answers.front();
        if (!answers.empty())
            answers.pop_front();
        return yes ? wxYES : wxNO;
    }
    wxString fileName(wxWindow*, const wxString& filter, const wxString& extension, bool) override {
        filters.push_back((filter + " ." + extension).utf8_string());
        if (files.empty())
            return {};
        const std::string name = files.front();
        files.pop_front();
        return wxString::FromUTF8(name);
    }
    std::optional<wxColour> colour(wxWindow*, const wxColour&) override { return chosenColour; }
    int showModal(wxDialog& dialog) override { return onDialog ? onDialog(dialog) : wxID_CANCEL; }
    void popupMenu(wxWindow& window, wxMenu& menu, const wxPoint&) override {
        menuItems.clear();
        for (const wxMenuItem* item : menu.GetMenuItems())
            menuItems.push_back(item->GetItemLabel().utf8_string());
        if (menuChoice.empty())
            return;
        const int id = menu.FindItem(menuChoice);
        wxCommandEvent event(wxEVT_MENU, id);
        window.ProcessWindowEvent(event);
    }

    std::vector<Asked> asked;
    std::deque<bool> answers;  // to yes/no questions; yes when empty
    std::deque<std::string> files;
    std::vector<std::string> filters;
    std::optional<wxColour> chosenColour;
    std::function<int(wxDialog&)> onDialog;
    std::vector<std::string> menuItems;
    std::string menuChoice;
};

class GraphEditorTest : public test::FrameTest<GraphEditorFrame, ScriptedPrompts> {
  protected:
    GraphEditorTest() : FrameTest({480, 400}) {}
    void SetUp() override {
        FrameTest::SetUp();
        if (!runs())
            return;
        canvasSize_ = frame_->canvas().GetClientSize();
        centre_ = wxPoint(canvasSize_.x / 2, canvasSize_.y / 2);
    }
    // Presses a tool as a click on it does: a toggle tool changes its state first.
    void tool(ToolbarTool which, std::optional<bool> state = {}) {
        const int id = GraphEditorFrame::toolId(which);
        if (state)
            frame_->GetToolBar()->ToggleTool(id, *state);
        command(id);
    }
    bool mouse(wxEventType type, wxPoint at, bool left = false) {
        wxMouseEvent event(type);
        event.SetPosition(at);
        event.m_leftDown = left;
        event.SetEventObject(&frame_->canvas());
        return frame_->canvas().GetEventHandler()->ProcessEvent(event);
    }
    void click(wxPoint at) {
        mouse(wxEVT_LEFT_DOWN, at, true);
        mouse(wxEVT_LEFT_UP, at);
    }
    void drag(wxPoint from, wxPoint to) {
        mouse(wxEVT_LEFT_DOWN, from, true);
        for (int step = 1; step <= 4; ++step)
            mouse(wxEVT_MOTION, from + (to - from) * step / 4, true);
        mouse(wxEVT_LEFT_UP, to);
    }
    // A vertex inserted by the tool with a click at `at` of the top view.
    DirectedGraphVertex* insertAt(ToolbarTool insertTool, wxPoint at) {
        tool(ToolbarTool::ViewTop, true);
        tool(insertTool, true);
        const std::size_t before = graph().vertexCount();
        click(at);
        if (graph().vertexCount() != before + 1)
            return nullptr;
        DirectedGraphVertex* newest = nullptr;
        for (DirectedGraphVertex& vertex : graph().vertices())
            newest = &vertex;
        return newest;
    }
    DirectedGraph& graph() { return frame_->document().graph(); }
    TPXp3 positionOf(DirectedGraphVertex& vertex) { return readVertexLook(vertex).position; }
    std::string messages() const {
        std::string all;
        for (const Asked& a : prompts_->asked)
            all += a.title + ": " + a.text + "\n";
        return all;
    }

    wxSize canvasSize_;
    wxPoint centre_;
};

TEST_F(GraphEditorTest, ShowsItsTitleToolsAndMenus) {
    EXPECT_EQ(frame_->GetTitle(), "3D Graph Editor - untitled");

    wxToolBar* bar = frame_->GetToolBar();
    ASSERT_EQ(bar->GetToolsCount(), toolbarToolCount);
    for (std::size_t i = 0; i < toolbarToolCount; ++i) {
        const wxToolBarToolBase* item = bar->GetToolByPos(static_cast<int>(i));
        EXPECT_EQ(item->GetShortHelp().utf8_string(), toolIcons()[i].tooltip) << i;
        EXPECT_TRUE(item->GetNormalBitmap().IsOk()) << i;
    }
    EXPECT_EQ(bar->GetToolByPos(13)->GetShortHelp(), "Zoom out until the hole graph is visible.");
    EXPECT_EQ(bar->GetToolByPos(25)->GetShortHelp(), "Set's a constrain for z rotation.");

    const std::vector<std::pair<std::string, std::vector<std::string>>> menus = {
        {"&File",
         {"&New graph...", "&Load graph...", "&Save graph...", "&Import...", "&Export...",
          "L&ayout graph...", "Screens&hot...", "Recent &files", "E&xit"}},
        {"&Edit", {"&Undo...", "&Redo...", "&Copy...", "&Delete..."}},
        {"&Options",
         {"&Hide ground...", "&Wireframe ground...", "&Solid ground...", "&Transparent ground...",
          "Vertex &representation...", "Vertex/Edge &attributes...", "&Ground...",
          "&Background color...", "Disable &VR Interface..."}},
    };
    wxMenuBar* menuBar = frame_->GetMenuBar();
    ASSERT_EQ(menuBar->GetMenuCount(), menus.size());
    for (std::size_t m = 0; m < menus.size(); ++m) {
        EXPECT_EQ(menuBar->GetMenuLabel(m).utf8_string(), menus[m].first);
        std::vector<std::string> items;
        for (const wxMenuItem* item : menuBar->GetMenu(m)->GetMenuItems())
            items.push_back(item->GetItemLabel().utf8_string());
        EXPECT_EQ(items, menus[m].second);
    }

    command(GraphEditorFrame::kVrInterface);
    EXPECT_FALSE(frame_->canvas().vrEnabled());
    EXPECT_EQ(menuBar->GetLabel(GraphEditorFrame::kVrInterface), "Enable &VR Interface...");
    command(GraphEditorFrame::kVrInterface);
    EXPECT_EQ(menuBar->GetLabel(GraphEditorFrame::kVrInterface), "Disable &VR Interface...");
}

TEST_F(GraphEditorTest, InsertToolsPutEachKindOfVertexOnTheGroundUnderTheClick) {
    prompts_->files = {"robot.3rd"};
    const struct {
        ToolbarTool tool;
        const char* representation;
    } rows[] = {
        {ToolbarTool::VertexSphere, "sphere"},     {ToolbarTool::VertexCone, "cone"},
        {ToolbarTool::VertexCylinder, "cylinder"}, {ToolbarTool::VertexCube, "cube"},
        {ToolbarTool::VertexUser, "robot.3rd"},
    };
    int column = 0;
    for (const auto& row : rows) {
        DirectedGraphVertex* vertex = insertAt(row.tool, centre_ + wxPoint(60 * column - 120, 0));
        ASSERT_NE(vertex, nullptr) << row.representation;
        EXPECT_EQ(readVertexLook(*vertex).representation, row.representation);
        const TPXp3 at = positionOf(*vertex);
        EXPECT_DOUBLE_EQ(at.y(), 0.0) << row.representation;
        // Left of the centre is -x in the top view, right of it +x.
        EXPECT_EQ(at.x() < -0.1, column < 2) << row.representation << " at x " << at.x();
        EXPECT_EQ(at.x() > 0.1, column > 2) << row.representation << " at x " << at.x();
        EXPECT_NEAR(at.z(), 0.0, 1e-6) << row.representation;
        ++column;
    }
    EXPECT_EQ(frame_->document().scene().vertexCount(), 5u);
    ASSERT_EQ(prompts_->filters.size(), 1u);
    EXPECT_EQ(prompts_->filters[0], "3D Model (*.3rd) .3rd");

    // A cancelled model file inserts nothing; a click in a side view inserts at the origin.
    EXPECT_EQ(insertAt(ToolbarTool::VertexUser, centre_), nullptr);
    tool(ToolbarTool::ViewFront, true);
    tool(ToolbarTool::VertexCube, true);
    click(centre_ + wxPoint(50, 30));
    ASSERT_EQ(graph().vertexCount(), 6u);
    DirectedGraphVertex* last = nullptr;
    for (DirectedGraphVertex& vertex : graph().vertices())
        last = &vertex;
    const TPXp3 origin = positionOf(*last);
    EXPECT_EQ(origin.x() == 0 && origin.y() == 0 && origin.z() == 0, true);
}

TEST_F(GraphEditorTest, ConnectJoinsTheFirstClickedVertexToTheSecond) {
    const wxPoint left = centre_ - wxPoint(80, 0), right = centre_ + wxPoint(80, 0);
    DirectedGraphVertex* source = insertAt(ToolbarTool::VertexSphere, left);
    DirectedGraphVertex* target = insertAt(ToolbarTool::VertexCube, right);
    ASSERT_TRUE(source && target);

    tool(ToolbarTool::Connection, true);
    click(right);
    click(centre_ + wxPoint(0, 150));  // beside every vertex: starts over
    EXPECT_EQ(frame_->tool().connectionSource(), nullptr);
    click(left);
    EXPECT_EQ(frame_->tool().connectionSource(), source);
    // The preview runs from the source, under the first click, to the mouse.
    mouse(wxEVT_MOTION, centre_ + wxPoint(20, 70));
    ASSERT_TRUE(frame_->tool().preview().has_value());
    EXPECT_LE(std::abs(frame_->tool().preview()->from.x - left.x), 2);
    EXPECT_LE(std::abs(frame_->tool().preview()->from.y - left.y), 2);
    EXPECT_EQ(frame_->tool().preview()->to, centre_ + wxPoint(20, 70));
    click(right);
    ASSERT_EQ(graph().edgeCount(), 1u);
    EXPECT_FALSE(frame_->tool().preview().has_value());
    const DirectedGraphEdge& edge = *graph().edges().begin();
    EXPECT_EQ(edge.source(), source);
    EXPECT_EQ(edge.target(), target);
    EXPECT_EQ(frame_->document().scene().edgeCount(), 1u);
}

TEST_F(GraphEditorTest, MoveKeepsLockedAxesAndUndoRedoRestoreEachPlace) {
    DirectedGraphVertex* vertex = insertAt(ToolbarTool::VertexCube, centre_);
    ASSERT_NE(vertex, nullptr);
    const TPXp3 start = positionOf(*vertex);

    // The top view: horizontal motion is x, vertical motion is z; x is locked.
    tool(ToolbarTool::ConstrainPx, true);
    tool(ToolbarTool::ObjectMove, true);
    drag(centre_, centre_ + wxPoint(60, 40));
    const TPXp3 moved = positionOf(*vertex);
    EXPECT_DOUBLE_EQ(moved.x(), start.x());
    EXPECT_NEAR(moved.y(), start.y(), 1e-9);
    EXPECT_GT(moved.z(), start.z() + 0.5) << "the vertex should follow the mouse down the screen";

    // Unlocked, x follows; Escape during a drag puts it back.
    tool(ToolbarTool::ConstrainPx, false);
    mouse(wxEVT_LEFT_DOWN, centre_ + wxPoint(0, 40), true);
    mouse(wxEVT_MOTION, centre_ + wxPoint(50, 40), true);
    EXPECT_GT(positionOf(*vertex).x(), start.x() + 0.5);
    wxKeyEvent escape(wxEVT_CHAR_HOOK);
    escape.m_keyCode = WXK_ESCAPE;
    frame_->ProcessWindowEvent(escape);
    mouse(wxEVT_LEFT_UP, centre_ + wxPoint(50, 40));
    EXPECT_DOUBLE_EQ(positionOf(*vertex).x(), moved.x());
    EXPECT_DOUBLE_EQ(positionOf(*vertex).z(), moved.z());

    tool(ToolbarTool::Undo);  // the move
    EXPECT_DOUBLE_EQ(positionOf(*vertex).z(), start.z());
    command(GraphEditorFrame::kUndo);  // the insertion
    EXPECT_EQ(graph().vertexCount(), 0u);
    command(GraphEditorFrame::kRedo);
    tool(ToolbarTool::Redo);
    ASSERT_EQ(graph().vertexCount(), 1u);
    EXPECT_DOUBLE_EQ(positionOf(*graph().firstVertex()).z(), moved.z());
    EXPECT_FALSE(frame_->GetToolBar()->GetToolEnabled(GraphEditorFrame::toolId(ToolbarTool::Redo)));
}

TEST_F(GraphEditorTest, RotateAndScaleDragsChangeOnlyTheirPlacement) {
    DirectedGraphVertex* vertex = insertAt(ToolbarTool::VertexCube, centre_);
    ASSERT_NE(vertex, nullptr);
    tool(ToolbarTool::ConstrainOx, true);
    tool(ToolbarTool::ObjectRotate, true);
    drag(centre_, centre_ + wxPoint(40, 40));
    VertexLook look = readVertexLook(*vertex);
    EXPECT_DOUBLE_EQ(look.orientation.x(), 0.0);  // locked
    EXPECT_NEAR(look.orientation.y(), 40 * EditingTool::degreesPerPixel, 1e-9);

    tool(ToolbarTool::ObjectScale, true);
    drag(centre_, centre_ - wxPoint(0, 50));
    look = readVertexLook(*vertex);
    EXPECT_GT(look.scale.x(), 1.2);
    EXPECT_DOUBLE_EQ(look.scale.x(), look.scale.z());
    EXPECT_DOUBLE_EQ(look.position.x(), positionOf(*vertex).x());
}

TEST_F(GraphEditorTest, AttributesDialogChangesLabelAndAttributesAndShowsRefusals) {
    DirectedGraphVertex* vertex = insertAt(ToolbarTool::VertexSphere, centre_);
    ASSERT_NE(vertex, nullptr);
    std::vector<std::string> rows;
    prompts_->onDialog = [&](wxDialog& dialog) {
        auto* attributes = dynamic_cast<AttributesDialog*>(&dialog);
        if (!attributes)
            return wxID_CANCEL;
        EXPECT_TRUE(attributes->setLabel("A"));
        EXPECT_TRUE(attributes->putAttribute("weight", AttributeType::Integer, "7"));
        EXPECT_TRUE(attributes->putAttribute("where", AttributeType::Vector, "1, 2.5, -3"));
        EXPECT_FALSE(attributes->putAttribute("weight", AttributeType::Integer, "seven"));
        EXPECT_FALSE(attributes->removeAttribute("nothing"));
        EXPECT_TRUE(attributes->putAttribute("weight", AttributeType::Real, "7.5"));
        for (int row = 0; row < attributes->rowCount(); ++row)
            rows.push_back(attributes->cell(row, 0) + " " + attributes->cell(row, 1) + " " +
                           attributes->cell(row, 2));
        return wxID_OK;
    };
    command(GraphEditorFrame::kAttributes);
    EXPECT_EQ(vertex->label(), "A");
    ASSERT_NE(vertex->findAttribute("weight"), nullptr);
    EXPECT_EQ(vertex->findAttribute("weight")->type(), AttributeType::Real);
    EXPECT_NE(std::find(rows.begin(), rows.end(), "weight real 7.5"), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), "where vector 1, 2.5, -3"), rows.end());
    // The refusals were shown, with their reasons.
    ASSERT_EQ(prompts_->asked.size(), 2u) << messages();
    EXPECT_EQ(prompts_->asked[0].text, "'seven' is no integer.");
    EXPECT_FALSE(prompts_->asked[1].text.empty());
    // Each change is one step of its own.
    frame_->undo();
    EXPECT_EQ(vertex->findAttribute("weight")->type(), AttributeType::Integer);
}

TEST_F(GraphEditorTest, SavedGraphLoadsIntoANewEditorAndSavesTheSameFile) {
    test::TempFolder folder;
    const std::string first = folder.path("first.dg");
    const std::string second = folder.path("second.dg");
    DirectedGraphVertex* a = insertAt(ToolbarTool::VertexSphere, centre_ - wxPoint(80, 0));
    DirectedGraphVertex* b = insertAt(ToolbarTool::VertexCone, centre_ + wxPoint(80, 0));
    ASSERT_TRUE(a && b);
    frame_->document().connect(*a, *b);
    prompts_->files = {first};
    command(GraphEditorFrame::kSaveGraph);
    EXPECT_EQ(frame_->GetTitle(), "3D Graph Editor - " + first);
    EXPECT_FALSE(frame_->document().modified());
    EXPECT_EQ(prompts_->filters.back(), "Graph file (*.dg) .dg");

    command(GraphEditorFrame::kNewGraph);
    EXPECT_EQ(graph().vertexCount(), 0u);
    prompts_->files = {first};
    command(GraphEditorFrame::kLoadGraph);
    EXPECT_EQ(frame_->GetTitle(), "3D Graph Editor - " + first);
    EXPECT_EQ(graph().vertexCount(), 2u);
    EXPECT_EQ(graph().edgeCount(), 1u);
    EXPECT_EQ(frame_->document().scene().vertexCount(), 2u);
    ASSERT_TRUE(frame_->saveGraph(second));
    EXPECT_EQ(test::TempFolder::read(second), test::TempFolder::read(first));

    // A file that does not read keeps the graph and its name, and the console says why.
    const std::string broken = folder.write("broken.dg", "this is no graph\n");
    ConsoleCapture capture;
    EXPECT_FALSE(frame_->loadGraph(broken));
    EXPECT_EQ(graph().vertexCount(), 2u);
    EXPECT_EQ(frame_->GetTitle(), "3D Graph Editor - " + second);
    EXPECT_NE(capture.text().find(broken), std::string::npos) << capture.text();
}

TEST_F(GraphEditorTest, ImportAndExportThroughOtherToolsFormats) {
    test::TempFolder folder;
    DirectedGraphVertex* a = insertAt(ToolbarTool::VertexSphere, centre_ - wxPoint(80, 0));
    DirectedGraphVertex* b = insertAt(ToolbarTool::VertexCube, centre_ + wxPoint(80, 0));
    ASSERT_TRUE(a && b);
    frame_->document().connect(*a, *b);
    ASSERT_TRUE(frame_->saveGraph(folder.path("drawn.dg")));
    // Exported to each format and imported again, the graph saves as the same graph file (from
    // DOT with its vertices' attributes in another order).
    auto lines = [](const std::string& text) {
        std::vector<std::string> all;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            all.push_back(line);
        std::sort(all.begin(), all.end());
        return all;
    };
    for (const char* name : {"drawn.graphml", "drawn.gxl", "drawn.dot"}) {
        SCOPED_TRACE(name);
        prompts_->files = {folder.path(name)};
        command(GraphEditorFrame::kExportGraph);
        EXPECT_FALSE(frame_->document().modified());
        prompts_->files = {folder.path(name)};
        command(GraphEditorFrame::kImportGraph);
        EXPECT_EQ(frame_->GetTitle(), "3D Graph Editor - untitled");
        EXPECT_EQ(frame_->document().scene().vertexCount(), 2u);
        ASSERT_TRUE(frame_->saveGraph(folder.path("back.dg")));
        const std::string back = test::TempFolder::read(folder.path("back.dg"));
        const std::string drawn = test::TempFolder::read(folder.path("drawn.dg"));
        if (std::string(name) == "drawn.dot")
            EXPECT_EQ(lines(back), lines(drawn));
        else
            EXPECT_EQ(back, drawn);
    }
    EXPECT_TRUE(prompts_->asked.empty()) << messages();

    // A label no graph file can hold: asked, and on No nothing changes; on Yes, renamed.
    const std::string odd = folder.write(
        "odd.gxl", "<gxl><graph><node id='a'><type href='#two words'/></node></graph></gxl>");
    prompts_->answers = {false, true};
    EXPECT_FALSE(frame_->importGraph(odd));
    EXPECT_EQ(graph().vertexCount(), 2u);
    ASSERT_EQ(prompts_->asked.size(), 1u);
    EXPECT_NE(prompts_->asked[0].text.find("node 'a': the label 'two words' cannot be read"),
              std::string::npos)
        << messages();
    EXPECT_TRUE(frame_->importGraph(odd));
    ASSERT_EQ(graph().vertexCount(), 1u);
    EXPECT_EQ(graph().vertices().begin()->label(), "two_words");
    // A broken file is an alert, and the graph stays.
    EXPECT_FALSE(frame_->importGraph(folder.write("broken.graphml", "<graphml>")));
    EXPECT_EQ(prompts_->asked.back().title, "Alert");
    EXPECT_EQ(graph().vertexCount(), 1u);
}

TEST_F(GraphEditorTest, ModifiedGraphIsReplacedOrClosedOnlyAfterYes) {
    ASSERT_NE(insertAt(ToolbarTool::VertexSphere, centre_), nullptr);
    ASSERT_TRUE(frame_->document().modified());

    prompts_->answers = {false, false};
    command(GraphEditorFrame::kNewGraph);
    EXPECT_EQ(graph().vertexCount(), 1u);
    EXPECT_FALSE(frame_->Close());
    settle();
    ASSERT_EQ(prompts_->asked.size(), 2u);
    for (const Asked& asked : prompts_->asked) {
        EXPECT_EQ(asked.text, "Document was modified!\nAll changes will be lost.\nContinue?");
        EXPECT_EQ(asked.title, "Alert");
    }

    prompts_->answers = {true};
    command(GraphEditorFrame::kNewGraph);
    EXPECT_EQ(graph().vertexCount(), 0u);
    EXPECT_EQ(frame_->GetTitle(), "3D Graph Editor - untitled");
    // Unmodified: no question.
    EXPECT_TRUE(frame_->Close());
    EXPECT_EQ(prompts_->asked.size(), 3u);
    frame_ = nullptr;
}

TEST_F(GraphEditorTest, CommandsOnTheSelectionNeedOne) {
    DirectedGraphVertex* vertex = insertAt(ToolbarTool::VertexSphere, centre_);
    ASSERT_NE(vertex, nullptr);
    tool(ToolbarTool::Select, true);
    click(centre_ + wxPoint(0, 150));  // empty space selects nothing
    EXPECT_EQ(frame_->document().selected(), 0u);

    bool dialogShown = false;
    prompts_->onDialog = [&](wxDialog&) {
        dialogShown = true;
        return wxID_OK;
    };
    for (int id : {GraphEditorFrame::kRepresentation, GraphEditorFrame::kCopy,
                   GraphEditorFrame::kDelete, GraphEditorFrame::kAttributes}) {
        prompts_->asked.clear();
        command(id);
        ASSERT_EQ(prompts_->asked.size(), 1u) << id;
        EXPECT_EQ(prompts_->asked[0].text, "No vertex selected");
        EXPECT_EQ(prompts_->asked[0].title, "Warning");
    }
    EXPECT_FALSE(dialogShown);
    EXPECT_EQ(graph().vertexCount(), 1u);
    EXPECT_EQ(readVertexLook(*vertex).representation, "sphere");

    // Selected by a click, the representation dialog's answer is written.
    click(centre_);
    EXPECT_NE(frame_->document().selected(), 0u);
    prompts_->onDialog = [](wxDialog& dialog) {
        auto* look = dynamic_cast<RepresentationDialog*>(&dialog);
        if (!look)
            return wxID_CANCEL;
        look->setRepresentation("cube");
        look->setColour(*wxRED);
        return wxID_OK;
    };
    command(GraphEditorFrame::kRepresentation);
    const VertexLook look = readVertexLook(*vertex);
    EXPECT_EQ(look.representation, "cube");
    EXPECT_EQ(look.colour.r == 1 && look.colour.g == 0 && look.colour.b == 0, true);
}

TEST_F(GraphEditorTest, RightClickOnAnObjectOffersItsMenuAndRunsTheChoice) {
    ASSERT_NE(insertAt(ToolbarTool::VertexSphere, centre_), nullptr);
    mouse(wxEVT_RIGHT_DOWN, centre_ + wxPoint(0, 150));  // empty space: no menu
    EXPECT_TRUE(prompts_->menuItems.empty());

    prompts_->menuChoice = "Copy object";
    mouse(wxEVT_RIGHT_DOWN, centre_);
    EXPECT_EQ(prompts_->menuItems,
              (std::vector<std::string>{"Change representation", "Edit attributes", "Copy object",
                                        "Delete"}));
    EXPECT_EQ(graph().vertexCount(), 2u);
    prompts_->menuChoice = "Delete";
    mouse(wxEVT_RIGHT_DOWN, centre_);
    EXPECT_EQ(graph().vertexCount(), 1u);
}

TEST_F(GraphEditorTest, LayoutDialogListsTheLibrariesAndTheChosenOnePlacesTheVertices) {
    test::ScopedEnvironment folder{"VellumLayout", pluginDirectory() + "/"};
    test::ScopedEnvironment settings{"VELLUM_FORCE3D", "mode=full, iterations=20"};
    DirectedGraphVertex* a = insertAt(ToolbarTool::VertexSphere, centre_);
    DirectedGraphVertex* b = insertAt(ToolbarTool::VertexSphere, centre_);
    ASSERT_TRUE(a && b);
    frame_->document().connect(*a, *b);
    std::string description;
    prompts_->onDialog = [&](wxDialog& dialog) {
        auto* layout = dynamic_cast<LayoutDialog*>(&dialog);
        if (!layout)
            return wxID_CANCEL;
        EXPECT_FALSE(layout->choose("no-such-layout"));
        EXPECT_TRUE(layout->choose("force3d"));
        description = layout->description().utf8_string();
        return layout->library() ? wxID_OK : wxID_CANCEL;
    };
    // The layout's settings dialog comes right before each layout; OK keeps the settings.
    const test::ModalDialogScript settingsDialog(
        [](wxDialog& dialog) { EXPECT_TRUE(test::press(dialog, wxID_OK)); });
    command(GraphEditorFrame::kLayoutGraph);
    EXPECT_TRUE(settingsDialog.ran());
    EXPECT_FALSE(description.empty());
    EXPECT_EQ(description.find("Could not load"), std::string::npos) << description;
    const TPXp3 pa = positionOf(*a), pb = positionOf(*b);
    EXPECT_FALSE(pa.x() == pb.x() && pa.y() == pb.y() && pa.z() == pb.z())
        << "the layout should have pulled the two vertices apart";
    EXPECT_TRUE(prompts_->asked.empty()) << messages();
    frame_->undo();
    EXPECT_DOUBLE_EQ(positionOf(*a).x(), positionOf(*b).x());

    // With the user's settings, the choice is kept and the next dialog starts with it.
    test::TempFolder kept;
    UserSettings userSettings(kept.path("settings.conf"));
    frame_->useSettings(&userSettings);
    {
        const test::ModalDialogScript again(
            [](wxDialog& dialog) { EXPECT_TRUE(test::press(dialog, wxID_OK)); });
        command(GraphEditorFrame::kLayoutGraph);
        EXPECT_TRUE(again.ran());
    }
    EXPECT_EQ(userSettings.choice(GraphEditorFrame::layoutChoice), "force3d");
    std::string preselected;
    prompts_->onDialog = [&](wxDialog& dialog) {
        if (auto* layout = dynamic_cast<LayoutDialog*>(&dialog); layout && layout->library())
            preselected = layout->library()->name();
        return wxID_CANCEL;
    };
    command(GraphEditorFrame::kLayoutGraph);
    EXPECT_EQ(preselected, "force3d");
    frame_->useSettings(nullptr);
}

// A user's whole session: the small factory of the Petri-net example built from nothing with
// the mouse (shapes, arcs, labels and attributes), laid out, saved and loaded again; the file
// holds the example's net.
TEST_F(GraphEditorTest, PetriNetBuiltWithTheMouseLaidOutSavedAndReloaded) {
    test::ScopedEnvironment layouts{"VellumLayout", pluginDirectory() + "/"};
    test::ScopedEnvironment settings{"VELLUM_FORCE3D", "mode=full, iterations=20"};
    struct Node {
        ToolbarTool shape;
        wxPoint at;
        const char* label;
        const char* name;
        int tokens;  // -1: none
    };
    const Node nodes[] = {
        {ToolbarTool::VertexSphere, centre_ + wxPoint(-160, -90), "place", "ore", 6},
        {ToolbarTool::VertexSphere, centre_ + wxPoint(0, -90), "place", "metal", 0},
        {ToolbarTool::VertexSphere, centre_ + wxPoint(-160, 90), "place", "coal", 4},
        {ToolbarTool::VertexSphere, centre_ + wxPoint(160, 90), "place", "steel", 0},
        {ToolbarTool::VertexCube, centre_ + wxPoint(-80, -150), "transition", "smelt", -1},
        {ToolbarTool::VertexCube, centre_ + wxPoint(80, 0), "join", "forge", -1},
    };
    const std::pair<int, int> arcs[] = {{0, 4}, {4, 1}, {1, 5}, {2, 5}, {5, 3}};
    const int weights[] = {2, 1, 1, 1, 1};

    for (const Node& node : nodes)
        ASSERT_NE(insertAt(node.shape, node.at), nullptr) << node.name;
    tool(ToolbarTool::Connection, true);
    for (auto [from, to] : arcs) {
        click(nodes[from].at);
        click(nodes[to].at);
    }
    ASSERT_EQ(graph().edgeCount(), 5u);

    // Labels and attributes through the dialog, on what a click of the select tool picked.
    auto edit = [&](wxPoint at, const char* label, std::vector<std::array<std::string, 2>> ints,
                    const char* name) {
        tool(ToolbarTool::Select, true);
        click(at);
        prompts_->onDialog = [&](wxDialog& dialog) {
            auto* attributes = dynamic_cast<AttributesDialog*>(&dialog);
            if (!attributes)
                return wxID_CANCEL;
            EXPECT_TRUE(attributes->setLabel(label));
            if (name) {
                EXPECT_TRUE(attributes->putAttribute("name", AttributeType::String, name));
            }
            for (const auto& [key, value] : ints)
                EXPECT_TRUE(attributes->putAttribute(key, AttributeType::Integer, value));
            return wxID_OK;
        };
        command(GraphEditorFrame::kAttributes);
    };
    for (const Node& node : nodes) {
        std::vector<std::array<std::string, 2>> ints;
        if (node.tokens >= 0)
            ints.push_back({"tokens", std::to_string(node.tokens)});
        edit(node.at, node.label, ints, node.name);
    }
    for (std::size_t i = 0; i < std::size(arcs); ++i) {
        const wxPoint middle = (nodes[arcs[i].first].at + nodes[arcs[i].second].at) / 2;
        edit(middle, "arc", {{"weight", std::to_string(weights[i])}}, nullptr);
    }
    EXPECT_TRUE(prompts_->asked.empty()) << messages();

    prompts_->onDialog = [](wxDialog& dialog) {
        auto* layout = dynamic_cast<LayoutDialog*>(&dialog);
        return layout && layout->choose("force3d") ? wxID_OK : wxID_CANCEL;
    };
    const test::ModalDialogScript settingsDialog(
        [](wxDialog& dialog) { EXPECT_TRUE(test::press(dialog, wxID_OK)); });
    command(GraphEditorFrame::kLayoutGraph);
    test::TempFolder folder;
    prompts_->files = {folder.path("factory.dg")};
    command(GraphEditorFrame::kSaveGraph);
    command(GraphEditorFrame::kNewGraph);
    prompts_->files = {folder.path("factory.dg")};
    command(GraphEditorFrame::kLoadGraph);
    EXPECT_TRUE(prompts_->asked.empty()) << messages();

    // The net as names and weights: what the example's file says.
    auto net = [](const DirectedGraph& g) {
        auto text = [](const GraphObject& element, const char* name) {
            const Attribute* value = element.findAttribute(name);
            return value ? attributeText(*value) : std::string("-");
        };
        std::multiset<std::string> lines;
        for (const DirectedGraphVertex& v : g.vertices())
            lines.insert(v.label() + " " + text(v, "name") + " " + text(v, "tokens"));
        for (const DirectedGraphEdge& e : g.edges())
            lines.insert(text(*e.source(), "name") + " -" + e.label() + " " + text(e, "weight") +
                         "-> " + text(*e.target(), "name"));
        return lines;
    };
    ConsoleCapture quiet;
    const std::unique_ptr<DirectedGraph> example =
        loadGraph(VELLUM_EXAMPLES_DIR "/petri/factory.dg");
    ASSERT_TRUE(example);
    EXPECT_EQ(net(graph()), net(*example));
}

TEST_F(GraphEditorTest, GroundDialogSettingsReachTheCanvas) {
    TPXgroundSettings wanted;
    wanted.size = 8;
    wanted.cells = 4;
    wanted.level = -2;
    wanted.colour = {1, 0, 0};
    prompts_->onDialog = [&](wxDialog& dialog) {
        auto* ground = dynamic_cast<GroundDialog*>(&dialog);
        if (!ground)
            return wxID_CANCEL;
        EXPECT_EQ(ground->settings(), frame_->canvas().helpers().groundSettings());
        ground->setSettings(wanted);
        return wxID_OK;
    };
    command(GraphEditorFrame::kGround);
    EXPECT_EQ(frame_->canvas().helpers().groundSettings(), wanted);
    command(GraphEditorFrame::kSolidGround);
    EXPECT_EQ(frame_->canvas().helpers().groundMode(), TPXgroundMode::Solid);
}

TEST_F(GraphEditorTest, ScreenshotFileShowsTheInsertedVertex) {
    DirectedGraphVertex* vertex = insertAt(ToolbarTool::VertexSphere, centre_);
    ASSERT_NE(vertex, nullptr);
    frame_->document().setLook(*vertex, "sphere", TPXrgb{1, 0, 0});
    command(GraphEditorFrame::kHideGround);
    prompts_->chosenColour = wxColour(0, 0, 90);
    command(GraphEditorFrame::kBackground);
    test::TempFolder folder;
    const std::string file = folder.path("shot.ppm");
    prompts_->files = {file};
    command(GraphEditorFrame::kScreenshot);
    EXPECT_EQ(prompts_->filters.back(), "Portable Pixmap file (*.ppm) .ppm");

    TPXimage picture;
    ASSERT_TRUE(picture.read(file));
    writePng(picture, "/tmp/vellum-editor-shot.png");
    ASSERT_EQ(picture.width(), canvasSize_.x);
    const Rgb middle = pixelAt(picture, centre_.x, centre_.y);
    EXPECT_TRUE(middle.dominated(0)) << middle;
    const Rgb corner = pixelAt(picture, 5, picture.height() - 5);
    EXPECT_TRUE(corner.dominated(2, 60) && corner.r < 10) << corner;
}

}  // namespace
}  // namespace vellum
