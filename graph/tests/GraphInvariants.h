// Consistency checks of a DirectedGraph that the tests run after every change: lists linked
// both ways and counted right, every edge in its source's outgoing and its target's incoming
// list, lingering self-loops only where a removed loop may linger, label index in step, serials
// growing along the vertex and edge lists.
#pragma once

#include <gtest/gtest.h>

#include "graph/DirectedGraph.h"

namespace vellum::test {

::testing::AssertionResult graphIsConsistent(const DirectedGraph& graph);

}  // namespace vellum::test
