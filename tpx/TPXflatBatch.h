// TPXflatBatch: unlit, coloured lines and triangles in world space, gathered while a scene is
// drawn and drawn together after its other objects: the edges of a graph and their arrowheads.
// On a software renderer every change of state between two small draws costs a draw of its
// own, so tens of thousands of edges drawn one by one would cost far more than their pixels.
// What is gathered is drawn in chunks, so that its memory stays bounded on any scene.
#pragma once

#include <GL/gl.h>

#include <array>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "tpx/TPXmaterial.h"
#include "tpx/TPXmatrix.h"
#include "tpx/TPXp3.h"

namespace vellum {

class TPXgeometry;

class TPXflatBatch {
  public:
    // Vertices gathered before a chunk is drawn.
    static constexpr std::size_t chunkVertices = 1 << 16;

    TPXflatBatch();
    ~TPXflatBatch();
    TPXflatBatch(const TPXflatBatch&) = delete;
    TPXflatBatch& operator=(const TPXflatBatch&) = delete;

    // The camera's world-to-eye matrix, loaded while the batch draws (the identity at first).
    void setView(const TPXmatrix& view);

    // A line through `count` points (a strip), `width` pixels wide.
    void addLine(const TPXp3* points, int count, const TPXrgb& colour, double opacity,
                 double width);
    // The polygons of `shape` (convex ones, as fans) taken to world space by `world` (4 x 4,
    // column by column), in one colour; its materials are not used.
    void addShape(const TPXgeometry& shape, const std::array<float, 16>& world,
                  const TPXrgb& colour, double opacity);

    // One triangle with corners in world space.
    void addTriangle(const TPXp3& a, const TPXp3& b, const TPXp3& c, const TPXrgb& colour,
                     double opacity);

    // Draws what is left; a context must be current. Leaves every state as it was. Keeps its
    // memory for the next frame, but not the shapes' triangles: a shape may not outlive it.
    void draw();

  private:
    struct Lines {
        float width;
        std::vector<float> positions;  // three floats a vertex
        std::vector<float> colours;    // four floats a vertex
    };
    struct Triangles {
        std::vector<float> positions;
        std::vector<float> colours;
    };

    Lines& linesOf(double width);
    const std::vector<float>& cornersOf(const TPXgeometry& shape);
    void drawChunk(GLenum mode, const std::vector<float>& positions,
                   const std::vector<float>& colours, float width);
    void flushWhenFull(std::size_t vertices);

    std::array<double, 16> m_view{};
    std::vector<Lines> m_lines;  // one per width, in the order first met
    Triangles m_triangles;
    std::size_t m_vertices = 0;  // gathered since the last chunk was drawn
    bool m_blends = false;       // something gathered is not opaque
    // Each shape's triangles, their corners in its own space, worked out once per chunk.
    std::unordered_map<const TPXgeometry*, std::vector<float>> m_shapes;
};

}  // namespace vellum
