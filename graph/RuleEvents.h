// The notifications that rule application sends while it works, and the callback that receives
// them (the interpreter's frame, the command-line tool, tests). The numbers are part of the
// interface between rule application and the interpreter, whose frame (koral/KoralFrame.h) passes
// them on to plug-ins under the same codes.
#pragma once

#include <functional>

namespace vellum {

class DirectedGraph;
class GraphMorphism;

// An occurrence was chosen and is about to be rewritten (host graph and occurrence given).
constexpr int kEventOccurrenceChosen = 2000;
// A rewriting step succeeded (host graph given, and the occurrence restricted to the pairs
// whose host objects the step kept, so that every host object in it is still valid).
constexpr int kEventApplied = 2001;
// The deletion phases of a step are done and the creation phases follow (nothing given).
constexpr int kEventIntermediate = 2002;

// May be empty. Called on the thread that applies the rule.
using RuleCallback =
    std::function<void(int event, DirectedGraph* host, const GraphMorphism* occurrence)>;

}  // namespace vellum
