#include <gtest/gtest.h>

#include "KoralTestSupport.h"
#include "base/Paths.h"
#include "koral/BundledDefaults.h"

namespace vellum {
namespace {

using test::ScopedEnvironment;

TEST(BundledDefaults, FillInWhatIsUnsetAndKeepWhatTheUserSet) {
    ScopedEnvironment classes("koralGraphClasses", std::nullopt);
    ScopedEnvironment layout("VellumLayout", "/my/layouts");
    ScopedEnvironment graphs("DirectedGraphEXTGRAPH", std::nullopt);
    ScopedEnvironment rules("DirectedGraphEXTRULE", "");  // empty on purpose: still the user's

    SearchPaths paths;  // not the shared one, which the other tests use
    applyBundledDefaults(paths);
    EXPECT_EQ(paths.value("koralGraphClasses"), pluginDirectory());
    EXPECT_TRUE(std::filesystem::exists(paths.value("koralGraphClasses") + "/sphere.layout"));
    EXPECT_EQ(paths.value("VellumLayout"), "/my/layouts");
    EXPECT_EQ(paths.value("DirectedGraphEXTGRAPH"), "dg");
    EXPECT_TRUE(paths.isSet("DirectedGraphEXTRULE"));
    EXPECT_EQ(paths.value("DirectedGraphEXTRULE"), "");

    ScopedEnvironment unsetLayout("VellumLayout", std::nullopt);
    ScopedEnvironment unsetRules("DirectedGraphEXTRULE", std::nullopt);
    applyBundledDefaults(paths);
    EXPECT_EQ(paths.value("VellumLayout"), pluginDirectory());
    EXPECT_EQ(paths.value("DirectedGraphEXTRULE"), "drl");
    // A value the program set wins over the environment until it is reset.
    ScopedEnvironment userLayout("VellumLayout", "/later");
    EXPECT_EQ(paths.value("VellumLayout"), pluginDirectory());
    paths.reset("VellumLayout");
    EXPECT_EQ(paths.value("VellumLayout"), "/later");
}

}  // namespace
}  // namespace vellum
