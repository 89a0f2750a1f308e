#include <gtest/gtest.h>

#include "KoralRunTestSupport.h"
#include "koral/KoralApply.h"
#include "koral/KoralCall.h"
#include "koral/KoralIf.h"
#include "koral/KoralWhile.h"

namespace vellum {
namespace {

using test::KoralRunTest;
using test::moduleText;
using test::unitText;

struct CompileError {
    const char* what;
    std::string units;
    std::string console;
};

TEST_F(KoralRunTest, RejectsBadModulesWithTheirMessages) {
    const std::string failed = "Module 'mod' contains errors!!!\n";
    const CompileError rows[] = {
        {"one time", unitText("apply 1 times grow"),
         "The number of times must be greater than one!\n" + failed},
        {"a fraction below two", unitText("apply 1.9 times grow"),
         "The number of times must be greater than one!\n" + failed},
        {"< after |", unitText("apply once grow | noop < aToB"),
         "Expected '<' but got '<'!!!\n" + failed},
        {"| after <", unitText("apply once grow < noop | aToB"),
         "Expected '|' but got '|'!!!\n" + failed},
        {"unknown name", unitText("apply once nothing"),
         "Unit or rule 'nothing' not found!!!\n" + failed},
        {"a unit declared later",
         unitText("apply once later") + ";\n" + unitText("apply once grow", "", "", "later"),
         "Unit or rule 'later' not found!!!\n" + failed},
        {"a rule file that does not read", unitText("apply once broken"),
         "File '" KORAL_RUN_FIXTURES "/broken.drl' contains errors near position 28 in line 1\n"
         "Dump 'ken\\n{\\n' !!!\n"
         "Unit or rule 'broken' not found!!!\n" +
             failed},
        {"a condition the handler rejects", unitText("apply once grow", "(a is 1)"),
         "Expression 'a is 1' contains errors!!!\n" + failed},
        {"a bad while condition", unitText("while (x) do apply once grow end"),
         "Expression 'x' contains errors!!!\n" + failed},
        {"a syntax error", unitText("apply twice grow"),
         "Module 'mod' contains errors near position 123 in line 1\n"
         "Dump 'apply twice grow\\ntermi' !!!\n"},
    };
    for (const CompileError& row : rows) {
        std::string console;
        EXPECT_EQ(compile(row.units, &console), nullptr) << row.what;
        EXPECT_EQ(console, row.console) << row.what;
        clearKoralCaches();
    }
}

TEST_F(KoralRunTest, NamesTheGraphClassHandlerThatIsMissingOrIncomplete) {
    const struct {
        const char* graphClass;
        std::string console;
    } rows[] = {
        {"Nowhere", "Could not open the graph class handler for 'Nowhere' !!!\n"},
        {"Bare",
         "Could not find the function 'gcGraphClassExpression' of the graph class "
         "handler for 'Bare' !!!\n"},
    };
    for (const auto& row : rows) {
        writeModule("mod", "module mod graph class : " + std::string(row.graphClass) +
                               " exports transformation unit u realized by " +
                               unitText("call graphstats.counts", "(1)") + " end.");
        test::ScopedEnvironment classes("koralGraphClasses", test::testPluginDirectory());
        ConsoleCapture capture;
        EXPECT_EQ(loadModule("mod"), nullptr);
        EXPECT_EQ(capture.text(), row.console + "Module 'mod' contains errors!!!\n");
    }
}

TEST_F(KoralRunTest, LeavesOutCallsThatCannotBeBoundAndCompilesOn) {
    std::string console;
    const koralModule* module = compile(
        unitText("call graphstats; call graphstats.nosuch; call graphstats.counts"), &console);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(console,
              "caugh't: Could not find the character '.'\nfrom class: koralLibrary\n"
              "caugh't: Could not find the method 'nosuch' in the library 'graphstats' !!!\n"
              "from class: koralLibrary\n");
    const auto& body = module->findUnit("u")->body();
    ASSERT_EQ(body.size(), 1u);
    EXPECT_EQ(dynamic_cast<const koralCall&>(*body[0]).methodName(), "counts");
}

TEST_F(KoralRunTest, BuildsTheStatementTreeWithModesOrderingsAndAlternatives) {
    const koralModule* module = compile(
        unitText("apply 2 times grow; apply once never < noop < aToB;"
                 " apply as long as possible aToB | u;"
                 " if (a == 0) then apply once grow else apply once noop; apply once noop end;"
                 " while (a < 3) do apply once grow end",
                 "(* >= 0)", "(b >= 0)"));
    ASSERT_NE(module, nullptr);
    EXPECT_TRUE(module->loaded());
    EXPECT_EQ(module->name(), "mod");
    EXPECT_EQ(module->graphClass(), "TestGraph");
    EXPECT_EQ(module->exports(), std::vector<std::string>{"u"});
    const koralUnit& unit = *module->findUnit("u");
    EXPECT_TRUE(unit.hasInitialCondition());
    EXPECT_TRUE(unit.hasTerminalCondition());
    const StatementList& body = unit.body();
    ASSERT_EQ(body.size(), 5u);

    const auto& times = dynamic_cast<const koralApply&>(*body[0]);
    EXPECT_EQ(times.mode(), koralApply::Mode::Times);
    EXPECT_EQ(times.count(), 2);
    const auto& sequence = dynamic_cast<const koralApply&>(*body[1]);
    EXPECT_EQ(sequence.mode(), koralApply::Mode::Once);
    EXPECT_EQ(sequence.count(), 1);
    EXPECT_EQ(sequence.ordering(), koralApply::Ordering::Sequence);
    ASSERT_EQ(sequence.alternatives().size(), 3u);
    EXPECT_EQ(sequence.alternatives()[2].name(), "aToB");
    // A unit may apply itself: the alternative is the unit being compiled.
    const auto& alap = dynamic_cast<const koralApply&>(*body[2]);
    EXPECT_EQ(alap.mode(), koralApply::Mode::AsLongAsPossible);
    EXPECT_EQ(alap.ordering(), koralApply::Ordering::Random);
    EXPECT_EQ(std::get<const koralUnit*>(alap.alternatives()[1].target), &unit);

    const auto& branch = dynamic_cast<const koralIf&>(*body[3]);
    EXPECT_EQ(branch.thenStatements().size(), 1u);
    EXPECT_EQ(branch.elseStatements().size(), 2u);
    EXPECT_EQ(dynamic_cast<const koralWhile&>(*body[4]).body().size(), 1u);
}

TEST_F(KoralRunTest, RecordsWhereEachStatementStarts) {
    const std::string units =
        "transformation unit u\n"
        "initial : (a >= 0)\n"
        "body :\n"
        "  apply 2 times grow | aToB;\n"
        "  if (a > 1) then\n"
        "    call graphstats.counts\n"
        "  end\n"
        "terminal :\n"
        "end";
    const koralModule* module = compile(units);
    ASSERT_NE(module, nullptr);
    const koralUnit& unit = *module->findUnit("u");
    const auto& apply = dynamic_cast<const koralApply&>(*unit.body()[0]);
    const auto& branch = dynamic_cast<const koralIf&>(*unit.body()[1]);
    const struct {
        const koralSourcePosition& position;
        std::string label;
        int code, line, column;
        std::string text;
    } rows[] = {
        {unit.position(), "UNIT", 4004, 5, 1, "transformation unit u"},
        {apply.position(), "APPLY", 4001, 8, 3, "apply 2 times"},
        {apply.alternatives()[0].position, "grow", 4002, 8, 17, "grow"},
        {apply.alternatives()[1].position, "aToB", 4002, 8, 24, "aToB"},
        {branch.position(), "IF", 4008, 9, 3, "if (a > 1)"},
        {branch.thenStatements()[0]->position(), "CALL", 4007, 10, 5, "call graphstats.counts"},
    };
    const std::string text = moduleText(units);
    for (const auto& row : rows) {
        EXPECT_EQ(row.position.label, row.label);
        EXPECT_EQ(row.position.code, row.code) << row.label;
        EXPECT_EQ(row.position.line, row.line) << row.label;
        EXPECT_EQ(row.position.column, row.column) << row.label;
        EXPECT_EQ(row.position.module, module) << row.label;
        EXPECT_EQ(text.substr(row.position.begin, row.position.end - row.position.begin), row.text);
    }
}

TEST_F(KoralRunTest, PrefersARuleToAUnitOfTheSameName) {
    const koralModule* module =
        compile(unitText("apply once grow", "", "", "grow") + ";\n" + unitText("apply once grow"));
    ASSERT_NE(module, nullptr);
    const auto& apply = dynamic_cast<const koralApply&>(*module->findUnit("u")->body()[0]);
    EXPECT_TRUE(std::holds_alternative<const SharedRule*>(apply.alternatives()[0].target));
}

}  // namespace
}  // namespace vellum
