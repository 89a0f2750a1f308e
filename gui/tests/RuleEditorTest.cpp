// The rule editor in a real frame under an X display, driven by the toolbar, menu and mouse
// events a user's input produces, with every question answered by a script: the mutex example's
// take rule built from scratch and saved, every bundled rule loaded and saved unchanged, the
// reader's refusals, one undo history across both sides, trying the rule on a graph, and the
// interface seen on screen.
#include <gtest/gtest.h>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/listctrl.h>
#include <wx/textctrl.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <sstream>
#include <thread>

#include "base/Console.h"
#include "graph/DirectedGraphEdge.h"
#include "graph/RuleReader.h"
#include "graph/RuleWriter.h"
#include "gui/GraphEditorFrame.h"
#include "gui/RuleEditorFrame.h"
#include "gui/RuleElementDialog.h"
#include "gui/RulePropertiesDialog.h"
#include "gui/RuleTrialDialog.h"
#include "gui/tests/ScriptedPrompts.h"
#include "gui/view/ElementLook.h"
#include "gui/view/PngWriter.h"
#include "gui/view/ScenePicture.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

const std::string examples = VELLUM_EXAMPLES_DIR;

// The rule in the writer's layout: equal for equal rules, whatever the file's numbers,
// comments and order.
std::string canonicalFile(const std::string& fileName) {
    ConsoleCapture quiet;
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(fileName);
    if (!rule)
        return "unreadable " + fileName;
    std::ostringstream out;
    RuleWriter(out).write(*rule);
    return out.str();
}

class RuleEditorTest : public test::FrameTest<RuleEditorFrame, test::ScriptedPrompts> {
  protected:
    RuleEditorTest() : FrameTest({900, 460}) {}
    // The graph editors that trying the rule opened go too.
    void TearDown() override {
        for (wxWindow* window : wxTopLevelWindows)
            if (window != frame_)
                window->Destroy();
        FrameTest::TearDown();
    }
    void tool(ToolbarTool which) {
        frame_->GetToolBar()->ToggleTool(RuleEditorFrame::toolId(which), true);
        command(RuleEditorFrame::toolId(which));
    }
    TPXCanvas& canvas(RuleSide side) { return frame_->pane(side).canvas(); }
    DirectedGraph& graph(RuleSide side) { return frame_->document().side(side).graph(); }
    void mouse(RuleSide side, wxEventType type, wxPoint at, bool left = false) {
        wxMouseEvent event(type);
        event.SetPosition(at);
        event.m_leftDown = left;
        event.SetEventObject(&canvas(side));
        canvas(side).GetEventHandler()->ProcessEvent(event);
    }
    void click(RuleSide side, wxPoint at) {
        mouse(side, wxEVT_LEFT_DOWN, at, true);
        mouse(side, wxEVT_LEFT_UP, at);
    }
    // Where a vertex appears in its side's canvas.
    wxPoint pointOf(RuleSide side, DirectedGraphVertex& vertex) {
        const wxSize size = canvas(side).GetClientSize();
        return *EditingTool::windowPoint(canvas(side).camera(), readVertexLook(vertex).position,
                                         size.x, size.y);
    }
    DirectedGraphVertex* newest(RuleSide side) {
        DirectedGraphVertex* last = nullptr;
        for (DirectedGraphVertex& vertex : graph(side).vertices())
            last = &vertex;
        return last;
    }
    DirectedGraphEdge* newestEdge(RuleSide side) {
        DirectedGraphEdge* last = nullptr;
        for (DirectedGraphEdge& edge : graph(side).edges())
            last = &edge;
        return last;
    }
    // A click beside everything gives the side the toolbar.
    void focus(RuleSide side) {
        tool(ToolbarTool::Select);
        click(side, {1, 1});
        EXPECT_EQ(frame_->activeSide(), side);
    }
    // A vertex put by the sphere tool where a click in the top view meets the ground.
    DirectedGraphVertex* insert(RuleSide side, wxPoint at) {
        focus(side);
        tool(ToolbarTool::ViewTop);
        tool(ToolbarTool::VertexSphere);
        click(side, at);
        return newest(side);
    }
    void select(RuleSide side, DirectedGraphVertex& vertex) {
        tool(ToolbarTool::Select);
        click(side, pointOf(side, vertex));
    }
    DirectedGraphEdge* connect(RuleSide side, DirectedGraphVertex& from, DirectedGraphVertex& to) {
        tool(ToolbarTool::Connection);
        click(side, pointOf(side, from));
        click(side, pointOf(side, to));
        return newestEdge(side);
    }
    // Edits the selected element in its dialog as `script` says.
    void editSelected(std::function<void(RuleElementDialog&)> script) {
        prompts_->onDialog = [script](wxDialog& dialog) {
            script(dynamic_cast<RuleElementDialog&>(dialog));
            return wxID_OK;
        };
        command(RuleEditorFrame::kAttributes);
        prompts_->onDialog = {};
    }
    void label(RuleSide side, GraphObject& element, const std::string& text) {
        auto& document = frame_->document().side(side);
        const std::uint32_t identity =
            element.kind() == GraphObjectKind::Vertex
                ? document.scene().objectOf(static_cast<DirectedGraphVertex&>(element))->identity()
                : document.scene().objectOf(static_cast<DirectedGraphEdge&>(element))->identity();
        frame_->activate(side);
        document.select(identity);
        editSelected([&text](RuleElementDialog& d) { EXPECT_TRUE(d.setLabel(text)) << text; });
    }
    // The take rule, as a user builds it: two vertices and two edges on the left, both vertices
    // kept, and the new edge on the right.
    void buildTake() {
        const wxSize size = canvas(RuleSide::Left).GetClientSize();
        DirectedGraphVertex* resource = insert(RuleSide::Left, {size.x / 3, size.y / 2});
        DirectedGraphVertex* waiting = insert(RuleSide::Left, {2 * size.x / 3, size.y / 2});
        ASSERT_NE(resource, waiting);
        label(RuleSide::Left, *resource, "resource");
        label(RuleSide::Left, *waiting, "waiting");
        DirectedGraphEdge* token = connect(RuleSide::Left, *resource, *waiting);
        ASSERT_NE(token, nullptr);
        label(RuleSide::Left, *token, "token");
        DirectedGraphEdge* request = connect(RuleSide::Left, *waiting, *resource);
        ASSERT_NE(request, token);
        label(RuleSide::Left, *request, "request");
        for (DirectedGraphVertex* vertex : {resource, waiting}) {
            select(RuleSide::Left, *vertex);
            command(RuleEditorFrame::kKeepOnRight);
        }
        ASSERT_EQ(graph(RuleSide::Right).vertexCount(), 2u);
        auto* right = static_cast<DirectedGraphVertex*>(
            frame_->document().partnerOf(RuleSide::Left, *resource));
        auto* rightWaiting = static_cast<DirectedGraphVertex*>(
            frame_->document().partnerOf(RuleSide::Left, *waiting));
        focus(RuleSide::Right);
        DirectedGraphEdge* held = connect(RuleSide::Right, *right, *rightWaiting);
        ASSERT_NE(held, nullptr);
        label(RuleSide::Right, *held, "held_by");
        prompts_->onDialog = [](wxDialog& dialog) {
            dynamic_cast<RulePropertiesDialog&>(dialog).setName("take");
            return wxID_OK;
        };
        command(RuleEditorFrame::kProperties);
        prompts_->onDialog = {};
    }
};

