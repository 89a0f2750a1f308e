// GraphEdgeObject: an edge of a graph shown as a scene node of kind 8, a line from its source
// object to its target object, bent aside when parallel edges join the same two vertices, with
// arrowheads that show its direction. Its own placement is the middle of the line, so that a
// label child sits there; the scene moves it when an end moves (followEnds).
#pragma once

#include <cstdint>

#include "tpx/TPXgeometry.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXnode.h"

namespace vellum {

class GraphEdgeObject : public TPXnode {
  public:
    // `source` and `target` are the vertex objects; they must outlive this object or be
    // replaced first (setEnds). `arrowhead` is the cone shared by every edge of a scene.
    GraphEdgeObject(const TPXnode* source, const TPXnode* target, TPXref<TPXgeometry> arrowhead);

    const TPXnode* source() const { return m_source; }
    const TPXnode* target() const { return m_target; }
    void setEnds(const TPXnode* source, const TPXnode* target);

    const TPXrgb& colour() const { return m_colour; }
    double opacity() const { return m_opacity; }
    void setColour(const TPXrgb& colour, double opacity);
    const TPXp3& bend() const { return m_bend; }
    void setBend(const TPXp3& bend);
    double width() const { return m_width; }
    void setWidth(double width) { m_width = width; }

    // A highlighted edge is drawn dashed; the 16-bit pattern turns left by one bit before each
    // use, so that the dashes run along the edge from frame to frame.
    bool highlighted() const { return m_highlighted; }
    void setHighlighted(bool on) { m_highlighted = on; }
    std::uint16_t stipplePattern() const { return m_pattern; }
    // The pattern for the next use: rotated left by one bit, the top bit moving to bit 0.
    std::uint16_t nextStipplePattern() const;

    // Moves this node to the point the line passes half way, after an end moved.
    void followEnds();
    // The point of the line at t in 0..1, in world space (the bend applies most at 0.5).
    TPXp3 pointAt(double t) const;

    void drawSelf(TPXdrawContext& context) const override;

  private:
    void drawLine(const TPXdrawContext& context) const;
    void drawArrowheads(TPXdrawContext& context) const;

    const TPXnode* m_source;
    const TPXnode* m_target;
    TPXref<TPXgeometry> m_arrowhead;
    TPXrgb m_colour{1, 0, 0};
    double m_opacity = 1.0;
    TPXp3 m_bend;
    double m_width = 2.0;
    bool m_highlighted = false;
    mutable std::uint16_t m_pattern = 0x0F0F;
};

}  // namespace vellum
