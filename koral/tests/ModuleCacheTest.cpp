#include <gtest/gtest.h>

#include "KoralRunTestSupport.h"
#include "koral/KoralApply.h"
#include "koral/RuleCache.h"

namespace vellum {
namespace {

using test::KoralRunTest;
using test::moduleText;
using test::unitText;

TEST_F(KoralRunTest, FindsUnitsByQualifiedNameWithinTheDeliberateLimits) {
    writeModule("mod", moduleText(unitText("apply once grow")));
    writeModule("x", moduleText(unitText("apply once grow"), "x"));
    writeModule("sub.inner", moduleText(unitText("apply once grow"), "inner"));
    const struct {
        std::string name, graphClass;
        bool found;
    } rows[] = {
        {"mod.u", "", true},
        {"mod.u", "TestGraph", true},
        {"mod.u", "OtherGraph", false},
        {"mod.nothing", "", false},
        {"u", "", false},
        {".u", "", false},
        {"x.u", "", false},  // a module name of one character is not looked for
        {"sub.inner.u", "TestGraph", true},
        {"missing.u", "", false},
    };
    for (const auto& row : rows) {
        const koralUnit* unit = findUnit(row.name, row.graphClass);
        EXPECT_EQ(unit != nullptr, row.found) << row.name << " " << row.graphClass;
        if (unit != nullptr) {
            EXPECT_EQ(unit->name(), "u");
        }
    }
    EXPECT_NE(loadModule("x"), nullptr);
}

TEST_F(KoralRunTest, KeepsOneModulePerName) {
    const std::string file = writeModule("m", moduleText(unitText("apply once grow")));
    const koralModule* first = loadModule("m");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->file(), file);
    EXPECT_EQ(loadModule("m"), first);
    EXPECT_EQ(ModuleCache::instance().loadFile(file), first);

    // Another file of the same name takes the name over; the module handed out stays valid.
    test::TempFolder elsewhere;
    const std::string other =
        elsewhere.write("m.mod", moduleText(unitText("apply 2 times grow"), "other"));
    const koralModule* second = ModuleCache::instance().loadFile(other);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(loadModule("m"), second);
    EXPECT_EQ(first->name(), "mod");
    EXPECT_EQ(ModuleCache::instance().loadFile(elsewhere.path("none.mod")), nullptr);
}

TEST_F(KoralRunTest, WithoutModuleSearchPathLooksInTheWorkingFolderOnly) {
    writeModule("m", moduleText(unitText("apply once grow")));
    test::ScopedEnvironment unset("koralModules", std::nullopt);
    test::TempFolder elsewhere;
    {
        test::ScopedWorkingDirectory away(elsewhere.path());
        EXPECT_EQ(loadModule("m"), nullptr);
    }
    test::ScopedWorkingDirectory here(folder_.path());
    EXPECT_NE(loadModule("m"), nullptr);
}

TEST_F(KoralRunTest, UsesOtherModulesAndAppliesTheirUnits) {
    writeModule("library", moduleText(unitText("apply once grow", "", "", "helper"), "library"));
    const std::string text =
        "module m graph class : TestGraph uses library;\n"
        "exports transformation unit u realized by " +
        unitText("apply once library.helper < sub.deep") + " end.";
    writeModule("m", text);
    const koralModule* module = loadModule("m");
    ASSERT_NE(module, nullptr);
    ASSERT_EQ(module->uses().size(), 1u);
    EXPECT_EQ(module->uses()[0], loadModule("library"));
    const auto& apply = dynamic_cast<const koralApply&>(*module->findUnit("u")->body()[0]);
    EXPECT_EQ(std::get<const koralUnit*>(apply.alternatives()[0].target),
              findUnit("library.helper", ""));
    // A dotted rule name is a file in a subfolder.
    EXPECT_EQ(&std::get<const SharedRule*>(apply.alternatives()[1].target)->rule(),
              findRule("sub.deep", "TestGraph"));
    EXPECT_EQ(findRule("sub.deep", "TestGraph")->name(), "deep");
}

TEST_F(KoralRunTest, RefusesModulesThatUseThemselves) {
    const auto uses = [](const std::string& name, const std::string& used) {
        return "module " + name + " graph class : TestGraph uses " + used +
               "; exports transformation unit u realized by " + unitText("apply once grow") +
               " end.";
    };
    writeModule("one", uses("one", "two"));
    writeModule("two", uses("two", "one"));
    ConsoleCapture capture;
    EXPECT_EQ(loadModule("one"), nullptr);
    EXPECT_EQ(capture.text(),
              "Circular use of module 'one'!!!\nModule 'two' contains errors!!!\n"
              "Module 'one' contains errors!!!\n");
    // Neither is kept: a module is cached only when it compiled.
    EXPECT_EQ(findUnit("two.u", ""), nullptr);
}

TEST_F(KoralRunTest, LoadsEachRuleOncePerNameAndClass) {
    const DirectedGraphRule* rule = findRule("grow", "TestGraph");
    ASSERT_NE(rule, nullptr);
    EXPECT_EQ(rule->name(), "grow");
    EXPECT_EQ(findRule("grow", "TestGraph"), rule);
    EXPECT_EQ(findRule("nothing", "TestGraph"), nullptr);
    // Another class has its own extension: none is set for it, so no file is found.
    EXPECT_EQ(findRule("grow", "Other"), nullptr);
    EXPECT_EQ(RuleCache::fileName("a.b", "TestGraph"), "a/b.drl");
}

}  // namespace
}  // namespace vellum
