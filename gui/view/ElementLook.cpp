#include "gui/view/ElementLook.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "graph/IntegerAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {

namespace {

const std::vector<double>* vectorOf(const GraphObject& object, const char* name) {
    const auto* attribute = dynamic_cast<const VectorAttribute*>(object.findAttribute(name));
    return attribute ? &attribute->value() : nullptr;
}

// Element i of `values`, or `fallback` when the vector is shorter.
double component(const std::vector<double>& values, std::size_t i, double fallback) {
    return i < values.size() ? values[i] : fallback;
}

TPXp3 pointOf(const std::vector<double>* values, const TPXp3& fallback) {
    if (!values)
        return fallback;
    return {component(*values, 0, fallback.x()), component(*values, 1, fallback.y()),
            component(*values, 2, fallback.z())};
}

double unit(double value) {
    return std::clamp(value, 0.0, 1.0);
}

// The colour and opacity of a "color" vector (red, green, blue and an optional opacity).
void readColour(const GraphObject& object, TPXrgb& colour, double& opacity) {
    const std::vector<double>* values = vectorOf(object, look::color);
    if (!values)
        return;
    colour = {unit(component(*values, 0, colour.r)), unit(component(*values, 1, colour.g)),
              unit(component(*values, 2, colour.b))};
    opacity = unit(component(*values, 3, opacity));
}

// Adds the vector attribute `name` with `value` unless the vertex has an attribute of that name.
void ensureVector(DirectedGraphVertex& vertex, const char* name, const TPXp3& value) {
    if (!vertex.findAttribute(name))
        vertex.addAttribute(std::make_unique<VectorAttribute>(
            name, std::vector<double>{value.x(), value.y(), value.z()}));
}

void setVector(DirectedGraphVertex& vertex, const char* name, const TPXp3& value) {
    vertex.setAttribute(std::make_unique<VectorAttribute>(
        name, std::vector<double>{value.x(), value.y(), value.z()}));
}

}  // namespace

VertexLook readVertexLook(DirectedGraphVertex& vertex) {
    VertexLook look;
    if (const auto* text =
            dynamic_cast<const StringAttribute*>(vertex.findAttribute(look::representation)))
        look.representation = text->value();
    else if (!vertex.findAttribute(look::representation))
        vertex.addAttribute(
            std::make_unique<StringAttribute>(look::representation, look.representation));
    look.position = pointOf(vectorOf(vertex, look::position), look.position);
    look.orientation = pointOf(vectorOf(vertex, look::orientation), look.orientation);
    look.scale = pointOf(vectorOf(vertex, look::scale), look.scale);
    readColour(vertex, look.colour, look.opacity);
    ensureVector(vertex, look::position, look.position);
    ensureVector(vertex, look::orientation, look.orientation);
    ensureVector(vertex, look::scale, look.scale);
    return look;
}

EdgeLook readEdgeLook(const DirectedGraphEdge& edge) {
    EdgeLook look;
    readColour(edge, look.colour, look.opacity);
    return look;
}

void setLink(GraphObject& object, int identity) {
    if (auto* link = dynamic_cast<IntegerAttribute*>(object.findAttribute(look::link))) {
        link->setValue(identity);
        return;
    }
    object.setAttribute(std::make_unique<IntegerAttribute>(look::link, identity));
}

void placeOnCircle(DirectedGraphVertex& vertex, std::size_t index, std::size_t count) {
    if (vertex.findAttribute(look::position))
        return;
    const double radius = count < 2 ? 0.0 : 0.6 * static_cast<double>(count) / 3.14159265359 + 0.6;
    const double a = 6.28318530718 * static_cast<double>(index) / static_cast<double>(count);
    vertex.setAttribute(std::make_unique<VectorAttribute>(
        look::position, std::vector<double>{radius * std::sin(a), radius * std::cos(a), 0}));
}

bool setOutUnplaced(DirectedGraph& graph) {
    for (const DirectedGraphVertex& vertex : graph.vertices())
        if (vertex.findAttribute(look::position))
            return false;
    std::size_t index = 0;
    for (DirectedGraphVertex& vertex : graph.vertices())
        placeOnCircle(vertex, index++, graph.vertexCount());
    return index > 0;
}

std::optional<TPXp3> readPosition(const DirectedGraphVertex& vertex) {
    if (!vertex.findAttribute(look::position))
        return std::nullopt;
    return pointOf(vectorOf(vertex, look::position), VertexLook().position);
}

void writePosition(DirectedGraphVertex& vertex, const TPXp3& position) {
    setVector(vertex, look::position, position);
}

void writePlacement(DirectedGraphVertex& vertex, const TPXp3& position, const TPXp3& orientation,
                    const TPXp3& scale) {
    setVector(vertex, look::position, position);
    setVector(vertex, look::orientation, orientation);
    setVector(vertex, look::scale, scale);
}

}  // namespace vellum
