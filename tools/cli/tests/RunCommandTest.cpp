// `vellum-cli run` and `vellum-cli check` on modules, through the real program with the real
// graph class handler DirectedGraph.gc and the method library graphstats.
#include <gtest/gtest.h>

#include "graph/GraphReader.h"
#include "tests/support/ConsoleText.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::ScopedEnvironment;
using test::TempFolder;
using test::withoutTime;

const char* kRule = R"(directed graphrule aToB
{
	left-hand side { vertex 1 { label a } }
	interface { vertex 1 <-> 2 }
	right-hand side { vertex 2 { label b } }
})";

const char* kNoop = R"(directed graphrule noop
{
	left-hand side { }
	interface { }
	right-hand side { }
})";

const char* kGraph = R"(directed graph start
{
	vertex 1 { label a }
	vertex 2 { label a }
	vertex 3 { label a }
})";

const char* kModule = R"(module relabel
graph class : DirectedGraph
exports transformation unit main
realized by
transformation unit main
initial : (vertices.a == 3)
body : apply as long as possible aToB; call graphstats.counts
terminal : (vertices.b == 3)
end;
transformation unit strict
initial :
body : apply 4 times aToB
terminal :
end;
transformation unit forever
initial :
body : while (vertices >= 0) do apply once noop end
terminal :
end
end.
)";

const std::string kBanner =
    "== Koral Interpreter v3 r2 ==\nCopyright (c) 2026 the Vellum developers\n\n";

class RunCommand : public ::testing::Test {
  protected:
    RunCommand()
        : paths_(std::nullopt, std::nullopt, std::nullopt, "DirectedGraphEXTRULE", std::nullopt) {
        folder_.write("aToB.drl", kRule);
        folder_.write("noop.drl", kNoop);
        folder_.write("start.dg", kGraph);
        module_ = folder_.write("relabel.mod", kModule);
    }

    struct Result {
        std::string out;
        int status;
        std::string error;
    };
    static Result cli(const std::vector<std::string>& arguments) {
        const test::ProgramResult run = test::runCli(arguments);
        return {withoutTime(run.out), run.status, withoutTime(run.err)};
    }

    TempFolder folder_;
    std::string module_;

  private:
    test::ScopedSearchPaths paths_;
};

TEST_F(RunCommand, RunsAUnitOfAModuleFileAndSavesTheGraph) {
    const std::string saved = folder_.path("out.dg");
    const Result result = cli({"run", module_, "main", folder_.path("start.dg"), "-o", saved});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, kBanner +
                              "RUNNING 'main'...\n"
                              "graphstats: 3 vertices, 0 edges\n"
                              "  vertices 'b': 3\n"
                              "READY 'main'...T seconds.\n");
    const auto graph = loadGraph(saved);
    ASSERT_NE(graph, nullptr);
    EXPECT_EQ(graph->vertexCount("b"), 3u);
}

TEST_F(RunCommand, TracesStatementsAndReportsFigures) {
    const Result result = cli({"run", module_, "main", folder_.path("start.dg"), "--quiet",
                               "--trace", "--stats", "--seed", "5"});
    EXPECT_EQ(result.status, 0);
    // Each try of the rule says whether it applied, and where: the left-hand vertex matched
    // the first 'a' left, by its position in the graph (as `match` numbers it).
    const std::string trace =
        "RUNNING 'main'...\n"
        "TRACE UNIT line 5\nTRACE INITIAL line 6\nTRACE APPLY line 7\n"
        "TRACE aToB line 7\nTRACE unit 'main' rule 'aToB' applied at vertices 1\n"
        "TRACE aToB line 7\nTRACE unit 'main' rule 'aToB' applied at vertices 2\n"
        "TRACE aToB line 7\nTRACE unit 'main' rule 'aToB' applied at vertices 3\n"
        "TRACE aToB line 7\nTRACE unit 'main' rule 'aToB' not applied\n"
        "TRACE CALL line 7\n"
        "graphstats: 3 vertices, 0 edges\n  vertices 'b': 3\n"
        "TRACE TERMINAL line 8\n"
        "READY 'main'...T seconds.\n";
    EXPECT_EQ(result.out.substr(0, trace.size()), trace);
    EXPECT_NE(result.out.find("STATS rule attempts: 4, applications: 3\n"), std::string::npos)
        << result.out;
    EXPECT_NE(result.out.find("STATS rule 'aToB': 4 attempts, 3 applications"), std::string::npos);
}

