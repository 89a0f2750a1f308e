// Figures of one interpreter run, for tuning modules: how often each rule was tried and applied
// and where the time went (finding occurrences, rewriting, conditions, method calls). Filled by
// the statements while the run goes on, only when the interpreter is asked to collect them.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <ostream>
#include <string>

namespace vellum {

class KoralStatistics {
  public:
    using Clock = std::chrono::steady_clock;

    struct RuleFigures {
        std::size_t attempts = 0;
        std::size_t applications = 0;
        Clock::duration matching{};   // from the attempt's start to the chosen occurrence
        Clock::duration rewriting{};  // from the chosen occurrence to the attempt's end
    };

    // One attempt to apply the rule of that name (an alternative as written in the module).
    void addAttempt(const std::string& rule, bool applied, Clock::duration matching,
                    Clock::duration rewriting);
    void addUnitApplication() { ++unitApplications_; }
    void addCondition(Clock::duration time);
    void addCall(Clock::duration time);
    void clear() { *this = KoralStatistics(); }

    const std::map<std::string, RuleFigures>& rules() const { return rules_; }
    // The sums over all rules.
    RuleFigures total() const;
    std::size_t unitApplications() const { return unitApplications_; }
    std::size_t conditions() const { return conditions_; }
    std::size_t calls() const { return calls_; }

    // The figures as lines of text (times in seconds), totals first, then one line per rule.
    void write(std::ostream& out) const;

  private:
    std::map<std::string, RuleFigures> rules_;
    std::size_t unitApplications_ = 0;
    std::size_t conditions_ = 0;
    Clock::duration conditionTime_{};
    std::size_t calls_ = 0;
    Clock::duration callTime_{};
};

}  // namespace vellum
