// How a graph element looks in its scene, read from its attributes: a vertex's representation,
// placement and colour, an edge's colour. Reading a vertex also creates the attributes a shown
// vertex always carries ("representation", "position", "orientation", "scale"); "color" is never
// added. Attributes of the wrong type or length read as their defaults, component by component.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/DirectedGraphEdge.h"
#include "graph/DirectedGraphVertex.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXp3.h"

namespace vellum {

namespace look {
inline constexpr const char* representation = "representation";
inline constexpr const char* position = "position";
inline constexpr const char* orientation = "orientation";
inline constexpr const char* scale = "scale";
inline constexpr const char* color = "color";
inline constexpr const char* link = "__link__";
inline constexpr const char* mark = "__mark__";
}  // namespace look

struct VertexLook {
    std::string representation = "sphere";
    TPXp3 position;
    TPXp3 orientation;  // degrees about x, y and z
    TPXp3 scale{1, 1, 1};
    TPXrgb colour{0, 0.5, 1};
    double opacity = 1.0;
};

struct EdgeLook {
    TPXrgb colour{1, 0, 0};
    double opacity = 1.0;
};

// Reads the vertex's look and adds the four attributes it lacks, with their defaults.
VertexLook readVertexLook(DirectedGraphVertex& vertex);
EdgeLook readEdgeLook(const DirectedGraphEdge& edge);

// Sets the integer "__link__" of `object` to `identity`, creating it if needed.
void setLink(GraphObject& object, int identity);

// Gives `vertex`, when it has no "position", place `index` of `count` round a circle in the
// x-y plane, wide enough that default shapes do not touch.
void placeOnCircle(DirectedGraphVertex& vertex, std::size_t index, std::size_t count);
// A graph that was never laid out would be one heap at the origin: when no vertex has a
// position, sets every vertex out on a circle in graph order. True when it did.
bool setOutUnplaced(DirectedGraph& graph);

// The place "position" gives, as readVertexLook() reads it; none without one.
std::optional<TPXp3> readPosition(const DirectedGraphVertex& vertex);
// Sets "position" (created if missing).
void writePosition(DirectedGraphVertex& vertex, const TPXp3& position);
// Writes a moved, turned or scaled object's placement back into "position", "orientation"
// and "scale" (created if missing).
void writePlacement(DirectedGraphVertex& vertex, const TPXp3& position, const TPXp3& orientation,
                    const TPXp3& scale);

}  // namespace vellum
