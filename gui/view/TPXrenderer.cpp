#include "gui/view/TPXrenderer.h"

#include <GL/gl.h>

namespace vellum {

TPXrenderer::TPXrenderer()
    : m_lists(std::make_shared<TPXlistStore>()), m_batches(std::make_unique<TPXbatches>()) {}

void TPXrenderer::prepare() {
    m_lists->collect();
    if (m_setUp)
        return;
    glClearDepth(1.0);
    glDepthFunc(GL_LESS);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    // Nodes may be scaled: keep the normals of unit length for lighting.
    glEnable(GL_NORMALIZE);
    m_setUp = true;
}

TPXdrawContext TPXrenderer::context(const TPXcamera& camera, int height) const {
    TPXdrawContext context;
    context.lists = m_lists;
    context.style = m_look.style;
    context.view = camera.viewMatrix();
    context.viewerPosition = camera.eye();
    context.viewerRight = camera.right();
    context.viewerUp = camera.up();
    context.pixelsPerUnit = camera.pixelsPerUnit(height);
    context.frame = m_frames;
    context.batches = m_batches.get();
    return context;
}

void TPXrenderer::drawFrame(const TPXnode* scene, const TPXcamera& camera, int width, int height,
                            bool light) {
    prepare();
    glViewport(0, 0, width, height);
    const TPXrgb& background = m_look.background;
    glClearColor(static_cast<GLfloat>(background.r), static_cast<GLfloat>(background.g),
                 static_cast<GLfloat>(background.b), 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (m_look.fog)
        m_look.fog->apply();
    else
        TPXdisableFog();

    TPXcamera fitted = camera;
    fitted.setViewport(width, height);
    fitted.apply(m_look.lights);
    ++m_frames;
    TPXdrawContext frame = context(fitted, height);
    frame.light = light;
    frame.clip = fitted.projectionMatrix();
    TPXdrawScene(scene, frame);
    glFinish();
}

}  // namespace vellum
