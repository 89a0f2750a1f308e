// The notification interface of a frame that shows a running transformation: the interpreter,
// rule application and layout algorithms report their steps through it, on the worker thread,
// and the frame redraws and paces the run in its handler. Layout plug-ins receive it too.
#pragma once

#include <variant>

#include "graph/RuleEvents.h"

namespace vellum {

class DirectedGraph;
class GraphMorphism;
class SharedRule;
struct koralSourcePosition;

// The notifications, each with what comes with it.
struct StatementStarted {  // code 4000
    const koralSourcePosition& position;
};
struct OccurrenceChosen {  // code 2000: the occurrence about to be rewritten
    const SharedRule& rule;
    const GraphMorphism& occurrence;
};
struct StepIntermediate {  // code 2002: deletion is done, creation follows; may be shown
    const DirectedGraph& graph;
};
struct RuleApplied {  // code 2001
    const DirectedGraph& graph;
    // The occurrence restricted to the host objects the step kept (as kEventApplied gives it),
    // so that a scene can follow the step; null when a plug-in sent the notification.
    const GraphMorphism* survivors;
};
// A code the program does not send itself, as a plug-in sent it.
struct OtherNotification {
    int code;
    const void* pointer;
    long a, b, c;
};
using FrameEvent = std::variant<StatementStarted, OccurrenceChosen, StepIntermediate, RuleApplied,
                                OtherNotification>;

class KoralFrame {
  public:
    // The codes of the plug-in interface (see notify(int, ...)).
    static constexpr int kStatementStarted = 4000;
    static constexpr int kMatchFound = kEventOccurrenceChosen;
    static constexpr int kRuleApplied = kEventApplied;
    static constexpr int kIntermediate = kEventIntermediate;

    virtual ~KoralFrame();
    // Called on the thread that does the work; returns when the frame lets the run go on.
    virtual void notify(const FrameEvent& event) = 0;
    // The form plug-ins send: kIntermediate or kRuleApplied with the graph as `pointer` arrive as
    // StepIntermediate or RuleApplied, any other code as OtherNotification.
    void notify(int code, const void* pointer, long a, long b, long c);
};

// The numeric code of a notification.
int eventCode(const FrameEvent& event);

}  // namespace vellum
