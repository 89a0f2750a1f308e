#include "gui/view/TPXpicker.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "tpx/TPXdraw.h"

namespace vellum {

namespace {

constexpr std::int32_t kDepthBound = 200000;

}  // namespace

std::vector<TPXhitRecord> TPXhitRecords(const std::uint32_t* buffer, std::size_t size, int hits) {
    std::vector<TPXhitRecord> records;
    std::size_t at = 0;
    for (int i = 0; (hits < 0 || i < hits) && at + 3 <= size; ++i) {
        const std::size_t count = buffer[at];
        if (count > size - at - 3)
            break;  // cut off at the end of the buffer
        TPXhitRecord record;
        record.minDepth = buffer[at + 1];
        record.maxDepth = buffer[at + 2];
        record.names.assign(buffer + at + 3, buffer + at + 3 + count);
        records.push_back(std::move(record));
        at += 3 + count;
    }
    return records;
}

std::optional<std::uint32_t> TPXpickWinner(const std::vector<TPXhitRecord>& records) {
    std::int32_t best = kDepthBound;
    std::optional<std::uint32_t> winner;
    for (const TPXhitRecord& record : records) {
        const auto depth = static_cast<std::int32_t>(record.minDepth);
        if (record.names.empty() || depth >= best)
            continue;
        best = depth;
        winner = record.names.front();
    }
    return winner;
}

std::optional<std::uint32_t> TPXpicker::pick(TPXrenderer& renderer, const TPXnode* scene,
                                             const TPXcamera& camera, int x, int y, bool cull) {
    renderer.prepare();
    glSelectBuffer(static_cast<GLsizei>(m_buffer.size()), m_buffer.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(noName);

    GLint viewport[4] = {0, 0, 1, 1};
    glGetIntegerv(GL_VIEWPORT, viewport);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluPickMatrix(x, viewport[3] - y, regionSize, regionSize, viewport);
    TPXcamera fitted = camera;
    fitted.setViewport(viewport[2], viewport[3]);
    fitted.applyForPicking();

    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    TPXdrawContext context = renderer.context(fitted, viewport[3]);
    context.picking = true;
    if (cull) {
        GLdouble columns[16];
        glGetDoublev(GL_PROJECTION_MATRIX, columns);
        TPXmatrix region(4, 4);
        for (int i = 0; i < 16; ++i)
            region(i % 4, i / 4) = columns[i];
        context.clip = region;
    }
    TPXdrawScene(scene, context);

    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    const GLint hits = glRenderMode(GL_RENDER);
    m_records = TPXhitRecords(m_buffer.data(), m_buffer.size(), hits);
    const std::optional<std::uint32_t> winner = TPXpickWinner(m_records);
    if (winner == noName)
        return std::nullopt;
    return winner;
}

}  // namespace vellum
