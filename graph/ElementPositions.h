// Where the images of an occurrence stand in the host graph: the 1-based positions of its vertices
// and edges in the graph's vertex and edge lists, the numbers by which `vellum-cli match` and the
// interpreter's trace name host elements. A snapshot: any change of the graph invalidates it.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/GraphMorphism.h"

namespace vellum {

class ElementPositions {
  public:
    // Numbers the vertices and edges of the graph as they stand now.
    explicit ElementPositions(const DirectedGraph& graph);

    // The positions of the occurrence's vertex (edge) images, in the order of its pairs. Every
    // image must be an element of the graph numbered.
    std::vector<std::size_t> vertexImages(const GraphMorphism& occurrence) const;
    std::vector<std::size_t> edgeImages(const GraphMorphism& occurrence) const;
    // The occurrence as `vellum-cli match` lists it: the vertex positions, " |", then the edge
    // positions, each after a blank ("1 2 | 3"; "|" alone for an empty one).
    std::string line(const GraphMorphism& occurrence) const;

  private:
    std::unordered_map<const GraphObject*, std::size_t> vertices_;
    std::unordered_map<const GraphObject*, std::size_t> edges_;
};

}  // namespace vellum
