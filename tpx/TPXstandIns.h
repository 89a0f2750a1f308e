// TPXstandIns: the light picture's cheap versions of small objects, gathered over one frame and
// drawn together at its end: one point for an object under three pixels across, a diamond of
// eight triangles filling its box for one under twelve. On a software renderer each draw call
// costs about as much as a small sphere, so the stand-ins only pay when they share one draw.
#pragma once

#include <array>
#include <vector>

namespace vellum {

class TPXgeometry;

class TPXstandIns {
  public:
    static constexpr double pointPixels = 3.0;
    static constexpr double diamondPixels = 24.0;

    // Whether a geometry whose box spans `pixels` on screen (negative: not known) is drawn as a
    // stand-in.
    static bool wanted(double pixels) { return pixels >= 0.0 && pixels < diamondPixels; }

    // The eye-space transform (4 x 4, column by column) of the node whose stand-ins come next.
    void setTransform(const std::array<double, 16>& eye) { m_eye = eye; }
    // Adds the stand-in of `geometry` (its box spanning `pixels`) in its first material's
    // diffuse colour (white when it has none).
    void add(const TPXgeometry& geometry, double pixels);

    // Draws everything gathered, in eye space, and empties the batch. A context must be
    // current; leaves the model-view matrix the identity (unless there was nothing to draw) and
    // every other state as it was.
    void draw();

  private:
    void addPoint(const TPXgeometry& geometry, const float colour[3]);
    void addDiamond(const TPXgeometry& geometry, const float colour[3]);
    void push(std::vector<float>& to, double x, double y, double z, bool direction = false) const;

    std::array<double, 16> m_eye{};
    // Three floats per vertex: positions, colours and (for triangles) normals, in eye space.
    std::vector<float> m_points;
    std::vector<float> m_pointColours;
    std::vector<float> m_corners;  // of the diamonds
    std::vector<float> m_normals;
    std::vector<float> m_colours;
    std::vector<unsigned> m_indices;  // three corners a triangle
    std::size_t m_pointCount = 0;
    std::size_t m_cornerCount = 0;
};

}  // namespace vellum
