// The Koral interpreter ("Koral CPU"): runs one transformation unit on one graph on a worker
// thread of its own, writing its progress to the console, while the thread that started it
// stays free (the desktop program's GUI, the command line's wait for Ctrl-C). One run at a time;
// stop() asks the run to end at its next check.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "koral/KoralRun.h"
#include "koral/KoralStatistics.h"
#include "koral/KoralUnit.h"

namespace vellum {

class koralCPU {
  public:
    // How the last run ended.
    enum class Outcome { None, Normal, Aborted, Exception };

    koralCPU() = default;
    // Stops a run that is still going and waits for its worker to end.
    ~koralCPU();
    koralCPU(const koralCPU&) = delete;
    koralCPU& operator=(const koralCPU&) = delete;

    // Starts the unit on the graph; `frame` (may be null) is told of every step, on the worker
    // thread. Unless `quiet`, writes the banner first. False, with a console message, while a
    // run is going ("There is currently a program running!"), when the unit cannot be found,
    // and when no thread can be made. Unit, graph and frame must stay alive until the run ends;
    // the graph belongs to the run meanwhile. Call start, stop and the setters from one thread.
    bool start(const koralUnit* unit, DirectedGraph* graph, KoralFrame* frame, bool quiet);
    // The same for "module.unit", looked up with findUnit() (any graph class).
    bool start(const std::string& qualifiedUnitName, DirectedGraph* graph, KoralFrame* frame,
               bool quiet);

    // Raises the abort flag: the run ends at its next check.
    void stop() { abort_.store(1); }
    bool running() const { return running_.load() == 1; }
    // Waits up to `timeout` for the run to end; true when none is going.
    bool waitUntilIdle(std::chrono::milliseconds timeout);
    // Waits until the run has ended and its worker is gone.
    void wait();

    Outcome outcome() const { return outcome_.load(); }

    // Settings for the runs started afterwards (not while one is going).
    // A fixed seed makes the choices among alternatives repeatable; none seeds from the clock.
    void setSeed(std::optional<std::uint32_t> seed) { seed_ = seed; }
    // Called on the worker at the start of every statement.
    void setTraceHook(KoralRun::TraceHook hook) { trace_ = std::move(hook); }
    // Called on the worker after every try of a rule alternative; costs nothing when unset.
    void setAttemptHook(KoralRun::AttemptHook hook) { attempts_ = std::move(hook); }
    void setCollectStatistics(bool on) { collectStatistics_ = on; }
    // The figures of the last run (empty unless collected); read them once it has ended.
    const KoralStatistics& statistics() const { return statistics_; }
    // The conditions of the last run that could not be evaluated (each once, in the order met).
    // The interpreter took them as false and went on, so the run may still have ended normally.
    std::vector<KoralConditionFailure> conditionFailures() const;

  private:
    void run();
    Outcome evaluateUnit(KoralRun& run);
    void finish(Outcome outcome);

    std::atomic<int> abort_{0};
    std::atomic<int> running_{0};
    std::atomic<Outcome> outcome_{Outcome::None};
    // Set by start() before the worker exists, then read by the worker only.
    const koralUnit* unit_ = nullptr;
    DirectedGraph* graph_ = nullptr;
    KoralFrame* frame_ = nullptr;
    std::optional<std::uint32_t> seed_;
    KoralRun::TraceHook trace_;
    KoralRun::AttemptHook attempts_;
    bool collectStatistics_ = false;
    KoralStatistics statistics_;  // written by the worker during a run
    mutable std::mutex failuresMutex_;
    std::vector<KoralConditionFailure> conditionFailures_;  // guarded by failuresMutex_
    std::mutex idleMutex_;
    std::condition_variable idle_;  // signalled when running_ drops to 0
    std::thread worker_;
};

}  // namespace vellum
