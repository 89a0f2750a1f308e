// The interpreter frame in a real frame under an X display, driven through its menus with every
// question answered by a script: a bundled example's unit runs to the same graph as on the
// command line, with the status line and console telling the run; a start while one goes shows
// the alert; Stop ends a long pause at once; single steps show and then clear the match's
// highlight; closing the frame mid-run ends the run.
#include <gtest/gtest.h>
#include <wx/menu.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/Console.h"
#include "base/Paths.h"
#include "graph/DirectedGraphEdge.h"
#include "graph/DirectedGraphVertex.h"
#include "graph/GraphReader.h"
#include "gui/CpuPropertiesDialog.h"
#include "gui/InterpreterFrame.h"
#include "gui/InterpreterStepDialog.h"
#include "gui/LayoutDialog.h"
#include "gui/tests/ScriptedPrompts.h"
#include "gui/view/ElementLook.h"
#include "gui/view/PngWriter.h"
#include "gui/view/SceneListing.h"
#include "tests/support/GraphInvariants.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using Clock = std::chrono::steady_clock;

using test::ScriptedPrompts;

const std::string kExamples = VELLUM_EXAMPLES_DIR;
const std::string kSierpinski = kExamples + "/sierpinski/";
const std::string kMutex = kExamples + "/mutex/";
// A pause no run in these tests waits out, and the bound on ending one early: wide enough for a
// sanitizer build on a loaded machine, far below the pause.
constexpr int kLongPause = 120000;
constexpr std::chrono::milliseconds kPromptly{20000};

// A graph in terms that do not depend on element order or identity.
struct GraphSummary {
    std::size_t vertices = 0;
    std::size_t edges = 0;
    std::map<std::string, int> vertexLabels;
    std::map<std::string, int> edgeLabels;
    bool operator==(const GraphSummary& other) const {
        return vertices == other.vertices && edges == other.edges &&
               vertexLabels == other.vertexLabels && edgeLabels == other.edgeLabels;
    }
};

GraphSummary summarize(const DirectedGraph& graph) {
    GraphSummary summary;
    summary.vertices = graph.vertexCount();
    summary.edges = graph.edgeCount();
    for (const DirectedGraphVertex& vertex : graph.vertices())
        ++summary.vertexLabels[vertex.label()];
    for (const DirectedGraphEdge& edge : graph.edges())
        ++summary.edgeLabels[edge.label()];
    return summary;
}

std::ostream& operator<<(std::ostream& out, const GraphSummary& s) {
    out << s.vertices << " vertices, " << s.edges << " edges;";
    for (const auto& [label, count] : s.edgeLabels)
        out << " '" << label << "' x" << count;
    return out;
}

// The graph `vellum-cli run` leaves for the unit.
GraphSummary commandLineResult(const std::string& module, const std::string& unit,
                               const std::string& graph) {
    test::TempFolder folder;
    const std::string out = folder.path("out.dg");
    const test::ProgramResult run = test::runCli({"run", module, unit, graph, "-o", out});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    DirectedGraph result;
    EXPECT_TRUE(loadGraph(out, result));
    return summarize(result);
}

std::string listing(DirectedGraph& graph, const GraphScene& scene) {
    std::ostringstream text;
    writeSceneListing(text, graph, scene);
    return text.str();
}

std::size_t highlightedEdges(InterpreterFrame& frame) {
    std::lock_guard<std::mutex> lock(frame.sceneLock());
    std::size_t count = 0;
    for (const DirectedGraphEdge& edge : frame.graph().edges()) {
        const GraphEdgeObject* object = frame.scene().objectOf(edge);
        count += object != nullptr && object->highlighted();
    }
    return count;
}

// A pause at a match shows its edges highlighted; the pause after its step shows none, even of
// edges the step kept.
void expectClearedAfterEachMatch(const std::vector<std::size_t>& highlighted) {
    for (std::size_t i = 0; i + 1 < highlighted.size(); ++i) {
        if (highlighted[i] > 0) {
            EXPECT_EQ(highlighted[i + 1], 0u) << "pause " << i + 1;
        }
    }
}

