#include "koral/KoralFrame.h"

namespace vellum {

// Defined here so that the interface's type information lives in the koral library, the one
// copy that the program and every plug-in share.
KoralFrame::~KoralFrame() = default;

void KoralFrame::notify(int code, const void* pointer, long a, long b, long c) {
    const auto* graph = static_cast<const DirectedGraph*>(pointer);
    if (code == kIntermediate && graph != nullptr && a == 0 && b == 0 && c == 0)
        notify(StepIntermediate{*graph});
    else if (code == kRuleApplied && graph != nullptr && a == 0 && b == 0 && c == 0)
        notify(RuleApplied{*graph, nullptr});
    else
        notify(OtherNotification{code, pointer, a, b, c});
}

int eventCode(const FrameEvent& event) {
    struct Code {
        int operator()(const StatementStarted&) const { return KoralFrame::kStatementStarted; }
        int operator()(const OccurrenceChosen&) const { return KoralFrame::kMatchFound; }
        int operator()(const StepIntermediate&) const { return KoralFrame::kIntermediate; }
        int operator()(const RuleApplied&) const { return KoralFrame::kRuleApplied; }
        int operator()(const OtherNotification& other) const { return other.code; }
    };
    return std::visit(Code{}, event);
}

}  // namespace vellum
