#include "gui/view/ScenePainter.h"

#include <algorithm>

namespace vellum {

std::unique_ptr<ScenePainter> ScenePainter::create(const PictureOptions& options,
                                                   std::string& error) {
    const std::optional<TPXcamera> camera = TPXcamera::standard(options.camera);
    if (!camera) {
        error = "unknown camera '" + options.camera + "' (perspective, top, front or left)";
        return nullptr;
    }
    std::unique_ptr<TPXoffscreen> surface =
        TPXoffscreen::create(options.width, options.height, error);
    if (!surface)
        return nullptr;
    surface->release();
    return std::unique_ptr<ScenePainter>(new ScenePainter(std::move(surface), *camera, options));
}

ScenePainter::ScenePainter(std::unique_ptr<TPXoffscreen> surface, const TPXcamera& camera,
                           const PictureOptions& options)
    : m_surface(std::move(surface)),
      m_camera(camera),
      m_width(options.width),
      m_height(options.height) {
    m_renderer.look().background = options.background;
    m_camera.setViewport(m_width, m_height);
}

ScenePainter::~ScenePainter() = default;

std::optional<TPXimage> ScenePainter::draw(const TPXnode* scene, const TPXboundingBox& framed,
                                           std::string& error) {
    if (!m_surface->makeCurrent()) {
        error = "cannot make the OpenGL context current";
        return std::nullopt;
    }
    TPXcamera camera = m_camera;
    camera.fit(framed);
    m_renderer.drawFrame(scene, camera, m_width, m_height);
    TPXimage picture = m_surface->read();
    m_surface->release();
    return picture;
}

TPXboundingBox unionOf(const TPXboundingBox& a, const TPXboundingBox& b) {
    if (a.empty)
        return b;
    if (b.empty)
        return a;
    TPXboundingBox both = a;
    for (int c = TPXp3::X; c <= TPXp3::Z; ++c) {
        both.min[c] = std::min(a.min[c], b.min[c]);
        both.max[c] = std::max(a.max[c], b.max[c]);
    }
    return both;
}

}  // namespace vellum