TEST_F(RuleEditorTest, BuildsTheTakeRuleFromScratchAndSavesTheBundledRule) {
    EXPECT_EQ(frame_->GetTitle(), "3D Rule Editor - untitled");
    EXPECT_EQ(frame_->GetToolBar()->GetToolShortHelp(RuleEditorFrame::toolId(ToolbarTool::Zoom)),
              "Zoom out until the hole rule is visible.");
    buildTake();
    EXPECT_EQ(prompts_->messages, std::vector<std::string>{});

    test::TempFolder folder;
    prompts_->files = {folder.path("take.drl")};
    command(RuleEditorFrame::kSaveRule);
    EXPECT_EQ(prompts_->filters, std::vector<std::string>{"Rule file (*.drl)"});
    EXPECT_EQ(frame_->GetTitle(), "3D Rule Editor - " + folder.path("take.drl"));
    EXPECT_EQ(canonicalFile(folder.path("take.drl")), canonicalFile(examples + "/mutex/take.drl"));

    // The picture is the rule's, as the command line draws the bundled file: not the editor's
    // shapes and places.
    ASSERT_TRUE(frame_->exportPicture(folder.path("take.png"))) << prompts_->messages.back();
    std::string error;
    const std::unique_ptr<DirectedGraphRule> bundled = loadRule(examples + "/mutex/take.drl");
    const auto expected =
        rulePicture(*bundled, RuleEditorFrame::pictureWidth, RuleEditorFrame::pictureHeight, error);
    ASSERT_TRUE(expected && writePicture(*expected, folder.path("bundled.png"), error)) << error;
    EXPECT_EQ(test::TempFolder::read(folder.path("take.png")),
              test::TempFolder::read(folder.path("bundled.png")));

    // Tried on a graph: the occurrences as the command line lists them, then the rule applied
    // to a copy in a new graph editor, with the result in words.
    const std::string host =
        folder.write("host.dg",
                     "directed graph { vertex 1 { label waiting } vertex 2 { label resource }"
                     " edge 2 -> 1 { label token } edge 1 -> 2 { label request } }");
    std::vector<std::string> listed;
    prompts_->onDialog = [&listed](wxDialog& dialog) {
        auto& trial = dynamic_cast<RuleTrialDialog&>(dialog);
        listed = trial.lines();
        trial.setMode(0);
        return wxID_OK;
    };
    GraphEditorFrame* editor = frame_->tryOnGraph(host);
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(listed, (std::vector<std::string>{"2 1 | 1 2", "1 occurrences"}));
    EXPECT_EQ(prompts_->messages.back(), "Try on graph: Result 0 in mode 0: The rule was applied.");
    ASSERT_EQ(editor->document().graph().edgeCount(), 1u);
    EXPECT_EQ(editor->document().graph().edges().begin()->label(), "held_by");
    EXPECT_EQ(test::TempFolder::read(host).find("held_by"), std::string::npos) << "a copy";
}

