// The errors of the transformation language: library binding, graph class handler access and the
// evaluation of units throw this family, and the module compiler and the interpreter catch it and
// report it on the console. Every one carries a message and the name of the routine that threw
// ("class"); the run-time kinds also name the unit they were raised in.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace vellum {

class koralUnit;

class koralException : public std::exception {
  public:
    koralException(std::string message, std::string className)
        : message_(std::move(message)), className_(std::move(className)) {}

    const std::string& message() const noexcept { return message_; }
    const std::string& className() const noexcept { return className_; }
    const char* what() const noexcept override { return message_.c_str(); }

  private:
    std::string message_;
    std::string className_;
};

// Raised while a statement of a unit is evaluated. The unit is kept by pointer (it may be null)
// and by name, so that the report does not need the unit to be alive or complete.
class koralRuntimeException : public koralException {
  public:
    koralRuntimeException(std::string message, std::string className, const koralUnit* unit,
                          std::string unitName)
        : koralException(std::move(message), std::move(className)),
          unit_(unit),
          unitName_(std::move(unitName)) {}

    const koralUnit* unit() const noexcept { return unit_; }
    const std::string& unitName() const noexcept { return unitName_; }

  private:
    const koralUnit* unit_;
    std::string unitName_;
};

// The two condition failures are run-time exceptions too (they name their unit); a handler that
// reports them in their own words catches them before koralRuntimeException.

// A unit's initial condition was false: the message is "Initial condition violated!".
class koralInitialConditionViolated : public koralRuntimeException {
  public:
    koralInitialConditionViolated(const koralUnit* unit, std::string unitName);
};

// A unit's terminal condition was false: the message is "Terminal condition violated!".
class koralTerminalConditionViolated : public koralRuntimeException {
  public:
    koralTerminalConditionViolated(const koralUnit* unit, std::string unitName);
};

// Writes the two console lines "caugh't: MESSAGE" and "from class: CLASS" (the spelling is the
// system's own and kept).
void reportCaught(const koralException& exception);

}  // namespace vellum
