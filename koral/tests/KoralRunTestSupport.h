// Helpers of the module and interpreter tests: a fixture that points the search paths at the
// test graph class handler (TestGraph.gc), the rule fixtures and a fresh module folder, writes
// modules there, and runs units to the end, returning what the console showed.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "koral/KoralCPU.h"
#include "koral/ModuleCache.h"
#include "tests/support/ConsoleText.h"

namespace vellum::test {

// A module "mod" of graph class TestGraph with the given units (the first exported). Module
// names of one character cannot be used in "module.unit" names.
inline std::string moduleText(const std::string& units, const std::string& name = "mod") {
    return "module " + name + "\ngraph class : TestGraph\nexports transformation unit u\n" +
           "realized by\n" + units + "\nend.\n";
}

// A unit "u" (or another name) with that body and conditions.
inline std::string unitText(const std::string& body, const std::string& initial = "",
                            const std::string& terminal = "", const std::string& name = "u") {
    return "transformation unit " + name + "\ninitial : " + initial + "\nbody : " + body +
           "\nterminal : " + terminal + "\nend";
}

// Waits until something has been written to the console, at most `limit`; false if nothing
// came, so that a run that never starts fails the test instead of hanging it.
inline bool waitForOutput(const ConsoleCapture& capture, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (capture.text().empty()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

struct RunResult {
    std::string console;
    koralCPU::Outcome outcome;
};

class KoralRunTest : public ::testing::Test {
  protected:
    KoralRunTest()
        : paths_(folder_.path(), KORAL_RUN_FIXTURES, testPluginDirectory(), "TestGraphEXTRULE",
                 "drl") {
        clearKoralCaches();
    }
    ~KoralRunTest() override { clearKoralCaches(); }

    // Writes NAME.mod into the module folder ("a.b" into a/b.mod) and returns its path.
    std::string writeModule(const std::string& name, const std::string& text) const {
        return folder_.write(ModuleCache::fileName(name), text);
    }

    // Compiles module "mod" made of `units`; the console text goes to `console`.
    const koralModule* compile(const std::string& units, std::string* console = nullptr) {
        writeModule("mod", moduleText(units));
        ConsoleCapture capture;
        const koralModule* module = loadModule("mod");
        if (console != nullptr)
            *console = capture.text();
        return module;
    }

    // Runs the unit to its end (quietly, with a fixed seed unless told otherwise).
    static RunResult run(const koralUnit* unit, DirectedGraph& graph, KoralFrame* frame = nullptr,
                         std::optional<std::uint32_t> seed = 1) {
        ConsoleCapture capture;
        koralCPU cpu;
        cpu.setSeed(seed);
        EXPECT_TRUE(cpu.start(unit, &graph, frame, true));
        cpu.wait();
        return {withoutTime(capture.text()), cpu.outcome()};
    }

    // Compiles a module whose unit "u" has that body and conditions, and runs u on the graph.
    RunResult runBody(const std::string& body, DirectedGraph& graph,
                      const std::string& initial = "", const std::string& terminal = "") {
        const koralModule* module = compile(unitText(body, initial, terminal));
        if (module == nullptr) {
            ADD_FAILURE() << "the module did not compile";
            return {"", koralCPU::Outcome::None};
        }
        return run(module->findUnit("u"), graph);
    }

    TempFolder folder_;

  private:
    ScopedSearchPaths paths_;
};

// A graph of `count` vertices labelled `label`.
inline void addVertices(DirectedGraph& graph, const std::string& label, int count) {
    for (int i = 0; i < count; ++i)
        graph.createVertex()->setLabel(label);
}

}  // namespace vellum::test
