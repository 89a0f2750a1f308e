// Helpers of the koral tests: a temporary folder, an environment variable or working folder
// changed for one test and restored afterwards, where the test plug-ins were built, and the
// message of a library error.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "koral/KoralException.h"

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

class TempFolder {
  public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vellum_koral_XXXXXX");
        if (::mkdtemp(pattern.data()) != nullptr)
            path_ = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string path(const std::string& name = {}) const {
        return name.empty() ? path_.string() : (path_ / name).string();
    }
    std::string write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }
    // Copies a file into the folder under `name` and returns the copy's path.
    std::string copy(const std::string& file, const std::string& name) const {
        std::filesystem::copy_file(file, path_ / name,
                                   std::filesystem::copy_options::overwrite_existing);
        return path(name);
    }

  private:
    std::filesystem::path path_;
};

// Sets (or, with no value, unsets) an environment variable until the end of the scope.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, std::optional<std::string> value) : name_(std::move(name)) {
        if (const char* old = std::getenv(name_.c_str()))
            old_ = old;
        apply(value);
    }
    ~ScopedEnvironment() { apply(old_); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    void apply(const std::optional<std::string>& value) const {
        if (value)
            ::setenv(name_.c_str(), value->c_str(), 1);
        else
            ::unsetenv(name_.c_str());
    }

    std::string name_;
    std::optional<std::string> old_;
};

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
