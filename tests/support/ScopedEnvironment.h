// Test support: an environment variable set (or unset) for one scope and restored afterwards,
// for the tests that point search paths at their own fixtures; and the search variables of
// modules, rules and graph class handlers set together.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace vellum::test {

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

// The module, rule and graph class handler search paths and one graph class's rule extension
// (`extensionVariable`, e.g. "DirectedGraphEXTRULE"), each set or unset until the end of the
// scope.
class ScopedSearchPaths {
  public:
    ScopedSearchPaths(std::optional<std::string> modules, std::optional<std::string> rules,
                      std::optional<std::string> classes, std::string extensionVariable,
                      std::optional<std::string> extension)
        : modules_("koralModules", std::move(modules)),
          rules_("koralGraphRules", std::move(rules)),
          classes_("koralGraphClasses", std::move(classes)),
          extension_(std::move(extensionVariable), std::move(extension)) {}

  private:
    ScopedEnvironment modules_;
    ScopedEnvironment rules_;
    ScopedEnvironment classes_;
    ScopedEnvironment extension_;
};

}  // namespace vellum::test
