// What the statements of a running unit share besides the graph and the frame: the abort flag
// (the user's Stop), the random generator of apply statements, the optional listeners (trace
// hooks, statistics, the record of conditions that could not be evaluated), and a bound on how
// deeply evaluations nest (a unit that applies itself without end must end in an error, not in a
// stack overflow). One per run, used by the worker only.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

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

    // How one try of a rule alternative ended (not called for a try that ended in an error).
    struct RuleAttempt {
        const koralUnit& unit;    // the unit of the apply statement
        const std::string& rule;  // the alternative's name as written
        bool applied;
        // When applied: the 1-based positions in the host graph's vertex list, just before the
        // rewriting, of the images of the left-hand vertices (ElementPositions).
        const std::vector<std::size_t>& vertices;
    };
    using AttemptHook = std::function<void(const RuleAttempt& attempt)>;

    // Who hears of the run; any may be null, and each given must outlive the run.
    struct Listeners {
        const TraceHook* trace = nullptr;
        const AttemptHook* attempts = nullptr;
        KoralStatistics* statistics = nullptr;
        // Receives every condition that could not be evaluated, in the order met.
        std::vector<KoralConditionFailure>* conditionFailures = nullptr;
    };

    // Nested evaluations (units, apply, if and while statements) allowed at once.
    static constexpr int kMaxNesting = 2000;

    KoralRun(const std::atomic<int>& abortFlag, KoralRandom& random, Listeners listeners)
        : abortFlag_(abortFlag), random_(random), listeners_(listeners) {}

    bool aborted() const { return abortFlag_.load() == 1; }
    const std::atomic<int>& abortFlag() const { return abortFlag_; }
    KoralRandom& random() { return random_; }
    KoralStatistics* statistics() { return listeners_.statistics; }

    // True when tries of rules are to be reported; report one with attempted().
    bool tracesAttempts() const { return listeners_.attempts != nullptr && *listeners_.attempts; }
    void attempted(const RuleAttempt& attempt) const;

    // The debug hook of a starting statement: the trace hook, then event 4000 with the record
    // to the frame (when there is one).
    void trace(const koralSourcePosition& position, KoralFrame* frame) const;

    // Evaluates a condition of `unit` or of one of its statements: true when it yields 1. A
    // condition that cannot be evaluated is false and is recorded.
    bool holds(KoralCondition& condition, DirectedGraph& graph, const koralUnit& unit);

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
    Listeners listeners_;
    int depth_ = 0;
};

}  // namespace vellum
