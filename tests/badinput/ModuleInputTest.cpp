// Modules that must not compile and units that must not run to a normal end: statements nested
// beyond the compiler's limit, a unit applying itself without end, conditions naming what the
// graph class handler does not know or failing when evaluated, modules using themselves, names
// that begin with a keyword, and statement positions far down a file.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "BadInputSupport.h"

namespace vellum {
namespace {

using test::moduleText;
using test::unitText;

std::string repeated(const std::string& piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i)
        text += piece;
    return text;
}

std::string unitWithConditions(const std::string& initial, const std::string& body,
                               const std::string& terminal) {
    return "transformation unit u\ninitial : " + initial + "\nbody : " + body +
           "\nterminal : " + terminal + "\nend";
}

class ModuleInput : public test::ModuleFolderTest {
  protected:
    // Runs unit u of the module text on an empty graph; counts the traced statements by label.
    test::RunResult runModule(const std::string& text, DirectedGraph& graph,
                              std::map<std::string, int>* traced = nullptr) {
        compiled_ = compile("m", text);
        if (compiled_.module == nullptr) {
            ADD_FAILURE() << "does not compile:\n" << compiled_.console;
            return {"", koralCPU::Outcome::None};
        }
        KoralRun::TraceHook hook;
        if (traced != nullptr)
            hook = [traced](const koralSourcePosition& position) { ++(*traced)[position.label]; };
        return run(*compiled_.module->findUnit("u"), graph, hook);
    }

    static std::string ranWith(const std::string& lines) {
        return "RUNNING 'u'...\n" + lines + "READY 'u'...T seconds.\n";
    }

