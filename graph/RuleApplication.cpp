#include "graph/RuleApplication.h"

#include <optional>
#include <unordered_set>

#include "graph/OccurrenceTests.h"
#include "graph/PreparedRule.h"
#include "graph/RewritingStep.h"

namespace vellum {

const char* applyResultText(int result) {
    switch (result) {
        case kApplyApplied:
            return "The rule was applied.";
        case kApplyNoGraph:
            return "There was no graph to apply the rule to.";
        case kApplyNotReady:
            return "The graph was not ready for the rule.";
        case kApplyNoOccurrence:
            return "The left-hand side does not occur in the graph (or no occurrence passed the "
                   "dangling test and the application condition).";
        case kApplyNonePassed:
            return "No occurrence of the left-hand side passed the dangling test and the "
                   "application condition.";
        case kApplyStepFailed:
            return "A rewriting step failed; the console says why.";
        case kApplyUnknownMode:
            return "The mode is unknown: nothing was changed.";
        case kApplyWrongRuleClass:
            return "The rule is of another class than \"DirectedGraphRule\".";
        default:
            return "Unknown result.";
    }
}
namespace {

class RuleApplication {
  public:
    RuleApplication(DirectedGraph& host, const DirectedGraphRule& rule,
                    const RuleCallback& callback)
        : host_(host), rule_(rule), callback_(callback) {}

    int applyWithoutOccurrence();
    int applyFirst();
    int applyRuleMatch();
    int applyAllDisjoint();

  private:
    // Events 2000, the step, 2001; false when the step failed.
    bool rewriteAt(const GraphMorphism& occurrence);
    void notify(int event, const GraphMorphism* occurrence) const {
        if (callback_)
            callback_(event, &host_, occurrence);
    }
    // Made when first needed: mode 1 leaves the tests to the rule's own match.
    OccurrenceTests& tests() {
        if (!tests_)
            tests_.emplace(rule_.prepared(), rule_.name(), host_);
        return *tests_;
    }

    DirectedGraph& host_;
    const DirectedGraphRule& rule_;
    const RuleCallback& callback_;
    std::optional<OccurrenceTests> tests_;
};

int RuleApplication::applyWithoutOccurrence() {
    RewritingStep step(rule_, host_, callback_);
    const GraphMorphism none;
    if (!step.run(none, false))
        return kApplyStepFailed;
    notify(kEventApplied, &none);
    return kApplyApplied;
}

bool RuleApplication::rewriteAt(const GraphMorphism& occurrence) {
    notify(kEventOccurrenceChosen, &occurrence);
    RewritingStep step(rule_, host_, callback_);
    if (!step.run(occurrence, true))
        return false;
    notify(kEventApplied, &step.survivors());
    return true;
}

int RuleApplication::applyFirst() {
    for (const GraphMorphism& occurrence : rule_.prepared().matcher().findAll(host_)) {
        if (tests().passes(occurrence))
            return rewriteAt(occurrence) ? kApplyApplied : kApplyStepFailed;
    }
    return kApplyNonePassed;
}

int RuleApplication::applyRuleMatch() {
    GraphMorphism occurrence;
    if (!rule_.match(host_, occurrence, 1))
        return kApplyNoOccurrence;
    return rewriteAt(occurrence) ? kApplyApplied : kApplyStepFailed;
}

int RuleApplication::applyAllDisjoint() {
    const std::vector<GraphMorphism> occurrences = rule_.prepared().matcher().findAll(host_);
    if (occurrences.empty())
        return kApplyNoOccurrence;
    // The host objects of the occurrences applied so far. A step deletes only objects of its
    // own occurrence, so an occurrence that shares none of them is still wholly in the graph;
    // all were collected at once, so equal addresses mean equal objects.
    std::unordered_set<const GraphObject*> used;
    auto overlaps = [&used](const GraphMorphism& occurrence) {
        for (const VertexPair& pair : occurrence.vertexPairs()) {
            if (used.count(pair.right) > 0)
                return true;
        }
        for (const EdgePair& pair : occurrence.edgePairs()) {
            if (used.count(pair.right) > 0)
                return true;
        }
        return false;
    };
    for (const GraphMorphism& occurrence : occurrences) {
        if (overlaps(occurrence) || !tests().passes(occurrence))
            continue;
        if (!rewriteAt(occurrence))
            return kApplyStepFailed;
        for (const VertexPair& pair : occurrence.vertexPairs())
            used.insert(pair.right);
        for (const EdgePair& pair : occurrence.edgePairs())
            used.insert(pair.right);
    }
    return kApplyApplied;
}

}  // namespace

int applyRule(DirectedGraph* host, const DirectedGraphRule* rule, int mode,
              const RuleCallback& callback) {
    if (host == nullptr || rule == nullptr)
        return kApplyNoGraph;
    static const std::string kRuleClass = "DirectedGraphRule";
    if (rule->className() != kRuleClass)
        return kApplyWrongRuleClass;
    if (!host->isReady())
        return kApplyNotReady;
    if (mode != kModeFirst && mode != kModeRuleMatch && mode != kModeAllDisjoint)
        return kApplyUnknownMode;
    RuleApplication application(*host, *rule, callback);
    if (rule->prepared().leftSideEmpty())
        return application.applyWithoutOccurrence();
    switch (mode) {
        case kModeFirst:
            return application.applyFirst();
        case kModeRuleMatch:
            return application.applyRuleMatch();
        default:
            return application.applyAllDisjoint();
    }
}

}  // namespace vellum
