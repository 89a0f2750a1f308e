// The interpreter under stress and failure: many runs stopped at random moments, runs stopped
// inside loops and nested units, and method calls that fail or cannot be bound. After each one
// the console must show the interpreter's exact end messages and the same CPU must start again.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include "KoralRunTestSupport.h"

namespace vellum {
namespace {

using test::KoralRunTest;
using test::unitText;
using test::waitForOutput;
using test::withoutTime;
using Outcome = koralCPU::Outcome;

// What a run of `unit` writes from its start to its end; `middle` stands between.
std::string runLines(const std::string& unit, const std::string& middle = "") {
    return "RUNNING '" + unit + "'...\n" + middle + "READY '" + unit + "'...T seconds.\n";
}

std::string abortedLines(const std::string& unit) {
    return runLines(unit, "Program aborted by user\n");
}

// Units that never end by themselves: a while loop, an application that always succeeds on a
// growing graph, and an apply statement whose only alternative is an endless unit. "finite"
// ends at once, so a stop may come too late for it. (The module must export a unit "u".)
const std::string kUnits = unitText("apply once grow") + ";\n" +
                           unitText("while (* >= 0) do apply once noop end", "", "", "forever") +
                           ";\n" + unitText("apply as long as possible grow", "", "", "growing") +
                           ";\n" + unitText("apply as long as possible forever", "", "", "nested") +
                           ";\n" + unitText("apply once grow", "", "", "finite");

class KoralFault : public KoralRunTest {
  protected:
    const koralUnit* unit(const std::string& name) {
        if (module_ == nullptr) {
            module_ = compile(kUnits);
            EXPECT_NE(module_, nullptr) << "the module did not compile";
        }
        return module_ == nullptr ? nullptr : module_->findUnit(name);
    }

    // Runs the unit until it ends by itself; the console text of the run.
    static std::string runToEnd(koralCPU& cpu, const koralUnit* unit, DirectedGraph& graph) {
        ConsoleCapture capture;
        EXPECT_TRUE(cpu.start(unit, &graph, nullptr, true));
        EXPECT_TRUE(cpu.waitUntilIdle(std::chrono::seconds(30)));
        return withoutTime(capture.text());
    }