    test::Compiled compiled_;
};

TEST_F(ModuleInput, IfAndWhileNestedBeyondTheLimitFailToCompile) {
    const std::size_t limit = ModuleCompiler::kMaxOpenStatements;
    const struct {
        const char* open;
        const char* label;
    } kinds[] = {{"if (vertices.new == 0) then ", "IF"},
                 {"while (vertices.new == 0) do ", "WHILE"}};
    for (const auto& kind : kinds) {
        for (std::size_t depth : {std::size_t{10000}, limit + 1}) {
            const std::string body =
                repeated(kind.open, depth) + "apply once grow" + repeated(" end", depth);
            const test::Compiled compiled = compile("deep", moduleText("deep", unitText(body)));
            EXPECT_EQ(compiled.module, nullptr) << kind.label << " " << depth;
            EXPECT_EQ(compiled.console,
                      "Statements nested too deeply!!!\nModule 'deep' contains errors!!!\n");
        }
        // At the limit the module compiles, runs every level once, and is destroyed.
        const std::string body =
            repeated(kind.open, limit) + "apply once grow" + repeated(" end", limit);
        DirectedGraph graph;
        std::map<std::string, int> traced;
        const test::RunResult result = runModule(moduleText("m", unitText(body)), graph, &traced);
        EXPECT_EQ(result.outcome, koralCPU::Outcome::Normal) << result.console;
        EXPECT_EQ(traced[kind.label], static_cast<int>(limit));
        EXPECT_EQ(graph.vertexCount("new"), 1u);
    }
}

// The interpreter's bound on nested evaluations ends the run with an error instead of a stack
// overflow; the graph keeps what each level did before going deeper.
TEST_F(ModuleInput, AUnitThatAppliesItselfForeverEndsTheRunWithAnError) {
    for (const char* body : {"apply once grow; apply once u", "apply as long as possible u"}) {
        DirectedGraph graph;
        std::map<std::string, int> traced;
        const test::RunResult result = runModule(moduleText("m", unitText(body)), graph, &traced);
        EXPECT_EQ(result.outcome, koralCPU::Outcome::Exception);
        EXPECT_EQ(result.console, ranWith("caugh't: Units and statements nested too deeply!!!\n"
                                          "from class: koralEvaluate\n"
                                          "of transformation unit: u\n"));
        EXPECT_GT(traced["UNIT"], 100);
        EXPECT_LE(traced["UNIT"], KoralRun::kMaxNesting);
        const bool grows = std::string(body).find("grow") != std::string::npos;
        EXPECT_EQ(graph.vertexCount("new"), grows ? std::size_t(traced["UNIT"]) : 0u) << body;
    }
}

TEST_F(ModuleInput, ConditionsNamingWhatTheHandlerDoesNotKnowRefuseTheModule) {
    const struct {
        const char* condition;
        std::string message;
    } conditions[] = {
        {"nodes > 0", "Unknown name 'nodes' in condition 'nodes > 0'\n"},
        {"vertices.a == 1 && edge == 0",
         "Unknown name 'edge' in condition 'vertices.a == 1 && edge == 0'\n"},
        {"applicable.nothing",
         "Rule 'nothing' in condition 'applicable.nothing' not found: no file 'nothing.drl' "
         "along koralGraphRules\n"},
        {"vertices >", ""},
    };
    for (const auto& row : conditions) {
        const std::string token = std::string("(") + row.condition + ")";
        const std::string units[] = {
            unitWithConditions(token, "apply once noop", ""),
            unitWithConditions("", "apply once noop", token),
            unitWithConditions("", "if " + token + " then apply once noop end", ""),
            unitWithConditions("", "while " + token + " do apply once noop end", ""),
        };
        for (const std::string& unit : units) {
            const test::Compiled compiled = compile("m", moduleText("m", unit));
            EXPECT_EQ(compiled.module, nullptr) << unit;
            EXPECT_EQ(compiled.console, row.message + "Expression '" + row.condition +
                                            "' contains errors!!!\nModule 'm' contains errors!!!\n")
                << unit;
        }
    }
}

// A condition that cannot be evaluated is false, with a line naming the problem: a unit's
// initial condition is then violated, an if takes its else part, a while does not run.
TEST_F(ModuleInput, ConditionsThatFailWhenEvaluatedCountAsFalse) {
    const std::string violated =
        "caugh't: Initial condition violated!\nof transformation unit: u\n";
    const struct {
        std::string unit;
        std::string console;
        koralCPU::Outcome outcome;
        std::size_t grown;
    } rows[] = {
        {unitWithConditions("(vertices + 1.5 > 0)", "apply once grow", ""),
         "Condition 'vertices + 1.5 > 0' failed: exprException 2\n" + violated,
         koralCPU::Outcome::Exception, 0},
        {unitWithConditions("(vertices / 0 == 1)", "apply once grow", ""),
         "Condition 'vertices / 0 == 1' failed: exprException 3\n" + violated,
         koralCPU::Outcome::Exception, 0},
        {unitWithConditions("", "if (vertices) then apply once noop else apply once grow end", ""),
         "Condition 'vertices' failed: the value is integer, not boolean\n",
         koralCPU::Outcome::Normal, 1},
        {unitWithConditions("", "while (edges / 0 == 0) do apply once grow end; apply once grow",
                            ""),
         "Condition 'edges / 0 == 0' failed: exprException 3\n", koralCPU::Outcome::Normal, 1},
    };
    for (const auto& row : rows) {
        DirectedGraph graph;
        const test::RunResult result = runModule(moduleText("m", row.unit), graph);
        EXPECT_EQ(result.outcome, row.outcome) << row.unit;
        EXPECT_EQ(result.console, ranWith(row.console)) << row.unit;
        EXPECT_EQ(graph.vertexCount("new"), row.grown) << row.unit;
    }
}

TEST_F(ModuleInput, ModulesThatUseThemselvesAreRefused) {
    const std::string unit = unitText("apply once noop");
    folder_.write("circle.mod", moduleText("circle", unit, "uses circle;\n"));
    folder_.write("alpha.mod", moduleText("alpha", unit, "uses beta;\n"));
    folder_.write("beta.mod", moduleText("beta", unit, "uses alpha;\n"));
    const struct {
        const char* name;
        const char* console;
    } rows[] = {
        {"circle", "Circular use of module 'circle'!!!\nModule 'circle' contains errors!!!\n"},
        {"alpha",
         "Circular use of module 'alpha'!!!\nModule 'beta' contains errors!!!\n"
         "Module 'alpha' contains errors!!!\n"},
    };
    for (const auto& row : rows) {
        ConsoleCapture capture;
        EXPECT_EQ(loadModule(row.name), nullptr) << row.name;
        EXPECT_EQ(capture.text(), row.console);
    }
}

// The scanner takes the first token that matches, so a name that begins with a keyword is read
// as that keyword: the module name is then missing.
TEST_F(ModuleInput, NamesThatBeginWithAKeywordAreSyntaxErrors) {
    for (const std::string name : {"usesself", "endless", "doubled", "iffy", "thence"}) {
        const std::string texts[] = {moduleText(name, unitText("apply once noop")),
                                     moduleText("m", unitText("apply once noop", "", name))};
        for (const std::string& text : texts) {
            const test::Compiled compiled = compile("m", text);
            EXPECT_EQ(compiled.module, nullptr) << text;
            const long at = static_cast<long>(text.find(" " + name + "\n")) + 1;
            EXPECT_EQ(compiled.console, test::reportAt("Module", "m", text, at)) << text;
        }
    }
}

// Statements far down a file still know their line and column.
TEST_F(ModuleInput, StatementPositionsSurviveAMegabyteOfBlankLines) {
    const std::string blank(1 << 20, '\n');
    const std::string text =
        moduleText("m", unitText(blank + "apply once noop;" + blank + "  apply once grow" + blank));
    DirectedGraph graph;
    std::vector<koralSourcePosition> applies;
    compiled_ = compile("m", text);
    ASSERT_NE(compiled_.module, nullptr) << compiled_.console;
    const test::RunResult result =
        run(*compiled_.module->findUnit("u"), graph, [&](const koralSourcePosition& position) {
            if (position.label == "APPLY")
                applies.push_back(position);
        });
    EXPECT_EQ(result.outcome, koralCPU::Outcome::Normal);
    ASSERT_EQ(applies.size(), 2u);
    std::size_t from = 0;
    for (const koralSourcePosition& apply : applies) {
        const std::size_t at = text.find("apply once", from);
        from = at + 1;
        const std::size_t lineStart = text.rfind('\n', at) + 1;
        EXPECT_EQ(apply.begin, static_cast<long>(at));
        EXPECT_EQ(apply.line, 1 + std::count(text.begin(), text.begin() + at, '\n'));
        EXPECT_EQ(apply.column, static_cast<int>(at - lineStart) + 1);
    }
}

}  // namespace
}  // namespace vellum
