// CanvasHelpers: what a canvas draws besides its scene, as scene widgets (kind 7): the ground
// "__GRID__", a square grid of cells in a plane of constant height shown hidden, as wireframe,
// solid or half transparent; and the mark "__mark__", a small marker at the point of a picked
// object, drawn over everything so that it is never hidden inside the object it marks. Neither
// carries an identity, so picking passes over them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "gui/view/TPXcamera.h"
#include "gui/view/TPXrenderer.h"
#include "tpx/TPXnode.h"

namespace vellum {

enum class TPXgroundMode { Hidden, Wireframe, Solid, Transparent };

// The ground's settings: a square `size` units wide centred below the origin at height
// `level`, of `cells` x `cells` cells, in `colour`.
struct TPXgroundSettings {
    static constexpr double transparentOpacity = 0.5;
    double size = 20.0;
    int cells = 20;
    double level = -1.0;
    TPXrgb colour{0.45, 0.5, 0.45};

    bool operator==(const TPXgroundSettings& o) const {
        return size == o.size && cells == o.cells && level == o.level && colour == o.colour;
    }
};

class CanvasHelpers {
  public:
    static constexpr const char* groundName = "__GRID__";
    static constexpr const char* markName = "__mark__";

    // The ground in wireframe with the default settings; no mark.
    CanvasHelpers();
    ~CanvasHelpers();
    CanvasHelpers(const CanvasHelpers&) = delete;
    CanvasHelpers& operator=(const CanvasHelpers&) = delete;

    TPXgroundMode groundMode() const { return m_groundMode; }
    void setGroundMode(TPXgroundMode mode) { m_groundMode = mode; }
    const TPXgroundSettings& groundSettings() const { return m_settings; }
    // Sizes below 1e-3 and cell counts outside 1..1000 are brought within them.
    void setGroundSettings(const TPXgroundSettings& settings);
    const TPXnode& ground() const { return *m_ground; }

    // Shows the mark at `point` (world space) until hideMark.
    void showMark(const TPXp3& point);
    void hideMark() { m_markShown = false; }
    // Where the mark is shown, or none.
    std::optional<TPXp3> markPoint() const;
    const TPXnode& mark() const { return *m_mark; }

    // With the renderer's context current, right after it drew a frame through `camera` (its
    // aspect set for the viewport) `height` pixels high: draws the ground and the mark into
    // that frame.
    void draw(TPXrenderer& renderer, const TPXcamera& camera, int height);

    // Where the mark belongs on the object `identity` of the scene `first` (and its siblings):
    // where `ray` first meets its geometry, or the object's origin when the ray misses it or it
    // has no geometry; none when no node of the scene has that identity.
    static std::optional<TPXp3> markPointOn(const TPXnode* first, std::uint32_t identity,
                                            const TPXray& ray);

  private:
    void rebuildGround();

    TPXgroundMode m_groundMode = TPXgroundMode::Wireframe;
    TPXgroundSettings m_settings;
    std::unique_ptr<TPXnode> m_ground;
    TPXref<TPXgeometry> m_opaqueGround;  // the grid in the ground's colour, and half transparent
    TPXref<TPXgeometry> m_transparentGround;
    std::unique_ptr<TPXnode> m_mark;
    bool m_markShown = false;
};

}  // namespace vellum
