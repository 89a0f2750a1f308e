// TPXrenderer: draws frames of a scene into whatever GL context is current, the same way for the
// canvas's window and for the offscreen context. One renderer belongs to one context: it sets
// the context up on its first frame and keeps that context's display lists and textures.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "gui/view/TPXcamera.h"
#include "tpx/TPXdraw.h"
#include "tpx/TPXdrawContext.h"
#include "tpx/TPXlists.h"
#include "tpx/TPXmaterial.h"

namespace vellum {

class TPXnode;

// How a scene looks apart from its objects.
struct TPXlook {
    TPXrgb background;  // black
    std::optional<TPXfog> fog;
    std::vector<TPXlight> lights{TPXlight::headlight()};
    TPXdrawStyle style = TPXdrawStyle::Solid;
};

class TPXrenderer {
  public:
    // Makes no GL call: the context need not be current yet.
    TPXrenderer();
    TPXrenderer(const TPXrenderer&) = delete;
    TPXrenderer& operator=(const TPXrenderer&) = delete;

    TPXlook& look() { return m_look; }
    const TPXlook& look() const { return m_look; }

    // With this renderer's context current: clears the picture (width x height pixels, the
    // viewport set to it), applies the camera with the aspect of that size, and draws the scene
    // whose top-level nodes are `scene` and its siblings (null draws nothing); then glFinish.
    // `light` draws the cheaper picture for a moving camera; still pictures never use it.
    void drawFrame(const TPXnode* scene, const TPXcamera& camera, int width, int height,
                   bool light = false);

    // With this renderer's context current: sets the context up the first time (depth test
    // GL_LESS, clear depth 1, back faces culled, normals normalised) and deletes the lists and
    // textures of resources gone since. drawFrame and picking call it.
    void prepare();

    // The drawing state of a frame through `camera` (its aspect as it is) in a viewport of
    // `height` pixels: this context's lists, the look's style, the camera's view, the viewer's
    // place and directions, pixels per unit and the current frame number.
    TPXdrawContext context(const TPXcamera& camera, int height) const;

    // This context's display lists and textures.
    const std::shared_ptr<TPXlistStore>& lists() const { return m_lists; }
    // Frames drawn so far.
    std::uint64_t frames() const { return m_frames; }

  private:
    TPXlook m_look;
    std::shared_ptr<TPXlistStore> m_lists;
    std::unique_ptr<TPXbatches> m_batches;  // kept from frame to frame
    bool m_setUp = false;
    std::uint64_t m_frames = 0;
};

}  // namespace vellum