TEST_F(RuleEditorTest, OneUndoHistoryCoversBothSidesAndTheInterface) {
    const wxSize size = canvas(RuleSide::Left).GetClientSize();
    DirectedGraphVertex* a = insert(RuleSide::Left, {size.x / 2, size.y / 2});
    select(RuleSide::Left, *a);
    command(RuleEditorFrame::kKeepOnRight);
    ASSERT_EQ(graph(RuleSide::Right).vertexCount(), 1u);
    // The partner of the selection is selected on the other side.
    EXPECT_NE(frame_->document().side(RuleSide::Right).selected(), 0u);
    DirectedGraphVertex* b = insert(RuleSide::Right, {size.x / 4, size.y / 4});
    ASSERT_EQ(graph(RuleSide::Right).vertexCount(), 2u);

    tool(ToolbarTool::Undo);  // the right-hand insertion
    EXPECT_EQ(graph(RuleSide::Right).vertexCount(), 1u);
    tool(ToolbarTool::Undo);  // keeping: the right-hand vertex and the pair
    EXPECT_EQ(graph(RuleSide::Right).vertexCount(), 0u);
    EXPECT_TRUE(frame_->document().interface().empty());
    EXPECT_EQ(graph(RuleSide::Left).vertexCount(), 1u);
    command(RuleEditorFrame::kRedo);
    command(RuleEditorFrame::kRedo);
    EXPECT_EQ(graph(RuleSide::Right).vertexCount(), 2u);
    EXPECT_EQ(frame_->document().interface().vertexPairs().size(), 1u);
    EXPECT_TRUE(graph(RuleSide::Right).contains(*b));
    EXPECT_FALSE(frame_->GetToolBar()->GetToolEnabled(RuleEditorFrame::toolId(ToolbarTool::Redo)));
}

TEST_F(RuleEditorTest, CoupledCamerasMoveTogetherUntilUncoupled) {
    ASSERT_TRUE(frame_->coupled());
    auto wheel = [this](RuleSide side) {
        wxMouseEvent event(wxEVT_MOUSEWHEEL);
        event.SetPosition({40, 40});
        event.m_wheelRotation = 120;
        event.m_wheelDelta = 120;
        canvas(side).GetEventHandler()->ProcessEvent(event);
    };
    const TPXp3 start = canvas(RuleSide::Right).camera().eye();
    wheel(RuleSide::Left);
    EXPECT_GT((canvas(RuleSide::Right).camera().eye() - start).length(), 0.01);
    EXPECT_LT(
        (canvas(RuleSide::Right).camera().eye() - canvas(RuleSide::Left).camera().eye()).length(),
        1e-9);
    command(RuleEditorFrame::kCoupleCameras);
    EXPECT_FALSE(frame_->coupled());
    const TPXp3 right = canvas(RuleSide::Right).camera().eye();
    wheel(RuleSide::Left);
    EXPECT_LT((canvas(RuleSide::Right).camera().eye() - right).length(), 1e-9);
}

