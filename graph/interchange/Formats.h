// The readers and writers behind importGraph and exportGraph, one pair per format. A reader
// fills the ForeignGraph and returns false after failing it; a writer returns false with the
// reason, the element named, when the graph holds what the format cannot carry.
#pragma once

#include <ostream>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/interchange/ForeignGraph.h"

namespace vellum {

bool readGraphML(const std::string& fileName, ForeignGraph& graph);
bool writeGraphML(const DirectedGraph& graph, std::ostream& out, std::string& refusal);
bool readGxl(const std::string& fileName, ForeignGraph& graph);
bool writeGxl(const DirectedGraph& graph, std::ostream& out, std::string& refusal);
bool readDot(const std::string& fileName, ForeignGraph& graph);
bool writeDot(const DirectedGraph& graph, std::ostream& out, std::string& refusal);

// True for attributes that files leave out ("__link__" and the like).
bool isInternalAttribute(const Attribute& attribute);
// A vector's elements as GraphML and DOT write them: exact reals separated by blanks.
std::string vectorText(const std::vector<double>& elements);

}  // namespace vellum
