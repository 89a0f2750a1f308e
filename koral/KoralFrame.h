// The notification interface of a frame that shows a running transformation: the interpreter,
// rule application and layout algorithms report their steps through it, on the worker thread,
// and the frame redraws and paces the run in its handler. Layout plug-ins receive it too.
#pragma once

namespace vellum {

class KoralFrame {
  public:
    // The event codes and what `pointer` is for each.
    static constexpr int kStatementStarted = 4000;  // a statement's source-position record
    static constexpr int kMatchFound = 2000;        // the occurrence about to be rewritten
    static constexpr int kRuleApplied = 2001;       // the graph
    static constexpr int kIntermediate = 2002;      // the graph: a state that may be shown

    virtual ~KoralFrame();
    // Called on the thread that does the work; returns when the frame lets the run go on.
    virtual void notify(int code, const void* pointer, long a, long b, long c) = 0;
};

}  // namespace vellum
