#include "koral/SharedRule.h"

#include <chrono>

#include "graph/RuleApplication.h"

namespace vellum {

namespace {
// How often a waiting application looks at its abort flag.
constexpr std::chrono::milliseconds kAbortPoll{20};
}  // namespace

SharedRule::SharedRule(std::string name, std::unique_ptr<DirectedGraphRule> rule)
    : name_(std::move(name)), rule_(std::move(rule)) {
    rule_->prepared();
}

bool SharedRule::take(const std::atomic<int>& abortFlag) const {
    std::unique_lock<std::mutex> lock(mutex_);
    while (busy_) {
        if (abortFlag.load() == 1)
            return false;
        released_.wait_for(lock, kAbortPoll);
    }
    busy_ = true;
    return true;
}

void SharedRule::release() const {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        busy_ = false;
    }
    released_.notify_one();
}

std::optional<int> SharedRule::apply(DirectedGraph& host, int mode, const RuleCallback& callback,
                                     const std::atomic<int>& abortFlag) const {
    if (!take(abortFlag))
        return std::nullopt;
    // Released however the application ends (a frame's notification may throw).
    struct Release {
        const SharedRule& rule;
        ~Release() { rule.release(); }
    } release{*this};
    return applyRule(&host, rule_.get(), mode, callback);
}

}  // namespace vellum
