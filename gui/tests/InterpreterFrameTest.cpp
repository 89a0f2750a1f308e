// The interpreter frame in a real frame under an X display, driven through its menus with every
// question answered by a script: a bundled example's unit runs to the same graph as on the
// command line, with the status line and console telling the run; a start while one goes shows
// the alert; Stop ends a long pause at once; single steps show and then clear the match's
// highlight; closing the frame mid-run ends the run.
#include <gtest/gtest.h>
#include <wx/menu.h>

#include <chrono>
#include <deque>
#include <functional>
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
#include "gui/InterpreterFrame.h"
#include "gui/InterpreterStepDialog.h"
#include "gui/UnitChooserDialog.h"
#include "gui/tests/GuiToolkit.h"
#include "gui/view/PngWriter.h"
#include "gui/view/SceneListing.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using Clock = std::chrono::steady_clock;

test::GuiToolkit* const toolkit = &test::guiToolkit();

const std::string kExamples = VELLUM_EXAMPLES_DIR;
const std::string kSierpinski = kExamples + "/sierpinski/";
const std::string kMutex = kExamples + "/mutex/";

// Answers the frame's questions: files from a queue, the unit chooser with a unit name, the
// step dialog through `onStep`; notes every message box.
class ScriptedPrompts : public EditorPrompts {
  public:
    int message(wxWindow*, const wxString& text, const wxString& title, long) override {
        messages.push_back(title.utf8_string() + ": " + text.utf8_string());
        return wxOK;
    }
    wxString fileName(wxWindow*, const wxString& filter, const wxString&, bool) override {
        filters.push_back(filter.utf8_string());
        if (files.empty())
            return {};
        const std::string name = files.front();
        files.pop_front();
        return wxString::FromUTF8(name);
    }
    int showModal(wxDialog& dialog) override {
        if (auto* chooser = dynamic_cast<UnitChooserDialog*>(&dialog)) {
            if (!chooser->choose(unit))
                return wxID_CANCEL;
            conditions = chooser->conditions().utf8_string();
            return wxID_OK;
        }
        if (dynamic_cast<InterpreterStepDialog*>(&dialog) && onStep)
            return onStep();
        return wxID_CANCEL;
    }

    std::vector<std::string> messages;
    std::deque<std::string> files;
    std::vector<std::string> filters;
    std::string unit;
    std::string conditions;  // shown by the unit chooser for `unit`
    std::function<int()> onStep;
};

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

class InterpreterFrameTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!toolkit->requireReady()) {
            if (HasFailure())
                FAIL() << "the test cannot run without the toolkit";  // skips its body
            GTEST_SKIP() << "no display: the GUI tests need one, e.g. under xvfb-run";
        }
        auto prompts = std::make_unique<ScriptedPrompts>();
        prompts_ = prompts.get();
        frame_ = new InterpreterFrame(nullptr, std::move(prompts));
        frame_->SetClientSize(400, 320);
        settle();
    }
    void TearDown() override {
        if (!toolkit->ready())
            return;  // nothing was opened; the toolkit is not running
        if (frame_)
            frame_->Destroy();
        wxTheApp->ProcessIdle();
    }

    static void settle() {
        for (int i = 0; i < 5; ++i) {
            wxTheApp->Yield(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    void command(int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        event.SetEventObject(frame_);
        frame_->ProcessWindowEvent(event);
    }
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
    ScriptedPrompts* prompts_ = nullptr;
    InterpreterFrame* frame_ = nullptr;
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
          {"E&xit", true}}},
        {"&CPU",
         {{"&Start...", true}, {"St&ep...", true}, {"S&top...", true}, {"&Properties...", false}}},
        {"&Layout",
         {{"Choose l&ayout algorithm...", false}, {"Configure l&ayout algorithm...", false}}},
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
    frame_->setSnooze(5000);
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
    ASSERT_TRUE(waitForEnd(std::chrono::milliseconds(2000)));
    EXPECT_LT(Clock::now() - stopped, std::chrono::milliseconds(2000));
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

TEST_F(InterpreterFrameTest, ClosingMidRunEndsTheRun) {
    struct Row {
        const char* what;
        int snooze;
    };
    for (const Row& row : {Row{"in a long pause", 5000}, Row{"waiting for the step dialog", -1}}) {
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
        EXPECT_LT(Clock::now() - closing, std::chrono::milliseconds(2000));
        EXPECT_FALSE(stepAsked);
        EXPECT_NE(console_.text().find("Program aborted by user"), std::string::npos)
            << console_.text();
    }
}

}  // namespace
}  // namespace vellum
