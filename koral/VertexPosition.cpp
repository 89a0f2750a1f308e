#include "koral/VertexPosition.h"

#include <memory>

#include "graph/VectorAttribute.h"

namespace vellum {

namespace {
constexpr const char* kPosition = "position";
}

std::optional<Position> vertexPosition(const DirectedGraphVertex& vertex) {
    const Attribute* attribute = vertex.findAttribute(kPosition);
    if (attribute == nullptr || attribute->type() != AttributeType::Vector)
        return std::nullopt;
    const auto& value = static_cast<const VectorAttribute*>(attribute)->value();
    if (value.size() != 3)
        return std::nullopt;
    return Position{value[0], value[1], value[2]};
}

void setVertexPosition(DirectedGraphVertex& vertex, const Position& position) {
    std::vector<double> value(position.begin(), position.end());
    Attribute* attribute = vertex.findAttribute(kPosition);
    if (attribute != nullptr && attribute->type() == AttributeType::Vector) {
        static_cast<VectorAttribute*>(attribute)->setValue(std::move(value));
        return;
    }
    if (attribute != nullptr)
        vertex.removeAttribute(kPosition);
    vertex.addAttribute(std::make_unique<VectorAttribute>(kPosition, std::move(value)));
}

}  // namespace vellum
