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

    applyBundledDefaults();
    EXPECT_EQ(environmentValue("koralGraphClasses"), pluginDirectory());
    EXPECT_TRUE(std::filesystem::exists(environmentValue("koralGraphClasses") + "/sphere.layout"));
    EXPECT_EQ(environmentValue("VellumLayout"), "/my/layouts");
    EXPECT_EQ(environmentValue("DirectedGraphEXTGRAPH"), "dg");
    EXPECT_TRUE(environmentIsSet("DirectedGraphEXTRULE"));
    EXPECT_EQ(environmentValue("DirectedGraphEXTRULE"), "");

    ScopedEnvironment unsetLayout("VellumLayout", std::nullopt);
    ScopedEnvironment unsetRules("DirectedGraphEXTRULE", std::nullopt);
    applyBundledDefaults();
    EXPECT_EQ(environmentValue("VellumLayout"), pluginDirectory());
    EXPECT_EQ(environmentValue("DirectedGraphEXTRULE"), "drl");
}

}  // namespace
}  // namespace vellum
