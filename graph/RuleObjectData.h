// The data that a vertex or edge of a rule carries beyond the graph model: the variable it
// declares, the forced-reference mark of a left-hand vertex and the left-hand vertex that a
// right-hand vertex refers to. It lives in the object's extension, which host graphs leave empty,
// and is made on the first setter call.
#pragma once

#include <memory>
#include <string>

#include "graph/DirectedGraphVertex.h"
#include "graph/ObjectExtension.h"

namespace vellum {

class RuleObjectData : public ObjectExtension {
  public:
    std::unique_ptr<ObjectExtension> clone() const override;

    std::string variable;  // empty when the object declares none
    bool forcedReference = false;
    // The left-hand vertex that a right-hand vertex stands for; null when none. Not owned.
    DirectedGraphVertex* reference = nullptr;
};

// The rule data of an object, or null when it has none (always null for host objects).
const RuleObjectData* ruleDataOf(const GraphObject& object);

// Empty when the object declares no variable.
const std::string& variableOf(const GraphObject& object);
void setVariable(GraphObject& object, std::string name);

bool isForcedReference(const GraphObject& object);
void setForcedReference(GraphObject& object, bool forced);

DirectedGraphVertex* referenceOf(const GraphObject& object);
void setReference(GraphObject& object, DirectedGraphVertex* leftVertex);

}  // namespace vellum
