#include <gtest/gtest.h>

#include "base/Console.h"
#include "koral/KoralException.h"

namespace vellum {
namespace {

TEST(KoralException, ConditionFailuresCarryTheirTextAndUnitAndAreCaughtAsTheFamily) {
    const auto caught = [](auto thrown) -> std::pair<std::string, std::string> {
        try {
            throw thrown;
        } catch (const koralRuntimeException& e) {
            return {e.message(), e.unitName()};
        }
    };
    EXPECT_EQ(caught(koralInitialConditionViolated(nullptr, "start")),
              std::make_pair(std::string("Initial condition violated!"), std::string("start")));
    EXPECT_EQ(caught(koralTerminalConditionViolated(nullptr, "stop")),
              std::make_pair(std::string("Terminal condition violated!"), std::string("stop")));
}

TEST(KoralException, IsReportedInTheSystemsTwoLines) {
    ConsoleCapture capture;
    reportCaught(koralException("No library loaded!!!", "koralLibrary"));
    EXPECT_EQ(capture.text(), "caugh't: No library loaded!!!\nfrom class: koralLibrary\n");
}

}  // namespace
}  // namespace vellum
