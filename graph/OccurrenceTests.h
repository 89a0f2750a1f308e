// The two tests an occurrence must pass before a rule is applied there: the dangling test
// (no host vertex is deleted while it has an edge that the occurrence does not account for)
// and the application condition, evaluated with the rule's variables bound to the matched
// host objects, which library functions reach through the rule's context (RuleContext). A
// condition that cannot be evaluated, or gives no boolean, fails; the first such problem is
// reported on the console, later ones of the same object are not.
#pragma once

#include <string>

#include "graph/PreparedRule.h"
#include "graph/RuleContext.h"

namespace vellum {

class OccurrenceTests {
  public:
    // For occurrences in `host`, which must outlive the tests.
    OccurrenceTests(const PreparedRule& rule, std::string ruleName, DirectedGraph& host);

    // Both tests, the dangling test first.
    bool passes(const GraphMorphism& occurrence);
    bool danglingFree(const GraphMorphism& occurrence) const;
    bool conditionHolds(const GraphMorphism& occurrence);

  private:
    bool fail(const std::string& problem);

    const PreparedRule& rule_;
    std::string ruleName_;
    RuleContext context_;
    bool reported_ = false;
};

}  // namespace vellum
