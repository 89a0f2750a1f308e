// GraphEdgeObject: an edge of a graph shown as a scene node of kind 8, a line from its source
// object to its target object, bent aside when parallel edges join the same two vertices, with
// arrowheads that show its direction. Its own placement is the middle of the line, so that a
// label child sits there. The line's shape is worked out when the ends or the bend change
// (followEnds), not while drawing: whoever moves an end object calls followEnds. The line is
// worked out in world space: the node's parent must not move it (the scene's edge group).
#pragma once

#include <array>
#include <cstdint>
#include <optional>

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

    // Takes the ends' places anew after an end moved: moves this node to the point the line
    // passes half way and places the arrowheads.
    void followEnds();
    // The point of the line at t in 0..1, in world space (the bend applies most at 0.5), as of
    // the last followEnds.
    TPXp3 pointAt(double t) const;

    void drawSelf(TPXdrawContext& context) const override;
    // The line and its arrowheads, so that drawing and picking skip edges out of view.
    std::optional<TPXboundingBox> drawnBounds() const override { return m_bounds; }

  private:
    // An arrowhead's transform in world space, column by column.
    struct Arrowhead {
        std::array<float, 16> matrix;
        bool middle;  // the extra head of a long edge, left out of the light picture
    };

    static constexpr int curveSteps = 12;  // segments of a bent edge or loop

    void placeArrowheads();
    bool straight() const;
    // The points of the line in world space; returns how many.
    int linePoints(std::array<TPXp3, curveSteps + 1>& points) const;
    // Whether some part of the edge may show through `worldToClip` (TPXdrawContext).
    bool mayShow(const std::array<double, 16>& worldToClip) const;
    // Hands the line and the heads to the scene's shared draw (context.flat).
    void gather(const TPXdrawContext& context) const;
    void drawLine() const;
    void drawArrowheads(TPXdrawContext& context) const;

    const TPXnode* m_source;
    const TPXnode* m_target;
    TPXref<TPXgeometry> m_arrowhead;
    TPXrgb m_colour{1, 0, 0};
    double m_opacity = 1.0;
    TPXp3 m_bend;
    // Of the last followEnds: the ends' centres in world space, the bend as a world-space
    // offset, the ends' rough radii, the heads and the box round everything drawn.
    TPXp3 m_from;
    TPXp3 m_to;
    TPXp3 m_offset;
    double m_sourceRadius = 0.0;
    double m_targetRadius = 0.0;
    std::array<Arrowhead, 2> m_heads{};
    int m_headCount = 0;
    TPXboundingBox m_bounds;
    double m_width = 2.0;
    bool m_highlighted = false;
    mutable std::uint16_t m_pattern = 0x0F0F;
};

}  // namespace vellum
