// A thousand starts and stops of the interpreter frame through its commands, with no pause,
// a long pause and single steps, stopped at once, a few milliseconds later or in the step dialog,
// and each time started again at once: every run ends, the status line goes back to "CPU idle",
// and the graph, its scene and its file stay intact. The thread-sanitizer stage of scripts/test
// runs it too, where the worker and the GUI thread meet in every cycle.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/Console.h"
#include "base/Paths.h"
#include "gui/InterpreterFrame.h"
#include "gui/InterpreterStepDialog.h"
#include "gui/tests/ScriptedPrompts.h"
#include "gui/view/SceneListing.h"
#include "tests/support/GraphInvariants.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using Clock = std::chrono::steady_clock;
using test::ScriptedPrompts;

constexpr int kCycles = 1000;
constexpr int kCheckEvery = 250;  // cycles between two waits for the end and graph checks
// Start comes from the menu, which asks for the module and the unit, in one round of the ways in
// this many; in the others from the command `vellum --run` uses, which does not: the chooser is a
// dialog built anew each time and costs more than the rest of a cycle.
constexpr int kMenuStartEvery = 4;
constexpr int kLongPause = 120000;
// How long a cycle may take, or the final run to end: generous for a sanitizer build.
constexpr std::chrono::seconds kStuck{30};

// A token that goes round a ring of five processes for ever: only Stop ends a run, so every stop
// meets a live worker. Each step deletes an edge and adds one, and leaves the graph's shape.
const char* const kRule = R"(directed graphrule turn
{
	left-hand side
	{
		vertex 1 { label resource }
		vertex 2 { label process }
		vertex 3 { label process }
		edge 4 : 1 -> 2 { label token }
		edge 5 : 2 -> 3 { label next }
	}
	interface
	{
		vertex 1 <-> 6
		vertex 2 <-> 7
		vertex 3 <-> 8
		edge 5 <-> 9
	}
	right-hand side
	{
		vertex 6 { label resource }
		vertex 7 { label process }
		vertex 8 { label process }
		edge 9 : 7 -> 8 { label next }
		edge 10 : 6 -> 8 { label token }
	}
}
)";
const char* const kModule = R"(module cycles
graph class : DirectedGraph
exports transformation unit spin
realized by
transformation unit spin
initial : (vertices.resource == 1 && edges.token == 1)
body : apply as long as possible turn
terminal :
end
end.
)";
const char* const kRing = R"(directed graph ring
{
	vertex 1 { label process }
	vertex 2 { label process }
	vertex 3 { label process }
	vertex 4 { label process }
	vertex 5 { label process }
	vertex 6 { label resource }
	edge 1 -> 2 { label next }
	edge 2 -> 3 { label next }
	edge 3 -> 4 { label next }
	edge 4 -> 5 { label next }
	edge 5 -> 1 { label next }
	edge 6 -> 1 { label token }
}
)";

// Ends the test program when the cycles make no progress for `limit`: a worker that never ends
// would otherwise hang it inside the frame's join, which no bounded wait of the test reaches.
class Watchdog {
  public:
    explicit Watchdog(std::chrono::seconds limit)
        : m_last(Clock::now()), m_thread([this, limit] { watch(limit); }) {}
    ~Watchdog() {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_done = true;
        }
        m_wake.notify_all();
        m_thread.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    void progress(int cycle, const char* what) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_cycle = cycle;
        m_what = what;
        m_last = Clock::now();
    }

  private:
    void watch(std::chrono::seconds limit) {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_wake.wait_for(lock, std::chrono::milliseconds(100), [this] { return m_done; })) {
            if (Clock::now() - m_last < limit)
                continue;
            std::fprintf(stderr, "InterpreterCyclesTest: cycle %d (%s) stuck for %lld s\n", m_cycle,
                         m_what, static_cast<long long>(limit.count()));
            std::_Exit(1);
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_done = false;
    int m_cycle = 0;
    const char* m_what = "starting";
    Clock::time_point m_last;
    std::thread m_thread;
};

// How a cycle runs the unit and how it stops it.
enum class Pace { None, LongPause, SingleStep };
enum class StopAt { Once, AfterAFewMs, InStepDialog, AfterStepsInDialog, AfterGo };

