// Bad input handed to vellum-cli: what it prints on standard output and standard error, and its
// exit status (1 for input it could not use, 2 for arguments it could not use).
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "BadInputSupport.h"

namespace vellum {
namespace {

using test::CliResult;
using test::moduleText;
using test::reportAt;
using test::runCli;
using test::TempFolder;
using test::unitText;

std::string nestedIfs(std::size_t depth) {
    std::string body;
    for (std::size_t i = 0; i < depth; ++i)
        body += "if (vertices > 0) then ";
    body += "apply once noop";
    for (std::size_t i = 0; i < depth; ++i)
        body += " end";
    return body;
}

class CommandLineInput : public test::ModuleFolderTest {
  protected:
    CommandLineInput() {
        folder_.write("g.dg", "directed graph g\n{\n\tvertex 1 { label a }\n}\n");
        std::filesystem::create_directory(folder_.path("folder.dg"));
        std::filesystem::create_directory(folder_.path("folder.mod"));
        std::filesystem::create_directory(folder_.path("folder"));
    }
};

TEST_F(CommandLineInput, CheckReportsFilesItCannotRead) {
    const std::string truncated = "directed graph g\n{\n\tvertex 1 { label";
    const std::string edge = "directed graph g\n{\n\tvertex 1\n\tedge 1 -> 2\n}\n";
    folder_.write("truncated.dg", truncated);
    folder_.write("edge.dg", edge);
    const struct {
        const char* file;
        std::string out;
        std::string err;
    } rows[] = {
        {"missing.dg", "", "vellum-cli check: cannot open 'missing.dg'\n"},
        {"g.txt", "", "vellum-cli check: 'g.txt' has no known file type (.dg, .drl, .mod, .3rd)\n"},
        {"folder.dg", "", "vellum-cli check: 'folder.dg' is a folder\n"},
        {"folder.mod", "", "vellum-cli check: 'folder.mod' is a folder\n"},
        {"folder", "", "vellum-cli check: 'folder' is a folder\n"},
        {"truncated.dg",
         reportAt("File", "truncated.dg", truncated, static_cast<long>(truncated.size())),
         "truncated.dg:3:18: error: unexpected end of input: expected a name, 'boolean', "
         "'integer', 'real', 'string', 'vector', '}' or 'edge'\n"
         "\tvertex 1 { label\n\t                ^\n"},
        {"edge.dg", "Vertex with number '2' not found!!!\n" + reportAt("File", "edge.dg", edge, -1),
         "edge.dg:4:12: error: Vertex with number '2' not found\n\tedge 1 -> 2\n\t          ^\n"},
    };
    for (const auto& row : rows) {
        const CliResult result = runCli(folder_, {"check", row.file});
        EXPECT_EQ(result.status, 1) << row.file;
        EXPECT_EQ(result.out, row.out) << row.file;
        EXPECT_EQ(result.err, row.err) << row.file;
    }
}

// What check finds beyond what reading fails on: the error or warning on standard error with
// file, line and column, the source line and a caret; the console output stays as it was.
TEST_F(CommandLineInput, CheckReportsWhatWouldFailLaterWithItsPlace) {
    const std::string ruleHead = "directed graphrule r\n{\n\tleft-hand side { vertex 1 = a";
    const std::string ruleTail =
        "\n\tinterface { vertex 1 <-> 2 }\n\tright-hand side { vertex 2 }\n";
    folder_.write("condition.drl",
                  ruleHead + " }" + ruleTail + "\tapplication condition = [b.v === 0]\n}\n");
    folder_.write("unbound.drl",
                  ruleHead + " }" + ruleTail + "\tapplication condition = [b.v == 0]\n}\n");
    folder_.write("initialize.drl",
                  "directed graphrule initialize\n{\n\tleft-hand side { }\n\tinterface { }\n"
                  "\tright-hand side { }\n}\n");
    folder_.write("attribute.drl", ruleHead + " { integer v = 3 } }" + ruleTail + "}\n");
    folder_.write("interface.drl",
                  "directed graphrule r\n{\n\tleft-hand side { vertex 1 }\n"
                  "\tinterface { vertex 1 <-> 5 }\n\tright-hand side { vertex 2 }\n}\n");
    folder_.write("twice.dg", "directed graph g\n{\n\tvertex 1\n\tvertex 1\n}\n");
    folder_.write("call.mod", moduleText("method", unitText("call graphstats.nothing")));
    folder_.write("missing.mod", moduleText("missing", unitText("apply once nothing")));
    const struct {
        const char* file;
        int status;
        int strictStatus;
        std::string err;
    } rows[] = {
        {"condition.drl", 1, 1,
         "condition.drl:6:33: error: the application condition does not compile: syntax error "
         "near '= 0': expected '-', '!', a number, a string, 'true', 'false', a library call "
         "$(...) "
         "or a name\n"
         "\tapplication condition = [b.v === 0]\n\t                               ^\n"},
        {"unbound.drl", 1, 1,
         "unbound.drl:6:27: error: the application condition reads 'b.v', but the left-hand side "
         "declares no variable 'b'\n\tapplication condition = [b.v == 0]\n"
         "\t                         ^\n"},
        {"call.mod", 1, 1,
         "call.mod:7:13: error: Could not find the method 'nothing' in the library "
         "'graphstats'\nbody : call graphstats.nothing\n            ^\n"},
        {"missing.mod", 1, 1,
         "missing.mod:7:19: error: Unit or rule 'nothing' not found\n"
         "body : apply once nothing\n                  ^\n"},
        {"initialize.drl", 0, 1,
         "initialize.drl:1:20: warning: the rule name 'initialize' begins with the keyword "
         "'initial', so a module cannot apply it\ndirected graphrule initialize\n"
         "                   ^\n"},
        {"attribute.drl", 0, 1,
         "attribute.drl:3:42: warning: the attribute 'v' of a left-hand-side element does not "
         "restrict matching (only the label does); test it in the application condition\n"
         "\tleft-hand side { vertex 1 = a { integer v = 3 } }\n"
         "\t                                        ^\n"},
        {"interface.drl", 0, 1,
         "interface.drl:4:27: warning: the interface names vertex '5', which the right-hand side "
         "does not have\n\tinterface { vertex 1 <-> 5 }\n\t                         ^\n"},
        {"twice.dg", 0, 1,
         "twice.dg:4:9: warning: the vertex number '1' is used twice here; only the first vertex "
         "with it can be named\n\tvertex 1\n\t       ^\n"},
    };
    for (const auto& row : rows) {
        const CliResult result = runCli(folder_, {"check", row.file});
        EXPECT_EQ(result.status, row.status) << row.file;
        EXPECT_EQ(result.err, row.err) << row.file;
        EXPECT_EQ(runCli(folder_, {"check", "--strict", row.file}).status, row.strictStatus)
            << row.file;
    }
    // The console output keeps its form: the summary line of a file that was read.
    EXPECT_EQ(runCli(folder_, {"check", "call.mod"}).out,
              "caugh't: Could not find the method "
              "'nothing' in the library 'graphstats' !!!\nfrom class: koralLibrary\n"
              "call.mod: module 'method', 1 units\n");
}

TEST_F(CommandLineInput, RunRefusesModulesAndGraphsItCannotUse) {
    folder_.write("deep.mod", moduleText("deep", unitText(nestedIfs(10000))));
    folder_.write("fine.mod", moduleText("fine", unitText("apply once noop")));
    const struct {
        std::vector<std::string> arguments;
        std::string out;
        std::string err;
    } rows[] = {
        {{"run", "deep.mod", "u", "g.dg"},
         "Statements nested too deeply!!!\nModule 'deep' contains errors!!!\n",
         "vellum-cli run: the module 'deep.mod' has errors\n"
         "deep.mod:7:5896: error: Statements nested too deeply\n"},
        {{"run", "fine.mod", "u", "folder.dg"}, reportAt("File", "folder.dg", "", 0), ""},
        {{"run", "folder.mod", "u", "g.dg"},
         "",
         "vellum-cli run: the module 'folder.mod' has errors\n"},
        {{"run", "fine.mod", "u", "missing.dg"}, "", "vellum-cli run: cannot open 'missing.dg'\n"},
    };
    for (const auto& row : rows) {
        const CliResult result = runCli(folder_, row.arguments);
        EXPECT_EQ(result.status, 2) << row.arguments[1];
        EXPECT_EQ(result.out, row.out) << row.arguments[1];
        // The start of standard error: the diagnostics' source lines may be long.
        EXPECT_EQ(result.err.substr(0, row.err.size()), row.err) << row.arguments[1];
    }
}

// Opening a named pipe waits for a writer: every command must refuse it without opening it.
TEST_F(CommandLineInput, NamedPipesAreRefusedWithoutWaiting) {
    ASSERT_EQ(::mkfifo(folder_.path("pipe.dg").c_str(), 0644), 0);
    ASSERT_EQ(::mkfifo(folder_.path("pipe.mod").c_str(), 0644), 0);
    folder_.write("fine.mod", moduleText("fine", unitText("apply once noop")));
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string err;
    } rows[] = {
        {{"check", "pipe.dg"}, 1, "vellum-cli check: 'pipe.dg' is not a regular file\n"},
        {{"convert", "pipe.dg", "out.dg"}, 1, "vellum-cli convert: cannot open 'pipe.dg'\n"},
        {{"layout", "sphere", "pipe.dg"}, 1, "vellum-cli layout: cannot open 'pipe.dg'\n"},
        {{"match", "noop.drl", "pipe.dg"}, 1, "vellum-cli match: cannot open 'pipe.dg'\n"},
        {{"apply", "noop.drl", "pipe.dg"}, 1, "vellum-cli apply: cannot open 'pipe.dg'\n"},
        {{"run", "fine.mod", "u", "pipe.dg"}, 2, "vellum-cli run: cannot open 'pipe.dg'\n"},
        {{"run", "pipe.mod", "u", "g.dg"}, 2, "vellum-cli run: cannot open 'pipe.mod'\n"},
    };
    for (const auto& row : rows) {
        const CliResult result = runCli(folder_, row.arguments);
        EXPECT_EQ(result.status, row.status) << row.arguments[0];
        EXPECT_EQ(result.out, "") << row.arguments[0];
        EXPECT_EQ(result.err, row.err) << row.arguments[0];
    }
}

TEST_F(CommandLineInput, RunEndsAUnitThatAppliesItselfForeverWithStatus1) {
    folder_.write("self.mod", moduleText("self", unitText("apply once u")));
    const CliResult result = runCli(folder_, {"run", "self.mod", "u", "g.dg", "--quiet"});
    EXPECT_EQ(result.status, 1);
    const std::string expected =
        "RUNNING 'u'...\ncaugh't: Units and statements nested too deeply!!!\n"
        "from class: koralEvaluate\nof transformation unit: u\nREADY 'u'...";
    EXPECT_EQ(result.out.substr(0, expected.size()), expected);
    EXPECT_EQ(result.err, "");
}

// An output file that cannot be written is refused before the work, so that a long run does
// not end unsaved: nothing runs, nothing is written, and the usage follows the problem.
TEST_F(CommandLineInput, OutputFilesThatCannotBeWrittenAreRefusedBeforeTheWork) {
    const std::string graph = TempFolder::read(folder_.path("g.dg"));
    folder_.write("fine.mod", moduleText("fine", unitText("apply once grow")));
    const struct {
        std::string output;
        std::string problem;
    } outputs[] = {
        {"", "the output file name (-o) is empty"},
        {"folder.dg", "the output file 'folder.dg' is a folder"},
        {"folder.dg/", "the output file 'folder.dg/' is a folder"},
        {"nofolder/x.dg", "the folder of the output file 'nofolder/x.dg' does not exist"},
        {"g.dg/x.dg", "the folder of the output file 'g.dg/x.dg' is not a folder"},
    };
    const std::vector<std::vector<std::string>> commands = {
        {"run", "fine.mod", "u", "g.dg", "-o"},
        {"apply", "grow.drl", "g.dg", "-o"},
        {"layout", "circle", "g.dg", "-o"},
    };
    for (const auto& row : outputs) {
        for (std::vector<std::string> arguments : commands) {
            const std::string name = arguments[0];
            arguments.push_back(row.output);
            const CliResult result = runCli(folder_, arguments);
            const std::string expected =
                "vellum-cli " + name + ": " + row.problem + "\nusage: vellum-cli " + name + " ";
            EXPECT_EQ(result.status, 2) << name << " -o '" << row.output << "'";
            EXPECT_EQ(result.out, "") << name << " -o '" << row.output << "'";
            EXPECT_EQ(result.err.substr(0, expected.size()), expected) << name;
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path("folder.dg")));
    EXPECT_FALSE(std::filesystem::exists(folder_.path("nofolder")));
    EXPECT_EQ(TempFolder::read(folder_.path("g.dg")), graph);

    // The same commands write to a file in a folder that exists, or in the current folder.
    std::filesystem::create_directory(folder_.path("sub"));
    for (const std::string output : {"sub/out.dg", "out.dg"}) {
        std::filesystem::remove(folder_.path(output));
        EXPECT_EQ(runCli(folder_, {"run", "fine.mod", "u", "g.dg", "--quiet", "-o", output}).status,
                  0)
            << output;
        EXPECT_NE(TempFolder::read(folder_.path(output)).find("label new"), std::string::npos)
            << output;
        std::filesystem::remove(folder_.path(output));
        EXPECT_EQ(runCli(folder_, {"apply", "grow.drl", "g.dg", "-o", output}).status, 0) << output;
        EXPECT_NE(TempFolder::read(folder_.path(output)).find("label new"), std::string::npos)
            << output;
    }
}

// An attribute expression that cannot be evaluated fails the rewriting step; an application
// condition that cannot be evaluated refuses the occurrence.
TEST_F(CommandLineInput, ApplyReportsExpressionsThatCannotBeEvaluated) {
    folder_.write("n.dg", "directed graph g\n{\n\tvertex 1 { label a integer n = 4 }\n}\n");
    const std::string left = "\tleft-hand side { vertex 1 = x { label a } }\n";
    const std::string interface = "\tinterface { vertex 1 <-> 2 }\n";
    const struct {
        const char* expression;
        const char* code;
    } expressions[] = {{"x.n + 1.5", "2"}, {"x.n / 0", "3"}, {"y.n", "5"}, {"x.n +", "0"}};
    for (const auto& row : expressions) {
        const std::string code = row.code;
        folder_.write("value.drl", "directed graphrule value\n{\n" + left + interface +
                                       "\tright-hand side { vertex 2 { integer n = [" +
                                       row.expression + "] } }\n}\n");
        folder_.write("condition.drl", "directed graphrule condition\n{\n" + left + interface +
                                           "\tright-hand side { vertex 2 }\n" +
                                           "\tapplication condition = [" + row.expression +
                                           " == 1]\n}\n");
        const CliResult value = runCli(folder_, {"apply", "value.drl", "n.dg"});
        EXPECT_EQ(value.status, 1) << row.expression;
        EXPECT_EQ(value.out,
                  "event 2000\nevent 2002\nRule 'value': attribute 'n' not set: "
                  "exprException " +
                      code + "\nresult 5\n")
            << row.expression;
        const CliResult condition = runCli(folder_, {"apply", "condition.drl", "n.dg"});
        EXPECT_EQ(condition.status, 1) << row.expression;
        EXPECT_EQ(condition.out,
                  "Application condition of rule 'condition' failed: exprException " + code +
                      "\nresult 3\n")
            << row.expression;
    }
}

TEST_F(CommandLineInput, EvalPrintsTheCodeOfAnExpressionItCannotEvaluate) {
    const struct {
        const char* expression;
        const char* out;
    } rows[] = {
        {"1 / 0", "exprException 3\n"},
        {"1 + 2.0", "exprException 2\n"},
        {"x + 1", "exprException 5\n"},
        {"\xff\xfe", "exprException 0\n"},
    };
    for (const auto& row : rows) {
        const CliResult result = runCli(folder_, {"eval", row.expression});
        EXPECT_EQ(result.status, 1) << row.expression;
        EXPECT_EQ(result.out, row.out) << row.expression;
    }
}

}  // namespace
}  // namespace vellum
