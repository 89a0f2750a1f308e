#include "koral/KoralApply.h"

#include "graph/ElementPositions.h"
#include "graph/InlineVector.h"
#include "graph/RuleApplication.h"
#include "koral/KoralException.h"
#include "koral/KoralRun.h"
#include "koral/KoralUnit.h"

namespace vellum {
namespace {

constexpr const char* kClass = "koralEvalApply";

enum class Attempt { Applied, Failed, Aborted };

// One evaluation of an apply statement. The enabled marks live here, not in the statement, so
// that a unit applying itself and interpreters sharing the module do not disturb each other.
class ApplyEvaluation {
  public:
    ApplyEvaluation(const koralApply& apply, DirectedGraph& graph, const koralUnit& unit,
                    KoralFrame* frame, KoralRun& run);

    void run();

  private:
    // One pass: false when the run was stopped during it.
    bool runPass(int pass);
    std::size_t pick();
    Attempt attempt(const koralApply::Alternative& alternative);
    Attempt attemptRule(const SharedRule& rule, const koralApply::Alternative& alternative);
    Attempt attemptUnit(const koralUnit& unit, const koralApply::Alternative& alternative);
    Attempt interpret(int result, const std::string& name) const;
    void onEvent(int event, const GraphMorphism* occurrence);
    bool anyEnabled() const;
    void enableAll() { enabled_.assign(enabled_.size(), 1); }
    [[noreturn]] void fail(const std::string& message) const {
        throw koralRuntimeException(message, kClass, &unit_, unit_.name());
    }

