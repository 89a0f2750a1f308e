// TPXpolygon: a face of a geometry. It has a fixed number of corners, each naming a vertex of its
// geometry by index, a face normal and a material (shared, counted). Corner indices outside the
// polygon are reported as failed assertions naming "Src/TPXpolygon" and change nothing.
#pragma once

#include <vector>

#include "tpx/TPXmaterial.h"
#include "tpx/TPXp3.h"
#include "tpx/TPXshared.h"

namespace vellum {

class TPXpolygon {
  public:
    // A polygon of `nrVertex` corners, all naming vertex 0; a count below 1 is reported
    // ("nrVertex > 0") and gives a polygon without corners, which draws nothing.
    explicit TPXpolygon(int nrVertex);

    int size() const { return static_cast<int>(m_corners.size()); }
    // The vertex index of corner `index` (0 for a bad index, after the report).
    int corner(int index) const;
    void setCorner(int index, int vertex);
    const std::vector<int>& corners() const { return m_corners; }
    // Reverses the corner order, the first becoming the last: turns a clockwise face round.
    void reverse();

    const TPXp3& normal() const { return m_normal; }
    void setNormal(const TPXp3& normal) { m_normal = normal; }
    const TPXref<TPXmaterial>& material() const { return m_material; }
    void setMaterial(TPXref<TPXmaterial> material) { m_material = std::move(material); }

  private:
    bool validIndex(int index) const;

    std::vector<int> m_corners;  // its size is the corner count given at construction
    TPXp3 m_normal;
    TPXref<TPXmaterial> m_material;
};

}  // namespace vellum
