// `vellum-cli check` and `apply` on rules that call the function library $(graph, through the real
// program and plug-in: the pattern is found beside the rule, and a misused call is an error at
// its place.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Program.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

// The condition stands on the rule's third line.
std::string ruleText(const std::string& name, const std::string& condition) {
    return "directed graphrule " + name +
           " { left-hand side { vertex 1 = p { label a } } interface { vertex 1 <-> 2 }\n"
           "right-hand side { vertex 2 { label b } }\napplication condition = [" +
           condition + "] }\n";
}

TEST(CheckRuleCalls, FindsThePatternBesideTheRuleAndPlacesMisuse) {
    test::TempFolder folder;
    folder.write("held.drl",
                 "directed graphrule held { left-hand side { vertex 1 = p { label * } vertex 2"
                 " edge 3 : 1 -> 2 { label h } } interface { } right-hand side { } }\n");
    test::ProgramOptions options;
    options.workingDirectory = folder.path();
    options.environment = {{"koralGraphRules", std::nullopt}};
    const struct {
        const char* name;
        std::string condition;
        std::string message;  // empty for a rule that passes
        std::string at;       // where the caret points
    } rows[] = {
        {"good", R"($(graph.absent)("held"))", "", ""},
        {"typo", R"($(graph.absent)("hold"))",
         "the application condition calls '$(graph.absent)' for the pattern 'hold', but that is "
         "not found: no file 'hold.drl' along koralGraphRules",
         "\"hold\""},
        {"arity", R"($(graph.indegree)("p") == 0)",
         "the application condition calls '$(graph.indegree)' with 1 argument, but it takes 2 "
         "(VARIABLE, LABEL)",
         "$(graph.indegree)"},
        {"unbound", R"($(graph.edge)("p", "q", "*"))",
         "the application condition calls '$(graph.edge)' for the variable 'q', but the "
         "left-hand side declares no variable 'q'",
         "\"q\""},
    };
    for (const auto& row : rows) {
        const std::string file = std::string(row.name) + ".drl";
        const std::string text = ruleText(row.name, row.condition);
        folder.write(file, text);
        const test::ProgramResult result = test::runCli({"check", file}, options);
        EXPECT_EQ(result.out, file + ": rule '" + row.name + "'\n");
        if (row.message.empty()) {
            EXPECT_EQ(result.status, 0) << row.name;
            EXPECT_EQ(result.err, "") << row.name;
            continue;
        }
        const std::string line = text.substr(text.rfind('\n', text.size() - 2) + 1);
        const std::size_t column = line.find(row.at) + 1;
        EXPECT_EQ(result.status, 1) << row.name;
        EXPECT_EQ(result.err, file + ":3:" + std::to_string(column) + ": error: " + row.message +
                                  "\n" + line + std::string(column - 1, ' ') + "^\n");
    }
    // Vertex 1 has the held edge, so the rule is applied at vertex 2.
    folder.write("g.dg",
                 "directed graph { vertex 1 { label a } vertex 2 { label a } vertex 3"
                 " edge 1 -> 3 { label h } }\n");
    const test::ProgramResult applied =
        test::runCli({"apply", "good.drl", "g.dg", "--mode", "0", "-o", "out.dg"}, options);
    EXPECT_EQ(applied.status, 0) << applied.err;
    EXPECT_EQ(applied.out, "event 2000\nevent 2002\nevent 2001\nresult 0\n");
    const std::string written = test::TempFolder::read(folder.path("out.dg"));
    EXPECT_NE(written.find("vertex 1 {\n\t\tlabel a\n"), std::string::npos) << written;
    EXPECT_NE(written.find("vertex 2 {\n\t\tlabel b\n"), std::string::npos) << written;
}

}  // namespace
}  // namespace vellum
