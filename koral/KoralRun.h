// What the statements of a running unit share besides the graph and the frame: the abort flag
// (the user's Stop), the random generator of apply statements, the optional statistics, the
// trace hook, and a bound on how deeply evaluations nest (a unit that applies itself without
// end must end in an error, not in a stack overflow). One per run, used by the worker only.
#pragma once

#include <atomic>
#include <functional>

#include "graph/DirectedGraph.h"
#include "koral/KoralCondition.h"
#include "koral/KoralFrame.h"
#include "koral/KoralRandom.h"
#include "koral/KoralSourcePosition.h"
#include "koral/KoralStatistics.h"

namespace vellum {

class koralUnit;

class KoralRun {
  public:
    // Called at the start of every statement (before the frame hears of it).
    using TraceHook = std::function<void(const koralSourcePosition& position)>;

    // Nested evaluations (units, apply, if and while statements) allowed at once.
    static constexpr int kMaxNesting = 2000;

    // `hook` and `statistics` may be null; everything given must outlive the run.
    KoralRun(const std::atomic<int>& abortFlag, KoralRandom& random, const TraceHook* hook,
             KoralStatistics* statistics)
        : abortFlag_(abortFlag), random_(random), hook_(hook), statistics_(statistics) {}

    bool aborted() const { return abortFlag_.load() == 1; }
    const std::atomic<int>& abortFlag() const { return abortFlag_; }
    KoralRandom& random() { return random_; }
    KoralStatistics* statistics() { return statistics_; }

    // The debug hook of a starting statement: the trace hook, then event 4000 with the record
    // to the frame (when there is one).
    void trace(const koralSourcePosition& position, KoralFrame* frame) const;

    // Evaluates a condition of a unit or statement: true when it yields 1.
    bool holds(KoralCondition& condition, DirectedGraph& graph);

    // Counts one nested evaluation for as long as the returned object lives. Throws
    // koralRuntimeException "Units and statements nested too deeply!!!" (class "koralEvaluate",
    // naming `unit`) beyond kMaxNesting.
    class Nesting {
      public:
        explicit Nesting(int& depth) : depth_(depth) { ++depth_; }
        ~Nesting() { --depth_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

      private:
        int& depth_;
    };
    [[nodiscard]] Nesting enter(const koralUnit& unit);

  private:
    const std::atomic<int>& abortFlag_;
    KoralRandom& random_;
    const TraceHook* hook_;
    KoralStatistics* statistics_;
    int depth_ = 0;
};

}  // namespace vellum