  private:
    const koralModule* module_ = nullptr;
};

TEST_F(KoralFault, SurvivesAThousandStopsAtRandomMoments) {
    const char* names[] = {"forever", "growing", "nested", "finite"};
    const koralUnit* units[4];
    for (int i = 0; i < 4; ++i) {
        units[i] = unit(names[i]);
        ASSERT_NE(units[i], nullptr) << names[i];
    }
    std::mt19937 random(20260611);
    std::uniform_int_distribution<int> kind(0, 3);
    std::uniform_int_distribution<int> wait(0, 400);  // microseconds; 0 stops at once
    DirectedGraph graph;
    std::size_t before = 0;
    koralCPU cpu;
    cpu.setSeed(1);
    ConsoleCapture capture;
    for (int cycle = 0; cycle < 1000; ++cycle) {
        const int k = kind(random);
        const int microseconds = wait(random) - 100;  // a quarter of the stops come at once
        capture.reset();
        ASSERT_TRUE(cpu.start(units[k], &graph, nullptr, true)) << "cycle " << cycle;
        if (microseconds > 0)
            std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
        cpu.stop();
        // The run's last line is written before it counts as idle.
        ASSERT_TRUE(cpu.waitUntilIdle(std::chrono::seconds(30))) << "cycle " << cycle;
        const std::string text = withoutTime(capture.text());
        if (cpu.outcome() == Outcome::Normal) {
            EXPECT_EQ(names[k], std::string("finite")) << "cycle " << cycle;
            EXPECT_EQ(text, runLines(names[k])) << "cycle " << cycle;
        } else {
            EXPECT_EQ(cpu.outcome(), Outcome::Aborted) << "cycle " << cycle << " " << names[k];
            EXPECT_EQ(text, abortedLines(names[k])) << "cycle " << cycle;
        }
        // An aborted run keeps what it did; nothing here removes vertices.
        EXPECT_GE(graph.vertexCount(), before) << "cycle " << cycle;
        EXPECT_EQ(graph.vertexCount("a"), graph.vertexCount()) << "cycle " << cycle;
        before = graph.vertexCount();
    }
    // A stop while idle does not carry over into the next run.
    cpu.stop();
    DirectedGraph fresh;
    EXPECT_EQ(runToEnd(cpu, units[3], fresh), runLines("finite"));
    EXPECT_EQ(cpu.outcome(), Outcome::Normal);
    EXPECT_EQ(fresh.vertexCount("a"), 1u);
}

TEST_F(KoralFault, AStoppedEndlessRunLeavesTheCPUReady) {
    const koralUnit* finite = unit("finite");
    ASSERT_NE(finite, nullptr);
    for (const char* name : {"forever", "growing", "nested"}) {
        const koralUnit* endless = unit(name);
        ASSERT_NE(endless, nullptr) << name;
        DirectedGraph graph;
        koralCPU cpu;
        ConsoleCapture capture;
        ASSERT_TRUE(cpu.start(endless, &graph, nullptr, true));
        // Well into the loop: the worker has written its first line.
        ASSERT_TRUE(waitForOutput(capture, std::chrono::seconds(30)))
            << name << ": the run wrote nothing within 30 seconds";
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_TRUE(cpu.running()) << name;
        cpu.stop();
        ASSERT_TRUE(cpu.waitUntilIdle(std::chrono::seconds(30))) << name;
        EXPECT_EQ(withoutTime(capture.text()), abortedLines(name));
        EXPECT_EQ(cpu.outcome(), Outcome::Aborted) << name;

        DirectedGraph next;
        EXPECT_EQ(runToEnd(cpu, finite, next), runLines("finite")) << name;
        EXPECT_EQ(cpu.outcome(), Outcome::Normal) << name;
        EXPECT_EQ(next.vertexCount("a"), 1u) << name;
    }
}

TEST_F(KoralFault, AFailingMethodEndsTheRunAndTheNextRunWorks) {
    const koralModule* module =
        compile(unitText("apply once grow; call graphstats.fail; apply once grow") + ";\n" +
                unitText("apply once grow; call graphstats.check", "", "", "checked"));
    ASSERT_NE(module, nullptr);
    DirectedGraph graph;
    koralCPU cpu;
    cpu.setSeed(1);
    EXPECT_EQ(runToEnd(cpu, module->findUnit("u"), graph),
              runLines("u",
                       "caugh't: graphstats: method 'fail' failed on purpose\n"
                       "from class: koralEvalCall\nof transformation unit: u\n"));
    EXPECT_EQ(cpu.outcome(), Outcome::Exception);
    // The statements before the failure took effect, those after it did not run.
    EXPECT_EQ(graph.vertexCount("a"), 1u);

    EXPECT_EQ(runToEnd(cpu, module->findUnit("checked"), graph), runLines("checked"));
    EXPECT_EQ(cpu.outcome(), Outcome::Normal);
    EXPECT_EQ(graph.vertexCount("a"), 2u);
}

TEST_F(KoralFault, ACallThatCannotBeBoundIsReportedAndLeftOut) {
    // Binding happens when the module is compiled: each bad call is reported there and the
    // module compiles without it.
    std::string messages;
    const koralModule* module =
        compile(unitText("call nolibrary.counts; call graphstats.nothing; call graphstats; "
                         "apply once grow"),
                &messages);
    ASSERT_NE(module, nullptr) << messages;
    EXPECT_EQ(messages,
              "caugh't: Could not load the library 'nolibrary' !!!\nfrom class: koralLibrary\n"
              "caugh't: Could not find the method 'nothing' in the library 'graphstats' !!!\n"
              "from class: koralLibrary\n"
              "caugh't: Could not find the character '.'\nfrom class: koralLibrary\n");
    DirectedGraph graph;
    koralCPU cpu;
    EXPECT_EQ(runToEnd(cpu, module->findUnit("u"), graph), runLines("u"));
    EXPECT_EQ(cpu.outcome(), Outcome::Normal);
    EXPECT_EQ(graph.vertexCount("a"), 1u);
}

}  // namespace
}  // namespace vellum
