// Consistency checks of a DirectedGraph that the tests run after every change: lists linked
// both ways and counted right, every edge in its source's outgoing and its target's incoming
// list, lingering self-loops only where a removed loop may linger, label index in step (the edge
// counts by label of each vertex too), serials growing along the vertex and edge lists. And the
// graph's file text, to compare graphs by.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "graph/DirectedGraph.h"

namespace vellum::test {

::testing::AssertionResult graphIsConsistent(const DirectedGraph& graph);

// Equal texts mean the same vertices, edges, labels and visible attributes in the same order.
std::string textOf(const DirectedGraph& graph);

}  // namespace vellum::test
