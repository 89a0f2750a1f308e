// Reading and writing a vertex's "position" attribute (a vector of 3 reals), the one attribute a
// layout algorithm writes. For layout plug-ins and the programs that show their results.
#pragma once

#include <array>
#include <optional>

#include "graph/DirectedGraphVertex.h"

namespace vellum {

using Position = std::array<double, 3>;

// The vertex's position when it has a "position" vector of exactly 3 reals; none otherwise.
std::optional<Position> vertexPosition(const DirectedGraphVertex& vertex);

// Gives the vertex that position: an existing "position" vector takes the new value in place
// (keeping its place among the attributes); an attribute of that name of another type is
// replaced; a missing one is added.
void setVertexPosition(DirectedGraphVertex& vertex, const Position& position);

}  // namespace vellum
