// The statement `apply MODE A (| B ... | < B ...)`: applies rules or units, once, as long as
// possible or N times, choosing among the alternatives at random ("|") or in written order
// ("<"). An alternative that fails is set aside until some alternative succeeds again.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "koral/KoralStatement.h"
#include "koral/SharedRule.h"

namespace vellum {

class koralApply : public koralStatement {
  public:
    // The numbers are those of the module language's documentation.
    enum class Mode { Once = 0, AsLongAsPossible = 1, Times = 2 };
    enum class Ordering { Random = 0, Sequence = 1 };

    struct Alternative {
        std::variant<const SharedRule*, const koralUnit*> target;  // neither is null
        koralSourcePosition position;  // its label is the name as written
        const std::string& name() const { return position.label; }
    };

    // `count` is 1 for Once and AsLongAsPossible, N (at least 2) for Times.
    koralApply(Mode mode, int count, koralSourcePosition position);

    Mode mode() const { return mode_; }
    Ordering ordering() const { return ordering_; }
    int count() const { return count_; }
    const std::vector<Alternative>& alternatives() const { return alternatives_; }

    void setOrdering(Ordering ordering) { ordering_ = ordering; }
    void addRule(const SharedRule& rule, koralSourcePosition position);
    void addUnit(const koralUnit& unit, koralSourcePosition position);

    // Throws koralRuntimeException (class "koralEvalApply") with the messages of the result
    // codes, "Reduced rule set without having applied a rule" (once) and "Finished loop I of
    // N\nBut no one of the rules can be applied anymore!!!" (N times); a unit alternative throws
    // what the unit throws.
    void evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                  KoralRun& run) const override;

  private:
    Mode mode_;
    Ordering ordering_ = Ordering::Random;
    int count_;
    std::vector<Alternative> alternatives_;
};

}  // namespace vellum
