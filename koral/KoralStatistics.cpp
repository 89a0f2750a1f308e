#include "koral/KoralStatistics.h"

namespace vellum {
namespace {

double seconds(KoralStatistics::Clock::duration time) {
    return std::chrono::duration<double>(time).count();
}

}  // namespace

void KoralStatistics::addAttempt(const std::string& rule, bool applied, Clock::duration matching,
                                 Clock::duration rewriting) {
    RuleFigures& figures = rules_[rule];
    ++figures.attempts;
    if (applied)
        ++figures.applications;
    figures.matching += matching;
    figures.rewriting += rewriting;
}

void KoralStatistics::addCondition(Clock::duration time) {
    ++conditions_;
    conditionTime_ += time;
}

void KoralStatistics::addCall(Clock::duration time) {
    ++calls_;
    callTime_ += time;
}

KoralStatistics::RuleFigures KoralStatistics::total() const {
    RuleFigures sum;
    for (const auto& [name, figures] : rules_) {
        sum.attempts += figures.attempts;
        sum.applications += figures.applications;
        sum.matching += figures.matching;
        sum.rewriting += figures.rewriting;
    }
    return sum;
}

void KoralStatistics::write(std::ostream& out) const {
    const RuleFigures sum = total();
    out << "rule attempts: " << sum.attempts << ", applications: " << sum.applications << "\n"
        << "unit applications: " << unitApplications_ << "\n"
        << "time matching: " << seconds(sum.matching) << " s, rewriting: " << seconds(sum.rewriting)
        << " s\n"
        << "conditions: " << conditions_ << " in " << seconds(conditionTime_) << " s\n"
        << "calls: " << calls_ << " in " << seconds(callTime_) << " s\n";
    for (const auto& [name, figures] : rules_) {
        out << "rule '" << name << "': " << figures.attempts << " attempts, "
            << figures.applications << " applications, matching " << seconds(figures.matching)
            << " s, rewriting " << seconds(figures.rewriting) << " s\n";
    }
}

}  // namespace vellum
