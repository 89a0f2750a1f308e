// ScenePainter: still pictures of one size drawn one after another into one offscreen OpenGL
// context, each through the standard camera of the options placed so that a given box is
// whole in view: how `vellum-cli render` draws a graph, and how `run --frames` draws every step
// of a run through one framing. The context is current only during draw(), so that successive
// pictures may be drawn on different threads, one at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "gui/view/ScenePicture.h"
#include "gui/view/TPXcamera.h"
#include "gui/view/TPXoffscreen.h"
#include "gui/view/TPXrenderer.h"
#include "tpx/TPXgeometry.h"
#include "tpx/TPXimage.h"

namespace vellum {

class TPXnode;

class ScenePainter {
  public:
    // A painter for pictures of options.width x options.height through options.camera on
    // options.background. None, with the reason in `error`, when the camera name is unknown or
    // there is no usable OpenGL.
    static std::unique_ptr<ScenePainter> create(const PictureOptions& options, std::string& error);
    ~ScenePainter();
    ScenePainter(const ScenePainter&) = delete;
    ScenePainter& operator=(const ScenePainter&) = delete;

    // The picture of the scene whose top-level nodes are `scene` and its siblings, with the
    // camera placed to show `framed` (world space) whole; an empty box leaves the camera where
    // the standard camera stands. None, with the reason in `error`, when the context cannot be
    // made current.
    std::optional<TPXimage> draw(const TPXnode* scene, const TPXboundingBox& framed,
                                 std::string& error);

  private:
    ScenePainter(std::unique_ptr<TPXoffscreen> surface, const TPXcamera& camera,
                 const PictureOptions& options);

    std::unique_ptr<TPXoffscreen> m_surface;
    TPXrenderer m_renderer;  // of the surface's context
    TPXcamera m_camera;      // the standard camera, before any fit
    int m_width;
    int m_height;
};

// The smallest box holding both boxes (an empty one adds nothing).
TPXboundingBox unionOf(const TPXboundingBox& a, const TPXboundingBox& b);

}  // namespace vellum
