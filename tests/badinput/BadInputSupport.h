// Helpers of the bad-input tests: the syntax-error report every reader writes, checked against
// the text it was given; the places where a text can be cut; a folder of modules and rules with
// the search variables pointed at it and at the bundled DirectedGraph handler; and vellum-cli run
// as a separate process.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "base/Console.h"
#include "base/Paths.h"
#include "grammar/ParseReport.h"
#include "koral/KoralCPU.h"
#include "koral/ModuleCache.h"
#include "koral/ModuleCompiler.h"
#include "tests/support/ConsoleText.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum::test {

// The text a reader dumps for an error at `position` of `text`: 6 characters before, 16 after,
// up to a character 0, with control characters made visible.
inline std::string dumpOf(const std::string& text, long position) {
    if (position < 0)
        return {};
    const long size = static_cast<long>(text.size());
    const long from = std::max(0L, position - kExcerptBefore);
    const long to = std::min(size, position + kExcerptAfter);
    std::string excerpt = from < to ? text.substr(from, to - from) : std::string();
    excerpt = excerpt.substr(0, excerpt.find('\0'));
    return escapeExcerpt(excerpt);
}

// Whether `console` ends with the failure report of reading `text` from the file reported as
// `name`: "KIND 'NAME' contains errors near position P in line 1" and "Dump '...' !!!" with P
// inside the text and the dump taken from the text at P, or P = -1 after the failing action's
// own message. For modules (`kind` "Module") an action failure is the one line
// "Module 'NAME' contains errors!!!" (after the action's message, if it has one: a used module
// that is not found has none).
inline ::testing::AssertionResult endsWithReport(const std::string& console,
                                                 const std::string& kind, const std::string& name,
                                                 const std::string& text) {
    const std::string head = kind + " '" + name + "' contains errors";
    const std::size_t at = console.rfind(head);
    if (at == std::string::npos)
        return ::testing::AssertionFailure() << "no report in:\n" << console;
    const std::string rest = console.substr(at + head.size());
    if (kind == "Module" && rest == "!!!\n")
        return ::testing::AssertionSuccess();
    const std::string near = " near position ";
    if (rest.compare(0, near.size(), near) != 0)
        return ::testing::AssertionFailure() << "no position in:\n" << console;
    const long position = std::strtol(rest.c_str() + near.size(), nullptr, 10);
    if (position < -1 || position > static_cast<long>(text.size()))
        return ::testing::AssertionFailure() << "position " << position << " outside the text";
    if (position == -1 && at == 0)
        return ::testing::AssertionFailure() << "an action failed without a message";
    const std::string expected =
        std::to_string(position) + " in line 1\nDump '" + dumpOf(text, position) + "' !!!\n";
    if (rest.substr(near.size()) != expected)
        return ::testing::AssertionFailure() << "report\n" << rest << "expected\n" << expected;
    return ::testing::AssertionSuccess();
}

// The report a reader writes for a syntax error at `position` of `text`.
inline std::string reportAt(const std::string& kind, const std::string& name,
                            const std::string& text, long position) {
    return kind + " '" + name + "' contains errors near position " + std::to_string(position) +
           " in line 1\nDump '" + dumpOf(text, position) + "' !!!\n";
}

// Offsets at which to cut `text`: every boundary between tokens (where a run of letters and
// digits or of blanks begins or ends, and around every other character) and, for a text of at
// most `everyByteUpTo` characters, every offset. 0 and the full length included.
inline std::vector<std::size_t> cutPoints(const std::string& text, std::size_t everyByteUpTo) {
    const auto kind = [](char c) {
        const auto u = static_cast<unsigned char>(c);
        if (std::isalnum(u) || c == '_')
            return 0;
        return std::isspace(u) ? 1 : 2;
    };
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const bool edge = i == 0 || i == text.size();
        const bool boundary = !edge && (kind(text[i - 1]) != kind(text[i]) || kind(text[i]) == 2);
        if (edge || boundary || text.size() <= everyByteUpTo)
            cuts.push_back(i);
    }
    return cuts;
}

// The offset just after the last character that is not blank: a prefix reads completely only
// when it reaches it.
inline std::size_t significantEnd(const std::string& text) {
    std::size_t end = text.size();
    while (end > 0 && std::isspace(static_cast<unsigned char>(text[end - 1])))
        --end;
    return end;
}

// A module of graph class DirectedGraph exporting its first unit.
inline std::string moduleText(const std::string& name, const std::string& units,
                              const std::string& uses = "") {
    return "module " + name + "\ngraph class : DirectedGraph\n" + uses +
           "exports transformation unit u\nrealized by\n" + units + "\nend.\n";
}

// A unit with that body and conditions (each a condition token with its parentheses, or empty).
inline std::string unitText(const std::string& body, const std::string& initial = "",
                            const std::string& name = "u") {
    return "transformation unit " + name + "\ninitial : " + initial + "\nbody : " + body +
           "\nterminal :\nend";
}

// Rules that the module tests apply: noop changes nothing, grow adds a vertex "new".
constexpr const char* kNoopRule =
    "directed graphrule noop\n{\n\tleft-hand side { }\n\tinterface { }\n"
    "\tright-hand side { }\n}\n";
constexpr const char* kGrowRule =
    "directed graphrule grow\n{\n\tleft-hand side { }\n\tinterface { }\n"
    "\tright-hand side { vertex 1 { label new } }\n}\n";

struct Compiled {
    std::unique_ptr<koralModule> module;
    std::string console;
};

struct RunResult {
    std::string console;  // with the READY line's seconds replaced by "T"
    koralCPU::Outcome outcome;
};

// A folder of modules, rules and graphs that the search variables point at, with the bundled
// graph class handler DirectedGraph.gc; the module and rule caches start and end empty.
class ModuleFolderTest : public ::testing::Test {
  protected:
    ModuleFolderTest()
        : paths_(folder_.path(), folder_.path(), pluginDirectory(), "DirectedGraphEXTRULE", "drl") {
        clearKoralCaches();
        folder_.write("noop.drl", kNoopRule);
        folder_.write("grow.drl", kGrowRule);
    }
    ~ModuleFolderTest() override { clearKoralCaches(); }

    // Compiles the text as module file NAME.mod, bypassing the cache.
    Compiled compile(const std::string& name, const std::string& text) {
        const std::string file = folder_.write(name + ".mod", text);
        ConsoleCapture capture;
        auto module = ModuleCompiler().compile(file, name);
        return {std::move(module), capture.text()};
    }

    // Runs the unit to its end, quietly and with a fixed seed.
    static RunResult run(const koralUnit& unit, DirectedGraph& graph,
                         KoralRun::TraceHook hook = nullptr) {
        ConsoleCapture capture;
        koralCPU cpu;
        cpu.setSeed(1);
        cpu.setTraceHook(std::move(hook));
        EXPECT_TRUE(cpu.start(&unit, &graph, nullptr, true));
        cpu.wait();
        return {withoutTime(capture.text()), cpu.outcome()};
    }

    TempFolder folder_;

  private:
    ScopedSearchPaths paths_;
};

using CliResult = ProgramResult;

// Runs vellum-cli with the arguments in `folder`.
inline CliResult runCli(const TempFolder& folder, const std::vector<std::string>& arguments) {
    ProgramOptions options;
    options.workingDirectory = folder.path();
    return runCli(arguments, options);
}

}  // namespace vellum::test