TEST_F(RuleEditorTest, GroundItemsActOnTheSideThatHasTheToolbar) {
    frame_->activate(RuleSide::Right);
    command(RuleEditorFrame::kTransparentGround);
    EXPECT_EQ(canvas(RuleSide::Right).helpers().groundMode(), TPXgroundMode::Transparent);
    EXPECT_EQ(canvas(RuleSide::Left).helpers().groundMode(), TPXgroundMode::Wireframe);
}

// The attribute table as a user works it: a picked row goes into the fields (an expression without
// its brackets, with the box ticked), Add/Change and Remove take what the fields then hold.
TEST_F(RuleEditorTest, PickedAttributeRowsFillTheFieldsThatTheButtonsTake) {
    const wxSize size = canvas(RuleSide::Left).GetClientSize();
    DirectedGraphVertex* vertex = insert(RuleSide::Left, {size.x / 2, size.y / 2});
    ASSERT_NE(vertex, nullptr);
    label(RuleSide::Left, *vertex, "v");
    editSelected([](RuleElementDialog& d) {
        ASSERT_TRUE(d.putAttribute("n", AttributeType::Integer, "1 + 2", true));
        ASSERT_TRUE(d.putAttribute("s", AttributeType::String, "plain", false));
        // The dialog's controls in the order they were made.
        std::vector<wxTextCtrl*> fields;  // label, variable, name, value
        wxListCtrl* list = nullptr;
        wxCheckBox* expression = nullptr;
        std::map<wxString, wxButton*> buttons;
        for (wxWindow* child : d.GetChildren()) {
            if (auto* field = dynamic_cast<wxTextCtrl*>(child))
                fields.push_back(field);
            if (auto* found = dynamic_cast<wxListCtrl*>(child))
                list = found;
            if (auto* box = dynamic_cast<wxCheckBox*>(child);
                box && box->GetLabel() == "Expression")
                expression = box;
            if (auto* button = dynamic_cast<wxButton*>(child))
                buttons[button->GetLabel()] = button;
        }
        ASSERT_EQ(fields.size(), 4u);
        ASSERT_TRUE(list && expression && buttons.count("Add/Change") && buttons.count("Remove"));
        auto rowOf = [&d](const std::string& name) {
            for (int row = 0; row < d.rowCount(); ++row)
                if (d.cell(row, 0) == name)
                    return row;
            return -1;
        };
        auto pick = [list](int row) {
            wxListEvent event(wxEVT_LIST_ITEM_SELECTED, list->GetId());
            event.m_itemIndex = row;
            event.SetEventObject(list);
            list->GetEventHandler()->ProcessEvent(event);
        };
        auto press = [&buttons](const char* label) {
            wxCommandEvent event(wxEVT_BUTTON, buttons[label]->GetId());
            event.SetEventObject(buttons[label]);
            buttons[label]->GetEventHandler()->ProcessEvent(event);
        };

        pick(rowOf("n"));
        EXPECT_EQ(fields[2]->GetValue(), "n");
        EXPECT_EQ(fields[3]->GetValue(), "1 + 2");
        EXPECT_TRUE(expression->GetValue());
        EXPECT_EQ(d.verdict(), "The expression compiles.");
        fields[3]->SetValue("2 + 3");
        press("Add/Change");
        EXPECT_EQ(d.cell(rowOf("n"), 1), attributeKeyword(AttributeType::Integer));
        EXPECT_EQ(d.cell(rowOf("n"), 2), "[2 + 3]");

        pick(rowOf("s"));
        EXPECT_EQ(fields[3]->GetValue(), "plain");
        EXPECT_FALSE(expression->GetValue());
        EXPECT_EQ(d.verdict(), "");
        press("Remove");
        EXPECT_EQ(rowOf("s"), -1);
        EXPECT_NE(rowOf("n"), -1);
    });
}