class InterpreterFrameTest : public test::FrameTest<InterpreterFrame, ScriptedPrompts> {
  protected:
    InterpreterFrameTest() : FrameTest({400, 320}) {}
    void load(const std::string& file) {
        prompts_->files.push_back(file);
        command(InterpreterFrame::kLoadGraph);
    }
    void startThroughMenu(const std::string& module, const std::string& unit) {
        prompts_->files.push_back(module);
        prompts_->unit = unit;
        command(InterpreterFrame::kStart);
    }
    // Lets the event loop run until the frame has seen its run end; false after `limit`.
    bool waitForEnd(std::chrono::milliseconds limit = std::chrono::seconds(20)) {
        const Clock::time_point until = Clock::now() + limit;
        while (frame_->running() && Clock::now() < until) {
            wxTheApp->Yield(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return !frame_->running();
    }
    // The scene the worker kept up to date is the scene a fresh build gives.
    void expectSceneFollowedGraph() {
        GraphScene fresh;
        fresh.build(frame_->graph());
        EXPECT_EQ(listing(frame_->graph(), frame_->scene()), listing(frame_->graph(), fresh));
    }
    std::string status() const { return frame_->status().utf8_string(); }

    // The bundled graph class handler, as the program finds it.
    test::ScopedEnvironment classes_{"koralGraphClasses", pluginDirectory()};
    test::ScopedEnvironment graphs_{"DirectedGraphEXTGRAPH", "dg"};
    test::ScopedEnvironment rules_{"DirectedGraphEXTRULE", "drl"};
    ConsoleCapture console_;
};

TEST_F(InterpreterFrameTest, TitleMenusAndIdleStatus) {
    EXPECT_EQ(frame_->GetTitle(), "Koral Interpreter");
    EXPECT_EQ(status(), "CPU idle");
    struct Entry {
        const char* label;
        bool enabled;
    };
    const std::vector<std::pair<const char*, std::vector<Entry>>> expected = {
        {"&File",
         {{"&Load initial graph...", true},
          {"&Save acutal graph...", true},
          {"Screens&hot...", true},
          {"&Record run...", true},
          {"E&xit", true}}},
        {"&CPU",
         {{"&Start...", true}, {"St&ep...", true}, {"S&top...", true}, {"&Properties...", true}}},
        {"&Layout",
         {{"Choose l&ayout algorithm...", true}, {"Configure l&ayout algorithm...", false}}},
        {"&Options",
         {{"&Hide ground...", true},
          {"&Wireframe ground...", true},
          {"&Solid ground...", true},
          {"&Transparent ground...", true},
          {"&Background color...", true}}},
    };
    wxMenuBar* bar = frame_->GetMenuBar();
    ASSERT_EQ(bar->GetMenuCount(), expected.size());
    for (std::size_t m = 0; m < expected.size(); ++m) {
        EXPECT_EQ(bar->GetMenuLabel(m), expected[m].first);
        const wxMenuItemList& items = bar->GetMenu(m)->GetMenuItems();
        ASSERT_EQ(items.size(), expected[m].second.size()) << expected[m].first;
        std::size_t i = 0;
        for (const wxMenuItem* item : items) {
            const Entry& entry = expected[m].second[i++];
            EXPECT_EQ(item->GetItemLabel(), entry.label);
            EXPECT_EQ(item->IsEnabled(), entry.enabled) << entry.label;
        }
    }
    command(InterpreterFrame::kSolidGround);
    EXPECT_EQ(frame_->canvas().helpers().groundMode(), TPXgroundMode::Solid);
}

TEST_F(InterpreterFrameTest, RunsAUnitToTheCommandLinesGraphAndSavesIt) {
    test::TempFolder folder;
    load(kSierpinski + "triangle.dg");
    ASSERT_EQ(frame_->graph().vertexCount(), 3u);
    // A file that does not load keeps the graph.
    load(folder.write("broken.dg", "this is no graph"));
    EXPECT_EQ(frame_->graph().vertexCount(), 3u);

    startThroughMenu(kSierpinski + "sierpinski.mod", "gen3");
    EXPECT_EQ(prompts_->filters.back(), "Koral module (*.mod)");
    EXPECT_NE(prompts_->conditions.find("initial : (vertices == 3"), std::string::npos)
        << prompts_->conditions;
    EXPECT_NE(prompts_->conditions.find("terminal : ("), std::string::npos);
    ASSERT_TRUE(frame_->running()) << console_.text();
    EXPECT_EQ(status(), "Running gen3");
    EXPECT_FALSE(frame_->GetMenuBar()->IsEnabled(InterpreterFrame::kLoadGraph));
    ASSERT_TRUE(waitForEnd());

    EXPECT_EQ(status(), "CPU idle");
    EXPECT_TRUE(prompts_->messages.empty()) << prompts_->messages.front();
    const std::string log = console_.text();
    EXPECT_NE(log.find("RUNNING 'gen3'..."), std::string::npos) << log;
    EXPECT_NE(log.find("READY 'gen3'..."), std::string::npos) << log;
    EXPECT_EQ(log.find("caugh't"), std::string::npos) << log;
    const GraphSummary expected =
        commandLineResult(kSierpinski + "sierpinski.mod", "gen3", kSierpinski + "triangle.dg");
    EXPECT_EQ(summarize(frame_->graph()), expected);
    expectSceneFollowedGraph();

    const std::string saved = folder.path("saved.dg");
    prompts_->files.push_back(saved);
    command(InterpreterFrame::kSaveGraph);
    DirectedGraph reread;
    ASSERT_TRUE(loadGraph(saved, reread));
    EXPECT_EQ(summarize(reread), expected);
}

TEST_F(InterpreterFrameTest, AStartWhileRunningAlertsAndStopEndsALongPauseAtOnce) {
    load(kMutex + "ring5.dg");
    // A pause far longer than any wait below: ending it early is Stop's doing.
    frame_->setSnooze(kLongPause);
    startThroughMenu(kMutex + "mutex.mod", "sts");
    ASSERT_TRUE(frame_->running());
    startThroughMenu(kMutex + "mutex.mod", "sts");
    ASSERT_EQ(prompts_->messages.size(), 1u);
    EXPECT_EQ(prompts_->messages[0],
              "Alert: Could not start the execution!\nSee console output for more information!");
    EXPECT_NE(console_.text().find("There is currently a program running!"), std::string::npos);
    EXPECT_EQ(status(), "Running sts");

    // Well into the first pause.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const Clock::time_point stopped = Clock::now();
    command(InterpreterFrame::kStop);
    EXPECT_EQ(status(), "CPU idle");
    ASSERT_TRUE(waitForEnd(kPromptly));
    EXPECT_LT(Clock::now() - stopped, kPromptly);
    EXPECT_NE(console_.text().find("Program aborted by user"), std::string::npos);

    // Starting again at once works, and the graph is usable again.
    frame_->setSnooze(0);
    startThroughMenu(kMutex + "mutex.mod", "sts");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(prompts_->messages.size(), 1u);
}

TEST_F(InterpreterFrameTest, SingleStepsShowTheMatchThenGoRunsToTheEnd) {
    test::TempFolder folder;
    load(kSierpinski + "triangle.dg");
    command(InterpreterFrame::kStep);
    EXPECT_EQ(frame_->snooze(), -1);
    // Each pause notes how many edges are highlighted; after twenty steps, Go.
    std::vector<std::size_t> highlighted;
    bool pictured = false;
    prompts_->onStep = [&] {
        highlighted.push_back(highlightedEdges(*frame_));
        if (highlighted.back() > 0 && !pictured) {
            pictured = true;
            const TPXimage shown = frame_->canvas().screenshot();
            EXPECT_TRUE(writePng(shown, folder.path("match.png")));
            writePng(shown, "/tmp/vellum_interpreter_match.png");
            // The same view without the highlight differs: the match is drawn dashed.
            {
                std::lock_guard<std::mutex> lock(frame_->sceneLock());
                for (const DirectedGraphEdge& edge : frame_->graph().edges())
                    if (GraphEdgeObject* object = frame_->scene().objectOf(edge))
                        object->setHighlighted(false);
            }
            const TPXimage plain = frame_->canvas().screenshot();
            EXPECT_EQ(plain.width(), shown.width());
            EXPECT_NE(plain.pixels(), shown.pixels());
        }
        return highlighted.size() < 20 ? int(InterpreterStepDialog::kStep)
                                       : int(InterpreterStepDialog::kGo);
    };
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen2");
    ASSERT_TRUE(waitForEnd());
    ASSERT_EQ(highlighted.size(), 20u);
    EXPECT_TRUE(pictured) << "no pause showed a match";
    // A match shows its triangle's three edges.
    for (std::size_t count : highlighted)
        EXPECT_TRUE(count == 0 || count == 3) << count;
    expectClearedAfterEachMatch(highlighted);
    EXPECT_EQ(frame_->snooze(), 0);
    EXPECT_EQ(summarize(frame_->graph()), commandLineResult(kSierpinski + "sierpinski.mod", "gen2",
                                                            kSierpinski + "triangle.dg"));
    expectSceneFollowedGraph();
}

TEST_F(InterpreterFrameTest, StopInTheStepDialogAbortsTheRun) {
    load(kMutex + "ring5.dg");
    frame_->step();
    // Far enough for the token to be given on along a "next" edge, which the step keeps.
    std::vector<std::size_t> highlighted;
    prompts_->onStep = [&] {
        highlighted.push_back(highlightedEdges(*frame_));
        return highlighted.size() < 60 ? int(InterpreterStepDialog::kStep)
                                       : int(InterpreterStepDialog::kStop);
    };
    startThroughMenu(kMutex + "mutex.mod", "sts");
    ASSERT_TRUE(waitForEnd(std::chrono::seconds(10)));
    EXPECT_EQ(highlighted.size(), 60u);
    expectClearedAfterEachMatch(highlighted);
    EXPECT_EQ(status(), "CPU idle");
    EXPECT_NE(console_.text().find("Program aborted by user"), std::string::npos);
}

TEST_F(InterpreterFrameTest, PropertiesAreTakenOverOnlyWhenConfirmedAndNeverDuringARun) {
    const InterpreterOptions before = frame_->options();
    InterpreterOptions wanted;
    wanted.snooze = 250;
    wanted.morphism = false;
    wanted.intermediate = true;
    wanted.debug = true;
    // The user fills the dialog in, then answers `answer`.
    int answer = wxID_CANCEL;
    prompts_->onDialog = [&](wxDialog& dialog) -> int {
        auto* cpu = dynamic_cast<CpuPropertiesDialog*>(&dialog);
        if (!cpu)
            return wxID_CANCEL;
        cpu->snoozeControl().SetValue(wanted.snooze);
        cpu->morphismControl().SetValue(wanted.morphism);
        cpu->intermediateControl().SetValue(wanted.intermediate);
        cpu->debugControl().SetValue(wanted.debug);
        return answer;
    };
    command(InterpreterFrame::kProperties);
    EXPECT_EQ(frame_->options(), before) << "cancelled";
    answer = wxID_OK;
    command(InterpreterFrame::kProperties);
    EXPECT_EQ(frame_->options(), wanted);

    // Single step in the dialog is snooze -1, and the dialog shows it so.
    prompts_->onDialog = [&](wxDialog& dialog) -> int {
        auto* cpu = dynamic_cast<CpuPropertiesDialog*>(&dialog);
        EXPECT_EQ(cpu->snoozeControl().GetValue(), 250);
        cpu->messageBoxControl().SetValue(true);
        return wxID_OK;
    };
    command(InterpreterFrame::kProperties);
    EXPECT_EQ(frame_->snooze(), InterpreterOptions::kStepMode);

    load(kMutex + "ring5.dg");
    frame_->setSnooze(5000);
    startThroughMenu(kMutex + "mutex.mod", "sts");
    ASSERT_TRUE(frame_->running());
    EXPECT_FALSE(frame_->GetMenuBar()->IsEnabled(InterpreterFrame::kProperties));
    EXPECT_FALSE(frame_->GetMenuBar()->IsEnabled(InterpreterFrame::kChooseLayout));
    EXPECT_FALSE(frame_->properties());
    EXPECT_FALSE(frame_->setOptions(before));
    command(InterpreterFrame::kStop);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(frame_->GetMenuBar()->IsEnabled(InterpreterFrame::kProperties));
}

TEST_F(InterpreterFrameTest, DebugAndIntermediateStepsShowTheStatementAndTheDeletion) {
    load(kSierpinski + "triangle.dg");
    InterpreterOptions options;
    options.snooze = InterpreterOptions::kStepMode;
    options.intermediate = true;
    options.debug = true;
    ASSERT_TRUE(frame_->setOptions(options));
    // At each pause: the selected source text and the edges the scene shows.
    std::vector<std::string> selections;
    std::vector<std::size_t> shownEdges;
    prompts_->onStep = [&] {
        settle();  // the source display's update was posted before the step dialog
        SourceDisplay* source = frame_->sourceDisplay();
        selections.push_back(source && source->IsShown()
                                 ? source->text().GetStringSelection().utf8_string()
                                 : "(hidden)");
        std::lock_guard<std::mutex> lock(frame_->sceneLock());
        shownEdges.push_back(frame_->scene().edgeCount());
        return selections.size() < 40 ? int(InterpreterStepDialog::kStep)
                                      : int(InterpreterStepDialog::kGo);
    };
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen1");
    ASSERT_TRUE(waitForEnd());
    ASSERT_NE(frame_->sourceDisplay(), nullptr);
    EXPECT_EQ(frame_->sourceDisplay()->GetTitle(),
              "DEBUG Source display - " + kSierpinski + "sierpinski.mod");
    // The statements of gen1 in the order they start: the unit, its body's apply, step_t's.
    std::ostringstream seen;
    for (const std::string& text : selections)
        seen << "[" << text << "]";
    EXPECT_NE(seen.str().find("[step_t]"), std::string::npos) << seen.str();
    EXPECT_NE(seen.str().find("[split_t]"), std::string::npos) << seen.str();
    // The one step of gen1: the match (3 edges), its deletion (none), its result (9 edges).
    const std::string counts = [&] {
        std::ostringstream out;
        for (std::size_t n : shownEdges)
            out << n << " ";
        return out.str();
    }();
    EXPECT_NE(counts.find("3 0 9"), std::string::npos) << counts;

    // With debug off the display goes away at the next statement.
    options.snooze = 0;
    options.debug = false;
    ASSERT_TRUE(frame_->setOptions(options));
    load(kSierpinski + "triangle.dg");
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen1");
    ASSERT_TRUE(waitForEnd());
    settle();
    EXPECT_FALSE(frame_->sourceDisplay()->IsShown());
}

TEST_F(InterpreterFrameTest, NewVerticesAppearBetweenTheirNeighboursAndFiguresCountTheRun) {
    load(kSierpinski + "triangle.dg");
    std::map<std::uint64_t, TPXp3> corners;
    for (DirectedGraphVertex& vertex : frame_->graph().vertices())
        corners[vertex.serial()] = readVertexLook(vertex).position;
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen1");
    ASSERT_TRUE(waitForEnd());
    // Each new vertex sits in the middle of the two corners it joins.
    int midpoints = 0;
    for (DirectedGraphVertex& vertex : frame_->graph().vertices()) {
        if (corners.count(vertex.serial())) {
            EXPECT_LT((readVertexLook(vertex).position - corners[vertex.serial()]).length(), 1e-9);
            continue;
        }
        const TPXp3 at = readVertexLook(vertex).position;
        for (auto a = corners.begin(); a != corners.end(); ++a)
            for (auto b = std::next(a); b != corners.end(); ++b)
                midpoints += ((a->second + b->second) * 0.5 - at).length() < 1e-9;
    }
    EXPECT_EQ(midpoints, 3);
    expectSceneFollowedGraph();
    EXPECT_EQ(frame_->figures().BeforeFirst(',').utf8_string(), "1 steps");
    EXPECT_TRUE(frame_->figures().EndsWith(", 6 vertices, 9 edges")) << frame_->figures();
}

TEST_F(InterpreterFrameTest, ARunThatFindsTheSceneBusyLeavesTheSamePlacesAsOneShownStepByStep) {
    // A pause after every step: the scene follows each step before the next.
    load(kSierpinski + "triangle.dg");
    frame_->setSnooze(1);
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen3");
    ASSERT_TRUE(waitForEnd());
    const std::string stepByStep = test::textOf(frame_->graph());

    // No pause, and the scene held as a long paint holds it: the steps are left to the scene
    // for later, and their new vertices must still go where step by step put them.
    load(kSierpinski + "triangle.dg");
    frame_->setSnooze(0);
    console_.reset();
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen3");
    {
        std::lock_guard<std::mutex> busy(frame_->sceneLock());
        // No events meanwhile: a paint would wait for this lock.
        const Clock::time_point until = Clock::now() + kPromptly;
        while (console_.text().find("READY 'gen3'") == std::string::npos && Clock::now() < until)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(frame_->graph().vertexCount(), 42u);
    EXPECT_EQ(test::textOf(frame_->graph()), stepByStep);
    expectSceneFollowedGraph();
}

TEST_F(InterpreterFrameTest, ChosenLayoutRunsAfterEachStepAndVerticesGlideDuringThePause) {
    test::ScopedEnvironment layouts{"VellumLayout", pluginDirectory() + "/"};
    EXPECT_FALSE(frame_->useLayout("no-such-layout"));
    EXPECT_NE(console_.text().find("no-such-layout"), std::string::npos);
    prompts_->onDialog = [](wxDialog& dialog) -> int {
        auto* chooser = dynamic_cast<LayoutDialog*>(&dialog);
        return chooser && chooser->choose("sphere") ? wxID_OK : wxID_CANCEL;
    };
    command(InterpreterFrame::kChooseLayout);
    ASSERT_NE(frame_->layout(), nullptr);
    EXPECT_EQ(frame_->layout()->name(), "sphere");
    EXPECT_TRUE(frame_->GetMenuBar()->IsEnabled(InterpreterFrame::kConfigureLayout));

    load(kSierpinski + "triangle.dg");
    const std::uint64_t first = frame_->graph().vertices().begin()->serial();
    frame_->setSnooze(250);
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen1");
    // Where the first vertex's object is shown, looked at while the run goes.
    std::vector<TPXp3> shownAt;
    while (frame_->running()) {
        {
            std::lock_guard<std::mutex> lock(frame_->sceneLock());
            const auto positions = frame_->scene().vertexPositions();
            if (auto found = positions.find(first); found != positions.end())
                if (shownAt.empty() || (shownAt.back() - found->second).length() > 1e-9)
                    shownAt.push_back(found->second);
        }
        wxTheApp->Yield(true);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    // The sphere layout put all six vertices at one distance from the centre.
    std::vector<double> radii;
    for (DirectedGraphVertex& vertex : frame_->graph().vertices())
        radii.push_back(readVertexLook(vertex).position.length());
    ASSERT_EQ(radii.size(), 6u);
    for (double r : radii)
        EXPECT_NEAR(r, radii[0], 1e-6);
    expectSceneFollowedGraph();
    // From its place on the circle to its place on the sphere, through places in between.
    EXPECT_GE(shownAt.size(), 4u);
}

TEST_F(InterpreterFrameTest, RecordedRunLeavesOnePicturePerStepAndTheFirstBeforeIt) {
    test::TempFolder folder;
    const std::string pictures = folder.path("gen2");
    load(kSierpinski + "triangle.dg");
    ASSERT_TRUE(frame_->recordNextRun(pictures));
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen2");
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(frame_->recording());
    // gen2 is four steps: one split of the triangle, then three.
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(pictures))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names,
              (std::vector<std::string>{"step-000000.png", "step-000001.png", "step-000002.png",
                                        "step-000003.png", "step-000004.png"}));
    EXPECT_NE(test::TempFolder::read(pictures + "/step-000000.png"),
              test::TempFolder::read(pictures + "/step-000004.png"));
    EXPECT_NE(console_.text().find("Recorded 5 pictures in '" + pictures + "'."),
              std::string::npos);
    // The next run is not recorded; a folder with a recording in it takes no second one.
    startThroughMenu(kSierpinski + "sierpinski.mod", "gen1");
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(frame_->recordNextRun(pictures));
    ASSERT_EQ(prompts_->messages.size(), 1u);
    EXPECT_EQ(prompts_->messages[0].rfind("Alert: ", 0), 0u) << prompts_->messages[0];
}

TEST_F(InterpreterFrameTest, ClosingMidRunEndsTheRun) {
    struct Row {
        const char* what;
        int snooze;
    };
    for (const Row& row :
         {Row{"in a long pause", kLongPause}, Row{"waiting for the step dialog", -1}}) {
        SCOPED_TRACE(row.what);
        if (!frame_) {
            auto prompts = std::make_unique<ScriptedPrompts>();
            prompts_ = prompts.get();
            frame_ = new InterpreterFrame(nullptr, std::move(prompts));
        }
        console_.reset();
        load(kMutex + "ring5.dg");
        frame_->setSnooze(row.snooze);
        bool stepAsked = false;
        prompts_->onStep = [&] {
            stepAsked = true;
            return int(InterpreterStepDialog::kGo);
        };
        startThroughMenu(kMutex + "mutex.mod", "sts");
        ASSERT_TRUE(frame_->running());
        // The worker is waiting now; the frame closes before the step dialog can show.
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const Clock::time_point closing = Clock::now();
        EXPECT_TRUE(frame_->Close(true));
        frame_ = nullptr;
        settle();
        EXPECT_LT(Clock::now() - closing, kPromptly);
        EXPECT_FALSE(stepAsked);
        EXPECT_NE(console_.text().find("Program aborted by user"), std::string::npos)
            << console_.text();
    }
}

}  // namespace
}  // namespace vellum
