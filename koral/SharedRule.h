// A graph rule held by the rule cache for every module that applies it, possibly by several
// interpreters at once. Rule application keeps per-rule search state (the matcher's plans), so
// one application at a time may use a rule: the others wait, and give up when their run is
// stopped, so that a run paused inside a step never blocks another frame's Stop.
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "graph/DirectedGraphRule.h"
#include "graph/RuleEvents.h"

namespace vellum {

class SharedRule {
  public:
    // Prepares the rule for application now, while only this thread knows it.
    SharedRule(std::string name, std::unique_ptr<DirectedGraphRule> rule);

    // The name it was looked up by (as written in modules).
    const std::string& name() const { return name_; }
    const DirectedGraphRule& rule() const { return *rule_; }

    // applyRule() on the host in that mode, once no other application of this rule is going on.
    // Its result code; none when `abortFlag` became 1 while waiting.
    std::optional<int> apply(DirectedGraph& host, int mode, const RuleCallback& callback,
                             const std::atomic<int>& abortFlag) const;

  private:
    // Waits for the rule to be free and takes it; false when the abort flag rose meanwhile.
    bool take(const std::atomic<int>& abortFlag) const;
    void release() const;

    std::string name_;
    std::unique_ptr<DirectedGraphRule> rule_;
    mutable std::mutex mutex_;  // guards busy_
    mutable std::condition_variable released_;
    mutable bool busy_ = false;  // an application of the rule is going on
};

}  // namespace vellum
