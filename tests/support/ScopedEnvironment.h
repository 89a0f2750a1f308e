// Test support: an environment variable set (or unset) for one scope and restored afterwards,
// for the tests that point search paths at their own fixtures.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

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

}  // namespace vellum::test
