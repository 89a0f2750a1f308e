#include "koral/KoralCPU.h"

#include <system_error>

#include "base/Console.h"
#include "koral/KoralException.h"
#include "koral/ModuleCache.h"

namespace vellum {
namespace {

constexpr const char* kBanner = "== Koral Interpreter v3 r2 ==";
constexpr const char* kCopyright = "Copyright (c) 2026 the Vellum developers";

long long millisecondsNow() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

koralCPU::~koralCPU() {
    stop();
    if (worker_.joinable())
        worker_.join();
}

bool koralCPU::start(const std::string& qualifiedUnitName, DirectedGraph* graph, KoralFrame* frame,
                     bool quiet) {
    const koralUnit* unit = findUnit(qualifiedUnitName, "");
    if (unit == nullptr) {
        console() << "Could not find the transformation unit '" << qualifiedUnitName << "'!!!\n";
        return false;
    }
    return start(unit, graph, frame, quiet);
}

bool koralCPU::start(const koralUnit* unit, DirectedGraph* graph, KoralFrame* frame, bool quiet) {
    if (!quiet)
        console() << kBanner << "\n" << kCopyright << "\n\n";
    if (running()) {
        console() << "There is currently a program running!\n";
        return false;
    }
    if (unit == nullptr || graph == nullptr) {
        console() << "No transformation unit or no graph to run it on!!!\n";
        return false;
    }
    // The last run has ended; its worker is at most returning.
    if (worker_.joinable())
        worker_.join();
    unit_ = unit;
    graph_ = graph;
    frame_ = frame;
    abort_.store(0);
    statistics_.clear();
    {
        std::lock_guard<std::mutex> lock(failuresMutex_);
        conditionFailures_.clear();
    }
    outcome_.store(Outcome::None);
    // Raised before the worker exists, so that a very short run cannot clear it first.
    running_.store(1);
    try {
        worker_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        running_.store(0);
        console() << "Could not create the thread for the Koral CPU\n";
        return false;
    }
    return true;
}

bool koralCPU::waitUntilIdle(std::chrono::milliseconds timeout) {
    std::unique_lock<std::mutex> lock(idleMutex_);
    return idle_.wait_for(lock, timeout, [this] { return !running(); });
}

void koralCPU::wait() {
    if (worker_.joinable())
        worker_.join();
}

void koralCPU::run() {
    console() << "RUNNING '" << unit_->name() << "'...\n";
    const long long start = millisecondsNow();
    KoralRandom random(seed_);
    std::vector<KoralConditionFailure> failures;
    KoralRun::Listeners listeners;
    listeners.trace = trace_ ? &trace_ : nullptr;
    listeners.attempts = attempts_ ? &attempts_ : nullptr;
    listeners.statistics = collectStatistics_ ? &statistics_ : nullptr;
    listeners.conditionFailures = &failures;
    KoralRun run(abort_, random, listeners);
    Outcome outcome = evaluateUnit(run);
    {
        std::lock_guard<std::mutex> lock(failuresMutex_);
        conditionFailures_ = std::move(failures);
    }
    const long long end = millisecondsNow();
    if (abort_.load() == 1) {
        console() << "Program aborted by user\n";
        if (outcome == Outcome::Normal)
            outcome = Outcome::Aborted;
    }
    console() << "READY '" << unit_->name() << "'..." << static_cast<double>(end - start) / 1000.0
              << " seconds.\n";
    finish(outcome);
}

// Every exception ends here: none may leave the worker.
koralCPU::Outcome koralCPU::evaluateUnit(KoralRun& run) {
    try {
        unit_->evaluate(*graph_, frame_, run);
        return Outcome::Normal;
    } catch (const koralInitialConditionViolated& e) {
        console() << "caugh't: Initial condition violated!\n"
                  << "of transformation unit: " << e.unitName() << "\n";
    } catch (const koralTerminalConditionViolated& e) {
        console() << "caugh't: Terminal condition violated!\n"
                  << "of transformation unit: " << e.unitName() << "\n";
    } catch (const koralRuntimeException& e) {
        console() << "caugh't: " << e.message() << "\n"
                  << "from class: " << e.className() << "\n"
                  << "of transformation unit: " << e.unitName() << "\n";
    } catch (const koralException& e) {
        reportCaught(e);
    } catch (const std::exception& e) {
        console() << "caugh't: " << e.what() << "\n";
    } catch (...) {
        console() << "caugh't: an unknown exception\n";
    }
    return Outcome::Exception;
}

std::vector<KoralConditionFailure> koralCPU::conditionFailures() const {
    std::lock_guard<std::mutex> lock(failuresMutex_);
    return conditionFailures_;
}

void koralCPU::finish(Outcome outcome) {
    outcome_.store(outcome);
    {
        std::lock_guard<std::mutex> lock(idleMutex_);
        running_.store(0);
    }
    idle_.notify_all();
}

}  // namespace vellum