TEST_F(RunCommand, FindsAModuleByNameAlongTheSearchPath) {
    ScopedEnvironment modules("koralModules", folder_.path());
    ScopedEnvironment rules("koralGraphRules", folder_.path());
    const Result result = cli({"run", "relabel", "strict", folder_.path("start.dg"), "--quiet"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out,
              "RUNNING 'strict'...\n"
              "caugh't: Finished loop 4 of 4\nBut no one of the rules can be applied anymore!!!\n"
              "from class: koralEvalApply\nof transformation unit: strict\n"
              "READY 'strict'...T seconds.\n");
}

TEST_F(RunCommand, RefusesWhatItCannotLoad) {
    const std::string graph = folder_.path("start.dg");
    const std::string broken = folder_.write("broken.mod", "module broken graph class : Nowhere");
    const struct {
        std::vector<std::string> arguments;
        std::string out;
    } rows[] = {
        {{"run", module_, "main"}, ""},
        {{"run", module_, "main", graph, "--seed", "-1"}, ""},
        {{"run", module_, "nothing", graph}, ""},
        {{"run", module_, "main", folder_.path("none.dg")}, ""},
        {{"run", "nowhere", "main", graph}, ""},
        {{"run", broken, "main", graph},
         "Could not open the graph class handler for 'Nowhere' !!!\n"
         "Module 'broken' contains errors!!!\n"},
    };
    for (const auto& row : rows) {
        const Result result = cli(row.arguments);
        EXPECT_EQ(result.status, 2) << row.arguments[2];
        EXPECT_EQ(result.out, row.out) << row.arguments[2];
    }
}

TEST_F(RunCommand, CtrlCStopsTheRunWhichStillEndsAndSaves) {
    const std::string saved = folder_.path("stopped.dg");
    test::Program process({test::cliPath(), "run", module_, "forever", folder_.path("start.dg"),
                           "--quiet", "-o", saved});
    process.waitForOutput("RUNNING");
    process.interrupt();
    const test::ProgramResult result = process.wait();
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(withoutTime(result.out),
              "RUNNING 'forever'...\nProgram aborted by user\nREADY 'forever'...T seconds.\n");
    const auto graph = loadGraph(saved);
    ASSERT_NE(graph, nullptr);
    EXPECT_EQ(graph->vertexCount("a"), 3u);
}

// A condition that cannot be evaluated is false to the interpreter, which goes on; the tool
// then names it on standard error, once however often it failed, and exits with 1.
TEST_F(RunCommand, ConditionsThatCannotBeEvaluatedFailTheRun) {
    const std::string module = folder_.write("faulty.mod", R"(module faulty
graph class : DirectedGraph
exports transformation unit loop
realized by
transformation unit loop
initial :
body : while (applicable.aToB && vertices.a > 2.5) do apply once aToB end
terminal :
end;
transformation unit checked
initial :
body : if (vertices) then apply once noop end
terminal :
end;
transformation unit branch
initial :
body : apply 3 times checked
terminal :
end
end.
)");
    const char* kMismatch = "exprException 2 (operands of different types)";
    const struct {
        const char* unit;
        std::string error;
    } rows[] = {
        {"loop",
         "vellum-cli run: condition 'applicable.aToB && vertices.a > 2.5' of unit "
         "'loop' failed: " +
             std::string(kMismatch) + "\n"},
        {"branch",
         "vellum-cli run: condition 'vertices' of unit 'checked' failed: the value is "
         "integer, not boolean\n"},
    };
    for (const auto& row : rows) {
        const Result result = cli({"run", module, row.unit, folder_.path("start.dg"), "--quiet"});
        EXPECT_EQ(result.status, 1) << row.unit;
        EXPECT_EQ(result.error, row.error) << row.unit;
        EXPECT_NE(result.out.find("READY"), std::string::npos) << row.unit;
    }
}

// -o naming a file the run read: a run that ends normally writes over it, one that does not
// leaves it as it was and writes its graph beside it.
TEST_F(RunCommand, UnfinishedRunsDoNotWriteOverTheirInput) {
    const std::string graph = TempFolder::read(folder_.path("start.dg"));
    const std::string rule = TempFolder::read(folder_.path("aToB.drl"));
    const struct {
        const char* unit;
        std::string output;   // as given to -o
        std::string partial;  // where the graph goes instead; empty: to the output itself
        int status;
    } rows[] = {
        {"strict", folder_.path("start.dg"), folder_.path("start.partial.dg"), 1},
        {"strict", folder_.path(".") + "/start.dg", folder_.path(".") + "/start.partial.dg", 1},
        {"strict", folder_.path("aToB.drl"), folder_.path("aToB.partial.drl"), 1},
        {"main", folder_.path("start.dg"), "", 0},
    };
    for (const auto& row : rows) {
        folder_.write("start.dg", graph);
        std::filesystem::remove(folder_.path("start.partial.dg"));
        const Result result =
            cli({"run", module_, row.unit, folder_.path("start.dg"), "--quiet", "-o", row.output});
        EXPECT_EQ(result.status, row.status) << row.output;
        EXPECT_EQ(TempFolder::read(folder_.path("aToB.drl")), rule);
        const std::string written = row.partial.empty() ? row.output : row.partial;
        if (!row.partial.empty()) {
            EXPECT_EQ(TempFolder::read(row.output),
                      row.output.find("aToB") != std::string::npos ? rule : graph);
            EXPECT_NE(result.error.find("'" + row.partial + "'"), std::string::npos)
                << result.error;
        }
        const auto saved = loadGraph(written);
        ASSERT_NE(saved, nullptr) << written;
        EXPECT_EQ(saved->vertexCount("b"), 3u) << written;
    }
}

TEST_F(RunCommand, CtrlCDoesNotWriteOverTheInput) {
    const std::string input = folder_.path("start.dg");
    const std::string graph = TempFolder::read(input);
    test::Program process(
        {test::cliPath(), "run", module_, "forever", input, "--quiet", "-o", input});
    process.waitForOutput("RUNNING");
    process.interrupt();
    EXPECT_EQ(process.wait().status, 130);
    EXPECT_EQ(TempFolder::read(input), graph);
    EXPECT_NE(loadGraph(folder_.path("start.partial.dg")), nullptr);
}

// -o -: the graph alone on standard output, the console log on standard error.
TEST_F(RunCommand, WritesTheGraphToStandardOutput) {
    const Result result = cli({"run", module_, "main", folder_.path("start.dg"), "-o", "-"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, kBanner +
                                "RUNNING 'main'...\n"
                                "graphstats: 3 vertices, 0 edges\n"
                                "  vertices 'b': 3\n"
                                "READY 'main'...T seconds.\n");
    const auto graph = loadGraph(folder_.write("piped.dg", result.out));
    ASSERT_NE(graph, nullptr) << result.out;
    EXPECT_EQ(graph->vertexCount("b"), 3u);
}

// Every command answers --help (or -h, anywhere) with its usage on standard output.
TEST(CommandHelp, EveryCommandPrintsItsUsage) {
    for (const char* name : {"eval", "check", "convert", "match", "apply", "layout", "run"}) {
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{name, "--help"}, {name, "x", "-h"}}) {
            const test::ProgramResult run = test::runCli(arguments);
            EXPECT_EQ(run.status, 0) << name << " " << arguments.back();
            EXPECT_EQ(run.out.rfind(std::string("usage: vellum-cli ") + name + " ", 0), 0u)
                << run.out;
        }
    }
}

TEST_F(RunCommand, ChecksModuleFiles) {
    std::string text = kModule;
    text.replace(text.find("4 times"), 1, "1");
    const std::string broken = folder_.write("broken.mod", text);
    const Result result = cli({"check", module_, broken});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, module_ + ": module 'relabel', 3 units\n" +
                              "The number of times must be greater than one!\n"
                              "Module 'broken' contains errors!!!\n");
}

}  // namespace
}  // namespace vellum
