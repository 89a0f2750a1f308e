#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "KoralRunTestSupport.h"
#include "koral/KoralApply.h"

namespace vellum {
namespace {

using test::addVertices;
using test::KoralRunTest;
using test::RunResult;
using test::unitText;
using Outcome = koralCPU::Outcome;

const std::string kRunning = "RUNNING 'u'...\n";
const std::string kReady = "READY 'u'...T seconds.\n";

// The three lines of a run-time exception of unit u.
std::string caught(const std::string& message, const std::string& className) {
    return "caugh't: " + message + "\nfrom class: " + className + "\nof transformation unit: u\n";
}

struct ApplyCase {
    std::string body;
    int a, b;             // vertices labelled a and b before
    std::string console;  // between RUNNING and READY
    int aAfter, bAfter;
};

TEST_F(KoralRunTest, AppliesInEachModeWithItsMessages) {
    const std::string apply = "koralEvalApply";
    const ApplyCase rows[] = {
        {"apply once aToB", 2, 0, "", 1, 1},
        {"apply once never", 1, 0, caught("Reduced rule set without having applied a rule", apply),
         1, 0},
        {"apply once never < never2 < aToB", 1, 0, "", 0, 1},
        {"apply as long as possible aToB", 3, 1, "", 0, 4},
        {"apply as long as possible never", 2, 0, "", 2, 0},
        {"apply 3 times grow", 0, 0, "", 3, 0},
        {"apply 2 times aToB", 3, 0, "", 1, 2},
        // The second pass fails, and with it the only alternative.
        {"apply 3 times aToB", 1, 0,
         caught("Finished loop 2 of 3\nBut no one of the rules can be applied anymore!!!", apply),
         0, 1},
        // Each failure uses up a pass; both have failed by the end of the second.
        {"apply 3 times never | never2", 1, 0,
         caught("Finished loop 2 of 3\nBut no one of the rules can be applied anymore!!!", apply),
         1, 0},
        {"apply once alien", 1, 0,
         caught("The type of the rule 'alien' and the graph are different!!!", apply), 1, 0},
    };
    for (const ApplyCase& row : rows) {
        DirectedGraph graph;
        addVertices(graph, "a", row.a);
        addVertices(graph, "b", row.b);
        const RunResult result = runBody(row.body, graph);
        EXPECT_EQ(result.console, kRunning + row.console + kReady) << row.body;
        EXPECT_EQ(result.outcome, row.console.empty() ? Outcome::Normal : Outcome::Exception)
            << row.body;
        EXPECT_EQ(static_cast<int>(graph.vertexCount("a")), row.aAfter) << row.body;
        EXPECT_EQ(static_cast<int>(graph.vertexCount("b")), row.bAfter) << row.body;
        clearKoralCaches();
    }
}

// A host graph whose readiness query says no: rule application refuses it with code 2.
class NotReadyGraph : public DirectedGraph {
  public:
    bool isReady() const override { return false; }
};

TEST_F(KoralRunTest, NamesTheRuleOfAnInconsistentApplication) {
    NotReadyGraph graph;
    EXPECT_EQ(runBody("apply once grow", graph).console,
              kRunning + caught("Inconsistant rule: grow", "koralEvalApply") + kReady);
}

TEST_F(KoralRunTest, ChecksConditionsAndBranches) {
    const struct {
        std::string body, initial, terminal;
        int a;
        std::string console;
    } rows[] = {
        {"apply once grow", "(a == 0)", "(a == 1)", 0, ""},
        {"apply once grow", "(a == 5)", "", 0,
         "caugh't: Initial condition violated!\nof transformation unit: u\n"},
        {"apply once grow", "", "(a == 0)", 0,
         "caugh't: Terminal condition violated!\nof transformation unit: u\n"},
        {"if (a == 0) then apply once grow else apply 2 times grow end", "", "(a == 1)", 0, ""},
        {"if (a == 0) then apply once grow else apply 2 times grow end", "", "(a == 3)", 1, ""},
        {"if (a == 0) then apply once grow end", "", "(a == 1)", 1, ""},
        {"if (a == 0) then call graphstats.nosuch end", "", "", 0,
         caught("Then part missing!!!", "koralEvalIf")},
        {"while (a < 4) do apply once grow end", "", "(a == 4)", 1, ""},
        {"call graphstats.fail", "", "", 0,
         caught("graphstats: method 'fail' failed on purpose", "koralEvalCall")},
        {"call graphstats.counts", "", "", 1,
         "graphstats: 1 vertices, 0 edges\n  vertices 'a': 1\n"},
    };
    for (const auto& row : rows) {
        DirectedGraph graph;
        addVertices(graph, "a", row.a);
        const RunResult result = runBody(row.body, graph, row.initial, row.terminal);
        EXPECT_EQ(result.console, kRunning + row.console + kReady) << row.body;
        clearKoralCaches();
    }
}

TEST_F(KoralRunTest, AUnitAlternativeRunsTheUnitAndItsConditions) {
    const koralModule* module = compile(unitText("apply 2 times grow", "(a == 0)", "", "helper") +
                                        ";\n" + unitText("apply 2 times helper | helper"));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    // The second application of helper finds its initial condition violated.
    const RunResult result = run(module->findUnit("u"), graph);
    EXPECT_EQ(result.console,
              kRunning + "caugh't: Initial condition violated!\nof transformation unit: helper\n" +
                  kReady);
    EXPECT_EQ(graph.vertexCount("a"), 2u);
}

TEST_F(KoralRunTest, EndsEndlessSelfApplicationWithAnError) {
    DirectedGraph graph;
    const RunResult result = runBody("apply once u", graph);
    EXPECT_EQ(
        result.console,
        kRunning + caught("Units and statements nested too deeply!!!", "koralEvaluate") + kReady);
    EXPECT_EQ(result.outcome, Outcome::Exception);
}

TEST_F(KoralRunTest, WritesTheBannerUnlessQuiet) {
    const koralModule* module = compile(unitText("apply once noop"));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    ConsoleCapture capture;
    koralCPU cpu;
    ASSERT_TRUE(cpu.start("mod.u", &graph, nullptr, false));
    cpu.wait();
    EXPECT_EQ(test::withoutTime(capture.text()),
              "== Koral Interpreter v3 r2 ==\nCopyright (c) 2026 the Vellum developers\n\n" +
                  kRunning + kReady);
    capture.reset();
    EXPECT_FALSE(cpu.start("mod.nothing", &graph, nullptr, true));
    EXPECT_EQ(capture.text(), "Could not find the transformation unit 'mod.nothing'!!!\n");
}

// Records every notification; 4000 with the record's label, code and line.
class RecordingFrame : public KoralFrame {
  public:
    void notify(const FrameEvent& event) override {
        std::string entry = std::to_string(eventCode(event));
        if (const auto* started = std::get_if<StatementStarted>(&event)) {
            const koralSourcePosition& position = started->position;
            entry += " " + position.label + " " + std::to_string(position.code) + " line " +
                     std::to_string(position.line);
        }
        if (const auto* chosen = std::get_if<OccurrenceChosen>(&event))
            entry += " " + chosen->rule.name();
        std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(entry);
    }
    std::vector<std::string> events() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return events_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> events_;
};

TEST_F(KoralRunTest, TellsTheFrameOfEveryStatementAndStep) {
    const koralModule* module = compile(
        "transformation unit u\ninitial : (a == 0)\nbody :\n apply once grow;\n"
        " if (a == 1) then apply once never < aToB end\nterminal : (b == 1)\nend");
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    RecordingFrame frame;
    EXPECT_EQ(run(module->findUnit("u"), graph, &frame).outcome, Outcome::Normal);
    const std::vector<std::string> expected = {"4000 UNIT 4004 line 5",
                                               "4000 INITIAL 4005 line 6",
                                               "4000 APPLY 4001 line 8",
                                               "4000 grow 4002 line 8",
                                               "2001",
                                               "4000 IF 4008 line 9",
                                               "4000 APPLY 4001 line 9",
                                               "4000 never 4002 line 9",
                                               "4000 aToB 4002 line 9",
                                               "2000 aToB",
                                               "2002",
                                               "2001",
                                               "4000 TERMINAL 4006 line 10"};
    EXPECT_EQ(frame.events(), expected);
}

// The labels of the statements as a run starts them, through the trace hook.
std::vector<std::string> tracedLabels(const koralUnit* unit, std::optional<std::uint32_t> seed) {
    std::vector<std::string> labels;
    koralCPU cpu;
    cpu.setSeed(seed);
    cpu.setTraceHook([&labels](const koralSourcePosition& p) { labels.push_back(p.label); });
    DirectedGraph graph;
    ConsoleCapture quiet;
    EXPECT_TRUE(cpu.start(unit, &graph, nullptr, true));
    cpu.wait();
    return labels;
}

TEST_F(KoralRunTest, AFixedSeedRepeatsTheChoices) {
    const koralModule* module = compile(unitText("apply 30 times growX | growY | growZ"));
    ASSERT_NE(module, nullptr);
    const koralUnit* unit = module->findUnit("u");
    const auto first = tracedLabels(unit, 7);
    EXPECT_EQ(first.size(), 32u);  // UNIT, APPLY and 30 choices
    EXPECT_EQ(tracedLabels(unit, 7), first);
    EXPECT_NE(tracedLabels(unit, 8), first);
    // Every alternative gets chosen, none more than it should by chance.
    for (const char* rule : {"growX", "growY", "growZ"})
        EXPECT_GE(std::count(first.begin(), first.end(), rule), 3) << rule;
}

// A unit that runs until it is stopped.
const char* kEndless = "while (* >= 0) do apply once noop end";

TEST_F(KoralRunTest, StopEndsAnEndlessLoopPromptly) {
    const koralModule* module = compile(unitText(kEndless));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    ConsoleCapture capture;
    koralCPU cpu;
    ASSERT_TRUE(cpu.start(module->findUnit("u"), &graph, nullptr, true));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(cpu.running());
    cpu.stop();
    EXPECT_TRUE(cpu.waitUntilIdle(std::chrono::seconds(10)));
    cpu.wait();
    EXPECT_EQ(cpu.outcome(), Outcome::Aborted);
    EXPECT_EQ(test::withoutTime(capture.text()), kRunning + "Program aborted by user\n" + kReady);
}

TEST_F(KoralRunTest, RefusesASecondStartAndLeavesTheRunAlone) {
    const koralModule* module = compile(unitText(kEndless));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph, other;
    ConsoleCapture capture;
    koralCPU cpu;
    ASSERT_TRUE(cpu.start(module->findUnit("u"), &graph, nullptr, true));
    // Let the worker write its first line, so that the console's order is known.
    ASSERT_TRUE(test::waitForOutput(capture, std::chrono::seconds(30)));
    EXPECT_FALSE(cpu.start(module->findUnit("u"), &other, nullptr, true));
    EXPECT_TRUE(cpu.running());
    cpu.stop();
    cpu.wait();
    EXPECT_EQ(
        test::withoutTime(capture.text()),
        kRunning + "There is currently a program running!\nProgram aborted by user\n" + kReady);
    // Once the run has ended the CPU starts again.
    capture.reset();
    clearKoralCaches();
    const koralModule* finite = compile(unitText("apply once grow"));
    ASSERT_TRUE(cpu.start(finite->findUnit("u"), &other, nullptr, true));
    cpu.wait();
    EXPECT_EQ(cpu.outcome(), Outcome::Normal);
    EXPECT_EQ(other.vertexCount("a"), 1u);
}

TEST_F(KoralRunTest, DestroyingARunningCPUStopsItsWorker) {
    const koralModule* module = compile(unitText(kEndless));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    ConsoleCapture capture;
    {
        koralCPU cpu;
        ASSERT_TRUE(cpu.start(module->findUnit("u"), &graph, nullptr, true));
    }
    EXPECT_EQ(test::withoutTime(capture.text()), kRunning + "Program aborted by user\n" + kReady);
}

// Holds the run at its first rule application until released, as a frame in step mode does.
class PausingFrame : public KoralFrame {
  public:
    void notify(const FrameEvent& event) override {
        if (!std::holds_alternative<RuleApplied>(event))
            return;
        std::unique_lock<std::mutex> lock(mutex_);
        paused_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return released_; });
    }
    void waitUntilPaused() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return paused_; });
    }
    void release() {
        std::lock_guard<std::mutex> lock(mutex_);
        released_ = true;
        changed_.notify_all();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool paused_ = false;
    bool released_ = false;
};

