#include "graph/VariableBinding.h"

#include <optional>

#include "graph/BooleanAttribute.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/RuleObjectData.h"
#include "graph/StringAttribute.h"

namespace vellum {
namespace {

std::optional<Value> valueOf(const Attribute& attribute) {
    switch (attribute.type()) {
        case AttributeType::Boolean:
            return Value::boolean(static_cast<const BooleanAttribute&>(attribute).value());
        case AttributeType::Integer:
            return Value::integer(static_cast<const IntegerAttribute&>(attribute).value());
        case AttributeType::Real:
            return Value::real(static_cast<const RealAttribute&>(attribute).value());
        case AttributeType::String:
            return quotedString(static_cast<const StringAttribute&>(attribute).value());
        case AttributeType::Vector:
            return std::nullopt;
    }
    return std::nullopt;
}

void bindObject(Environment& environment, const std::string& name, const GraphObject& host) {
    environment.bind(name, quotedString(host.label()));
    for (const Attribute& attribute : host.attributes()) {
        if (isInternalName(attribute.name()))
            continue;
        if (std::optional<Value> value = valueOf(attribute))
            environment.bind(name + "." + attribute.name(), std::move(*value));
    }
}

}  // namespace

std::vector<RuleVariable> declaredVariables(const DirectedGraph& left) {
    std::vector<RuleVariable> variables;
    for (const DirectedGraphVertex& vertex : left.vertices())
        if (!variableOf(vertex).empty())
            variables.push_back({variableOf(vertex), &vertex, nullptr});
    for (const DirectedGraphEdge& edge : left.edges())
        if (!variableOf(edge).empty())
            variables.push_back({variableOf(edge), nullptr, &edge});
    return variables;
}

Value quotedString(const std::string& text) {
    return Value::string("\"" + text + "\"");
}

Environment bindVariables(const std::vector<RuleVariable>& variables,
                          const GraphMorphism& occurrence) {
    Environment environment;
    for (const RuleVariable& variable : variables) {
        const GraphObject* image = nullptr;
        if (variable.vertex != nullptr)
            image = occurrence.imageOf(variable.vertex);
        else if (variable.edge != nullptr)
            image = occurrence.imageOf(variable.edge);
        if (image != nullptr)
            bindObject(environment, variable.name, *image);
    }
    return environment;
}

}  // namespace vellum