struct Way {
    const char* what;
    Pace pace;
    StopAt stop;
};

// In turn; a run stopped in single steps before its dialog showed comes before one without
// pauses, in which a step dialog left over from it would show.
const Way kWays[] = {
    {"single step, stopped at once", Pace::SingleStep, StopAt::Once},
    {"no pause, stopped after a few ms", Pace::None, StopAt::AfterAFewMs},
    {"long pause, stopped at once", Pace::LongPause, StopAt::Once},
    {"single step, Stop in the step dialog", Pace::SingleStep, StopAt::InStepDialog},
    {"no pause, stopped at once", Pace::None, StopAt::Once},
    {"long pause, stopped after a few ms", Pace::LongPause, StopAt::AfterAFewMs},
    {"single step, two Steps, then Stop", Pace::SingleStep, StopAt::AfterStepsInDialog},
    {"single step, Go, stopped a few ms later", Pace::SingleStep, StopAt::AfterGo},
};

class InterpreterCyclesTest : public test::FrameTest<InterpreterFrame, ScriptedPrompts> {
  protected:
    InterpreterCyclesTest() : FrameTest({400, 320}) {}
    void SetUp() override {
        FrameTest::SetUp();
        if (!runs())
            return;
        prompts_->unit = "spin";
        frame_->setRunEnded([this](bool normally) {
            ++ended_;
            endedNormally_ += normally;
        });
    }
    // Lets the event loop run for about `ms` milliseconds, or until `done` holds.
    template <typename Done>
    void runEventsFor(int ms, Done done) {
        const Clock::time_point until = Clock::now() + std::chrono::milliseconds(ms);
        while (!done() && Clock::now() < until) {
            wxTheApp->Yield(true);
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
    }
    std::string status() const { return frame_->status().utf8_string(); }

    // Runs one cycle: the pace set, Start, the stop `way` says; a problem when the frame did not
    // start or did not say "CPU idle" after the stop.
    std::string cycle(int number, const Way& way, bool fromMenu) {
        const int fewMs = 1 + number % 4;
        answers_ = 0;
        const StopAt stop = way.stop;
        const bool stepping = way.pace == Pace::SingleStep;
        prompts_->onStep = [this, stop, stepping] {
            if (!stepping) {
                ++strayDialogs_;
                return int(InterpreterStepDialog::kStop);
            }
            ++answers_;
            if (stop == StopAt::AfterGo)
                return int(InterpreterStepDialog::kGo);
            if (stop == StopAt::AfterStepsInDialog && answers_ <= 2)
                return int(InterpreterStepDialog::kStep);
            return int(InterpreterStepDialog::kStop);
        };
        if (way.pace == Pace::SingleStep)
            command(InterpreterFrame::kStep);
        else
            frame_->setSnooze(way.pace == Pace::LongPause ? kLongPause : 0);
        if (fromMenu) {
            prompts_->files.push_back(module_);
            command(InterpreterFrame::kStart);
        } else {
            frame_->startUnit(module_, "spin");
        }
        if (!frame_->running() || status() != "Running spin")
            return "did not start (status '" + status() + "')";
        ++started_;
        switch (way.stop) {
            case StopAt::Once:
                command(InterpreterFrame::kStop);
                break;
            case StopAt::AfterAFewMs:
                runEventsFor(fewMs, [] { return false; });
                command(InterpreterFrame::kStop);
                break;
            case StopAt::InStepDialog:
            case StopAt::AfterStepsInDialog:
                // The dialog's Stop stops the frame; a wait the watchdog bounds.
                runEventsFor(kStuck.count() * 1000, [&] { return status() == "CPU idle"; });
                break;
            case StopAt::AfterGo:
                runEventsFor(kStuck.count() * 1000, [&] { return answers_ > 0; });
                runEventsFor(fewMs, [] { return false; });
                command(InterpreterFrame::kStop);
                break;
        }
        if (status() != "CPU idle")
            return "the status says '" + status() + "' after the stop";
        return {};
    }

    // Waits, at most kStuck, for the frame to see the last run end; then the graph must still be
    // the ring with its token, consistent, shown by its scene, and must save and load unchanged.
    void expectIdleAndGraphIntact(const std::string& when) {
        SCOPED_TRACE(when);
        runEventsFor(kStuck.count() * 1000, [&] { return !frame_->running(); });
        ASSERT_FALSE(frame_->running())
            << "the last run did not end within " << kStuck.count() << " s";
        EXPECT_EQ(status(), "CPU idle");
        EXPECT_EQ(ended_, started_) << "runs that never ended";
        DirectedGraph& graph = frame_->graph();
        EXPECT_TRUE(test::graphIsConsistent(graph));
        EXPECT_EQ(graph.vertexCount("process"), 5u);
        EXPECT_EQ(graph.vertexCount("resource"), 1u);
        EXPECT_EQ(graph.edgeCount("next"), 5u);
        EXPECT_EQ(graph.edgeCount("token"), 1u);
        EXPECT_EQ(graph.edgeCount(), 6u);
        GraphScene fresh;
        fresh.build(graph);
        std::ostringstream shown, built;
        writeSceneListing(shown, graph, frame_->scene());
        writeSceneListing(built, graph, fresh);
        EXPECT_EQ(shown.str(), built.str()) << "the scene did not follow the graph";

        const std::string before = test::textOf(graph);
        const std::string file = folder_.path("saved.dg");
        prompts_->files.push_back(file);
        command(InterpreterFrame::kSaveGraph);
        prompts_->files.push_back(file);
        command(InterpreterFrame::kLoadGraph);
        EXPECT_EQ(test::textOf(frame_->graph()), before) << "saved and loaded again";
    }

    test::ScopedEnvironment classes_{"koralGraphClasses", pluginDirectory()};
    test::ScopedEnvironment graphs_{"DirectedGraphEXTGRAPH", "dg"};
    test::ScopedEnvironment rules_{"DirectedGraphEXTRULE", "drl"};
    test::TempFolder folder_;
    const std::string module_ =
        (folder_.write("turn.drl", kRule), folder_.write("cycles.mod", kModule));
    ConsoleCapture console_;
    int started_ = 0;
    int ended_ = 0;
    int endedNormally_ = 0;
    int answers_ = 0;       // step dialogs answered in this cycle
    int strayDialogs_ = 0;  // step dialogs shown in runs without single steps
};

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST_F(InterpreterCyclesTest, AThousandStartsAndStopsEndEveryRunAndKeepTheGraph) {
    prompts_->files.push_back(folder_.write("ring.dg", kRing));
    command(InterpreterFrame::kLoadGraph);
    ASSERT_EQ(frame_->graph().vertexCount(), 6u) << console_.text();
    InterpreterOptions options;
    options.morphism = true;
    options.intermediate = true;
    ASSERT_TRUE(frame_->setOptions(options));

    Watchdog watchdog(kStuck);
    for (int i = 1; i <= kCycles; ++i) {
        const Way& way = kWays[i % std::size(kWays)];
        const bool fromMenu = i / std::size(kWays) % kMenuStartEvery == 0;
        watchdog.progress(i, way.what);
        const std::string problem = cycle(i, way, fromMenu);
        ASSERT_EQ(problem, "") << "cycle " << i << " (" << way.what << ")\n"
                               << console_.text().substr(console_.text().size() > 2000
                                                             ? console_.text().size() - 2000
                                                             : 0);
        if (i % kCheckEvery == 0) {
            expectIdleAndGraphIntact("after cycle " + std::to_string(i));
            if (HasFailure())
                return;
        }
    }
    // Each run ended by its stop, once, with the interpreter's own lines.
    EXPECT_EQ(started_, kCycles);
    EXPECT_EQ(endedNormally_, 0);
    const std::string log = console_.text();
    EXPECT_EQ(occurrences(log, "RUNNING 'spin'..."), std::size_t(kCycles));
    EXPECT_EQ(occurrences(log, "Program aborted by user"), std::size_t(kCycles));
    EXPECT_EQ(occurrences(log, "READY 'spin'..."), std::size_t(kCycles));
    EXPECT_EQ(log.find("caugh't"), std::string::npos) << log.substr(log.find("caugh't"), 300);
    EXPECT_TRUE(prompts_->messages.empty()) << prompts_->messages.front();
    EXPECT_EQ(strayDialogs_, 0) << "step dialogs of stopped runs showed in later runs";
}

}  // namespace
}  // namespace vellum