TEST_F(KoralRunTest, AStoppedRunDoesNotWaitForARuleThatAnotherRunHolds) {
    const koralModule* module = compile(unitText("apply once grow"));
    ASSERT_NE(module, nullptr);
    DirectedGraph pausedGraph, waitingGraph;
    PausingFrame frame;
    ConsoleCapture quiet;
    koralCPU paused, waiting;
    ASSERT_TRUE(paused.start(module->findUnit("u"), &pausedGraph, &frame, true));
    frame.waitUntilPaused();
    ASSERT_TRUE(waiting.start(module->findUnit("u"), &waitingGraph, nullptr, true));
    // It waits for the rule, and gives up when stopped.
    EXPECT_FALSE(waiting.waitUntilIdle(std::chrono::milliseconds(50)));
    waiting.stop();
    EXPECT_TRUE(waiting.waitUntilIdle(std::chrono::seconds(10)));
    EXPECT_EQ(waiting.outcome(), Outcome::Aborted);
    EXPECT_EQ(waitingGraph.vertexCount(), 0u);
    frame.release();
    paused.wait();
    EXPECT_EQ(paused.outcome(), Outcome::Normal);
    EXPECT_EQ(pausedGraph.vertexCount("a"), 1u);
}

TEST_F(KoralRunTest, InterpretersShareModulesAndRules) {
    const koralModule* module = compile(unitText("apply 200 times grow | aToB"));
    ASSERT_NE(module, nullptr);
    std::vector<DirectedGraph> graphs(3);
    std::vector<std::unique_ptr<koralCPU>> cpus;
    ConsoleCapture quiet;
    for (DirectedGraph& graph : graphs) {
        cpus.push_back(std::make_unique<koralCPU>());
        cpus.back()->setSeed(3);
        ASSERT_TRUE(cpus.back()->start(module->findUnit("u"), &graph, nullptr, true));
    }
    for (auto& cpu : cpus) {
        cpu->wait();
        EXPECT_EQ(cpu->outcome(), Outcome::Normal);
    }
    // The same seed makes the same choices on every graph.
    for (DirectedGraph& graph : graphs) {
        EXPECT_EQ(graph.vertexCount("a") + graph.vertexCount("b"),
                  graphs[0].vertexCount("a") + graphs[0].vertexCount("b"));
        EXPECT_EQ(graph.vertexCount("b"), graphs[0].vertexCount("b"));
    }
}

TEST_F(KoralRunTest, CollectsStatisticsWhenAsked) {
    const koralModule* module = compile(unitText("apply as long as possible aToB | never"));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    addVertices(graph, "a", 4);
    koralCPU cpu;
    cpu.setCollectStatistics(true);
    ConsoleCapture quiet;
    ASSERT_TRUE(cpu.start(module->findUnit("u"), &graph, nullptr, true));
    cpu.wait();
    const KoralStatistics& statistics = cpu.statistics();
    EXPECT_EQ(statistics.rules().at("aToB").applications, 4u);
    // A success re-enables both: aToB is tried 5 times, never at least once per success.
    EXPECT_EQ(statistics.rules().at("aToB").attempts, 5u);
    EXPECT_EQ(statistics.rules().at("never").applications, 0u);
    EXPECT_EQ(statistics.total().applications, 4u);
}

}  // namespace
}  // namespace vellum
