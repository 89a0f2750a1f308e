// Helpers of the koral tests: where the test plug-ins were built, the message of a library
// error, a working folder changed for one test, and (from the shared test
// support) a temporary folder and environment variables set for one test.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "koral/KoralException.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum::test {

// The message of the koralException that `action` throws, which must be of class
// "koralLibrary"; "no exception" when none is thrown.
template <typename Action>
std::string libraryError(Action action) {
    try {
        action();
    } catch (const koralException& e) {
        EXPECT_EQ(e.className(), "koralLibrary");
        return e.message();
    }
    return "no exception";
}

// Built beside the tests by koral/tests/CMakeLists.txt: Complete.gc, Bare.gc, noerror.so.
inline std::string testPluginDirectory() {
    return KORAL_TEST_PLUGINS;
}

// Works in another folder until the end of the scope.
class ScopedWorkingDirectory {
  public:
    explicit ScopedWorkingDirectory(const std::string& directory)
        : old_(std::filesystem::current_path()) {
        std::filesystem::current_path(directory);
    }
    ~ScopedWorkingDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(old_, ignored);
    }
    ScopedWorkingDirectory(const ScopedWorkingDirectory&) = delete;
    ScopedWorkingDirectory& operator=(const ScopedWorkingDirectory&) = delete;

  private:
    std::filesystem::path old_;
};

}  // namespace vellum::test