    const koralApply& apply_;
    DirectedGraph& graph_;
    const koralUnit& unit_;
    KoralFrame* frame_;
    KoralRun& run_;
    KoralStatistics* statistics_;
    // 1 enabled, 0 set aside; one per alternative. Inline: most applications name few rules.
    InlineVector<signed char, 16> enabled_;
    RuleCallback callback_;             // empty when nobody listens
    const SharedRule* rule_ = nullptr;  // the rule being applied, for the frame
    KoralStatistics::Clock::time_point chosenAt_{};
    std::vector<std::size_t> chosenVertices_;  // of the last occurrence chosen, when traced
};

ApplyEvaluation::ApplyEvaluation(const koralApply& apply, DirectedGraph& graph,
                                 const koralUnit& unit, KoralFrame* frame, KoralRun& run)
    : apply_(apply),
      graph_(graph),
      unit_(unit),
      frame_(frame),
      run_(run),
      statistics_(run.statistics()) {
    enabled_.assign(apply.alternatives().size(), 1);
    if (frame_ != nullptr || statistics_ != nullptr || run_.tracesAttempts()) {
        callback_ = [this](int event, DirectedGraph*, const GraphMorphism* occurrence) {
            onEvent(event, occurrence);
        };
    }
}

void ApplyEvaluation::run() {
    for (int pass = 0; pass < apply_.count() && !run_.aborted(); ++pass) {
        if (!runPass(pass))
            return;
    }
}

bool ApplyEvaluation::runPass(int pass) {
    for (;;) {
        const std::size_t chosen = pick();
        const Attempt result = attempt(apply_.alternatives()[chosen]);
        if (result == Attempt::Aborted)
            return false;
        if (result == Attempt::Applied)
            enableAll();
        else
            enabled_[chosen] = 0;
        switch (apply_.mode()) {
            case koralApply::Mode::Once:
                if (result == Attempt::Applied)
                    return true;
                if (!anyEnabled())
                    fail("Reduced rule set without having applied a rule");
                break;
            case koralApply::Mode::AsLongAsPossible:
                if (!anyEnabled())
                    return true;
                break;
            case koralApply::Mode::Times:
                if (!anyEnabled()) {
                    fail("Finished loop " + std::to_string(pass + 1) + " of " +
                         std::to_string(apply_.count()) +
                         "\nBut no one of the rules can be applied anymore!!!");
                }
                return true;
        }
        if (run_.aborted())
            return false;
    }
}

// There is always an enabled alternative here: a pass starts with one and goes on only while
// one is left.
std::size_t ApplyEvaluation::pick() {
    if (apply_.ordering() == koralApply::Ordering::Sequence) {
        for (std::size_t i = 0; i < enabled_.size(); ++i) {
            if (enabled_[i] == 1)
                return i;
        }
    }
    for (;;) {
        const std::size_t i = run_.random().below(enabled_.size());
        if (enabled_[i] == 1)
            return i;
    }
}

Attempt ApplyEvaluation::attempt(const koralApply::Alternative& alternative) {
    if (const auto* rule = std::get_if<const SharedRule*>(&alternative.target))
        return attemptRule(**rule, alternative);
    return attemptUnit(*std::get<const koralUnit*>(alternative.target), alternative);
}

Attempt ApplyEvaluation::attemptRule(const SharedRule& rule,
                                     const koralApply::Alternative& alternative) {
    run_.trace(alternative.position, frame_);
    const auto start = statistics_ != nullptr ? KoralStatistics::Clock::now()
                                              : KoralStatistics::Clock::time_point{};
    chosenAt_ = {};
    chosenVertices_.clear();
    rule_ = &rule;
    const std::optional<int> result =
        rule.apply(graph_, kModeRuleMatch, callback_, run_.abortFlag());
    if (!result)
        return Attempt::Aborted;
    if (statistics_ != nullptr) {
        const auto end = KoralStatistics::Clock::now();
        const auto chosen = chosenAt_ == KoralStatistics::Clock::time_point{} ? end : chosenAt_;
        statistics_->addAttempt(alternative.name(), *result == kApplyApplied, chosen - start,
                                end - chosen);
    }
    const Attempt outcome = interpret(*result, alternative.name());
    run_.attempted({unit_, alternative.name(), outcome == Attempt::Applied, chosenVertices_});
    return outcome;
}

Attempt ApplyEvaluation::interpret(int result, const std::string& name) const {
    switch (result) {
        case kApplyApplied:
            return Attempt::Applied;
        case kApplyNoOccurrence:
        case kApplyNonePassed:
            return Attempt::Failed;
        case kApplyNoGraph:
            fail("Rule was a null pointer");
        case kApplyNotReady:
            fail("Inconsistant rule: " + name);
        case kApplyStepFailed:
            fail("Execution error: " + name);
        case kApplyUnknownMode:
            fail("Unkown apply mode");
        case kApplyWrongRuleClass:
            fail("The type of the rule '" + name + "' and the graph are different!!!");
        default:
            fail("Unkown error occured: " + name);
    }
}

Attempt ApplyEvaluation::attemptUnit(const koralUnit& unit,
                                     const koralApply::Alternative& alternative) {
    run_.trace(alternative.position, frame_);
    unit.evaluate(graph_, frame_, run_);
    if (run_.aborted())
        return Attempt::Aborted;
    if (statistics_ != nullptr)
        statistics_->addUnitApplication();
    return Attempt::Applied;
}

void ApplyEvaluation::onEvent(int event, const GraphMorphism* occurrence) {
    if (event == kEventOccurrenceChosen && statistics_ != nullptr)
        chosenAt_ = KoralStatistics::Clock::now();
    if (event == kEventOccurrenceChosen && run_.tracesAttempts())
        chosenVertices_ = ElementPositions(graph_).vertexImages(*occurrence);
    if (frame_ == nullptr)
        return;
    switch (event) {
        case kEventOccurrenceChosen:
            frame_->notify(OccurrenceChosen{*rule_, *occurrence});
            break;
        case kEventIntermediate:
            frame_->notify(StepIntermediate{graph_});
            break;
        default:
            frame_->notify(RuleApplied{graph_, occurrence});
            break;
    }
}

bool ApplyEvaluation::anyEnabled() const {
    for (signed char mark : enabled_) {
        if (mark == 1)
            return true;
    }
    return false;
}

}  // namespace

koralApply::koralApply(Mode mode, int count, koralSourcePosition position)
    : koralStatement(std::move(position)), mode_(mode), count_(count) {}

void koralApply::addRule(const SharedRule& rule, koralSourcePosition position) {
    alternatives_.push_back(Alternative{&rule, std::move(position)});
}

void koralApply::addUnit(const koralUnit& unit, koralSourcePosition position) {
    alternatives_.push_back(Alternative{&unit, std::move(position)});
}

void koralApply::evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                          KoralRun& run) const {
    run.random().startStatement();
    run.trace(position(), frame);
    if (alternatives_.empty())
        throw koralRuntimeException("No rule(s) given!!!", kClass, &unit, unit.name());
    const auto nesting = run.enter(unit);
    ApplyEvaluation(*this, graph, unit, frame, run).run();
}

}  // namespace vellum