TEST_F(RuleEditorTest, SaveShowsTheReadersRefusalAndWritesNothing) {
    buildTake();
    test::TempFolder folder;
    DirectedGraphVertex* kept = newest(RuleSide::Right);
    frame_->activate(RuleSide::Right);
    select(RuleSide::Right, *kept);
    editSelected([](RuleElementDialog& d) { EXPECT_TRUE(d.setVariable("p")); });
    EXPECT_FALSE(frame_->saveRule(folder.path("bad.drl")));
    ASSERT_FALSE(prompts_->messages.empty());
    EXPECT_EQ(prompts_->messages.back(),
              "Alert: Variables are only allowed on the left hand side of the rule!!!");
    EXPECT_FALSE(std::filesystem::exists(folder.path("bad.drl")));
    EXPECT_EQ(frame_->GetTitle(), "3D Rule Editor - untitled");

    // An expression is checked as it is typed; the variable it reads must be declared on the
    // left.
    editSelected([](RuleElementDialog& d) {
        EXPECT_TRUE(d.setVariable(""));
        EXPECT_NE(d.checkTyped("r.n +"), "");
        EXPECT_NE(d.verdict().find("does not compile"), std::string::npos) << d.verdict();
        EXPECT_NE(d.checkTyped("r.n + 1"), "") << "no variable r yet";
        EXPECT_TRUE(d.putAttribute("n", AttributeType::Integer, "r.n + 1", true));
        EXPECT_EQ(d.cell(d.rowCount() - 1, 2), "[r.n + 1]");
    });
    EXPECT_FALSE(frame_->saveRule(folder.path("bad.drl")));
    EXPECT_EQ(prompts_->messages.back(), "Alert: No variables defined!!!");
    frame_->document().setVariable(RuleSide::Left, *graph(RuleSide::Left).vertices().begin(), "r");
    EXPECT_TRUE(frame_->saveRule(folder.path("good.drl")));
}

TEST_F(RuleEditorTest, EveryBundledRuleLoadsAndSavesUnchanged) {
    test::TempFolder folder;
    int rules = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(examples)) {
        if (entry.path().extension() != ".drl")
            continue;
        ++rules;
        const std::string original = entry.path().string();
        ASSERT_TRUE(frame_->loadRule(original)) << original;
        EXPECT_EQ(frame_->GetTitle(), "3D Rule Editor - " + original);
        const std::string copy = folder.path("copy.drl");
        ASSERT_TRUE(frame_->saveRule(copy)) << original;
        EXPECT_EQ(canonicalFile(copy), canonicalFile(original)) << original;
    }
    EXPECT_GT(rules, 10);
    EXPECT_EQ(prompts_->messages, std::vector<std::string>{});
}

// Both sides on screen: kept vertices in the same colour left and right, the deleted edges
// red, the created edge green.
TEST_F(RuleEditorTest, ScreenshotShowsBothSidesAndTheInterface) {
    ASSERT_TRUE(frame_->loadRule(examples + "/mutex/take.drl"));
    frame_->Raise();
    settle();
    struct Probe {
        RuleSide side;
        DirectedGraphVertex* vertex;
    };
    auto colourAt = [this](RuleSide side, wxPoint at) {
        const TPXimage shot = canvas(side).screenshot();
        EXPECT_GT(shot.width(), 0);
        const std::size_t i = (static_cast<std::size_t>(at.y) * shot.width() + at.x) * 3;
        return std::array<int, 3>{shot.pixels()[i], shot.pixels()[i + 1], shot.pixels()[i + 2]};
    };
    for (RuleSide side : {RuleSide::Left, RuleSide::Right})
        for (DirectedGraphVertex& vertex : graph(side).vertices()) {
            const auto [r, g, b] = colourAt(side, pointOf(side, vertex));
            const int number = frame_->document().numberOf(vertex);
            ASSERT_GT(number, 0);
            if (number == 1)  // blue
                EXPECT_TRUE(b > r + 60 && b > g) << r << " " << g << " " << b;
            else  // yellow
                EXPECT_TRUE(r > b + 60 && g > b + 60) << r << " " << g << " " << b;
        }
    auto middle = [this](RuleSide side, DirectedGraphEdge& edge) {
        const wxPoint a = pointOf(side, *edge.source());
        const wxPoint b = pointOf(side, *edge.target());
        return wxPoint((a.x + b.x) / 2, (a.y + b.y) / 2);
    };
    // The edges run as straight lines only where they are alone between their ends.
    DirectedGraphEdge& held = *graph(RuleSide::Right).edges().begin();
    const auto [r, g, b] = colourAt(RuleSide::Right, middle(RuleSide::Right, held));
    EXPECT_TRUE(g > r + 60 && g > b + 30) << r << " " << g << " " << b;
    const TPXimage left = canvas(RuleSide::Left).screenshot();
    int red = 0;
    for (std::size_t i = 0; i + 2 < left.pixels().size(); i += 3)
        red += left.pixels()[i] > 150 && left.pixels()[i + 1] < 90 && left.pixels()[i + 2] < 90;
    EXPECT_GT(red, 20) << "the deleted edges";
    if (const char* out = std::getenv("VELLUM_RULE_EDITOR_SHOTS")) {
        writePng(left, std::string(out) + "/left.png");
        writePng(canvas(RuleSide::Right).screenshot(), std::string(out) + "/right.png");
    }
}

}  // namespace
}  // namespace vellum
