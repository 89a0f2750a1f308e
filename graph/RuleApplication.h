// Applying a rule to a host graph: choosing occurrences of the left-hand side that pass the
// dangling test and the application condition, and rewriting the host there, in one of three
// modes. The callback sees events 2000, 2002 and 2001 for each step (see RuleEvents.h).
#pragma once

#include "graph/DirectedGraphRule.h"
#include "graph/RuleEvents.h"

namespace vellum {

// The result codes (the interpreter turns them into its messages).
constexpr int kApplyApplied = 0;         // mode 2: once at least one occurrence existed
constexpr int kApplyNoGraph = 1;         // no host graph or no rule given
constexpr int kApplyNotReady = 2;        // the host's readiness query said no
constexpr int kApplyNoOccurrence = 3;    // modes 1 and 2
constexpr int kApplyNonePassed = 4;      // mode 0: no occurrence passed the tests (or none)
constexpr int kApplyStepFailed = 5;      // a rewriting step failed (see the console)
constexpr int kApplyUnknownMode = 6;     // nothing was changed
constexpr int kApplyWrongRuleClass = 7;  // the rule is no "DirectedGraphRule"

// What a result code means, in words, for a user.
const char* applyResultText(int result);

// The modes.
constexpr int kModeFirst = 0;        // the first occurrence in the defined order that passes
constexpr int kModeRuleMatch = 1;    // the one the rule's own match finds (the interpreter's)
constexpr int kModeAllDisjoint = 2;  // every one that shares nothing with one already rewritten

// Applies `rule` to `host` in `mode` and returns one of the codes above. A left-hand side
// without vertices is applied once, without occurrence and without tests, and sends only
// event 2001. A failed step leaves the changes made before it (in mode 2 also the steps
// applied before it).
int applyRule(DirectedGraph* host, const DirectedGraphRule* rule, int mode,
              const RuleCallback& callback = {});

}  // namespace vellum
