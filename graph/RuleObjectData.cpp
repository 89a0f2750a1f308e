#include "graph/RuleObjectData.h"

namespace vellum {
namespace {

RuleObjectData& dataFor(GraphObject& object) {
    auto* data = dynamic_cast<RuleObjectData*>(object.extension());
    if (data != nullptr)
        return *data;
    auto made = std::make_unique<RuleObjectData>();
    data = made.get();
    object.setExtension(std::move(made));
    return *data;
}

}  // namespace

std::unique_ptr<ObjectExtension> RuleObjectData::clone() const {
    return std::make_unique<RuleObjectData>(*this);
}

const RuleObjectData* ruleDataOf(const GraphObject& object) {
    return dynamic_cast<const RuleObjectData*>(object.extension());
}

const std::string& variableOf(const GraphObject& object) {
    static const std::string none;
    const RuleObjectData* data = ruleDataOf(object);
    return data != nullptr ? data->variable : none;
}

void setVariable(GraphObject& object, std::string name) {
    dataFor(object).variable = std::move(name);
}

bool isForcedReference(const GraphObject& object) {
    const RuleObjectData* data = ruleDataOf(object);
    return data != nullptr && data->forcedReference;
}

void setForcedReference(GraphObject& object, bool forced) {
    dataFor(object).forcedReference = forced;
}

DirectedGraphVertex* referenceOf(const GraphObject& object) {
    const RuleObjectData* data = ruleDataOf(object);
    return data != nullptr ? data->reference : nullptr;
}

void setReference(GraphObject& object, DirectedGraphVertex* leftVertex) {
    dataFor(object).reference = leftVertex;
}

}  // namespace vellum
