#include "tpx/TPXtext.h"

#include <GL/gl.h>

#include "tpx/TPXtransform.h"

namespace vellum {

TPXtext::TPXtext(std::string name, std::string text, TPXref<TPXfont> font, double size,
                 const TPXrgb& colour)
    : TPXnode(TPXkind::Text, std::move(name)),
      m_font(std::move(font)),
      m_size(size),
      m_colour(colour) {
    setText(std::move(text));
}

void TPXtext::setText(std::string text) {
    m_text = std::move(text);
    m_em = m_font ? m_font->width(m_text) : 0.0;
}

TPXp3 TPXtext::anchor() const {
    return worldPoint(TPXp3());
}

double TPXtext::pixelsHigh(const TPXdrawContext& context, const TPXp3& at) const {
    const TPXp3 forward = context.viewerUp.cross(context.viewerRight);
    const double depth = (at - context.viewerPosition).dot(forward);
    return depth > 0.0 ? m_size * context.pixelsPerUnit / depth : 0.0;
}

void TPXtext::drawSelf(TPXdrawContext& context) const {
    if (context.picking || !m_font || m_text.empty())
        return;
    const TPXp3 origin = anchor();
    if (context.light && pixelsHigh(context, origin) < lightMinimumPixels)
        return;
    // The picture's right and up at the anchor, one em long: the text lies in the plane of the
    // picture, read left to right, whichever way the camera looks.
    const TPXp3 right = context.viewerRight * m_size;
    const TPXp3 up = context.viewerUp * m_size;
    const TPXp3 start = origin - right * (m_em / 2.0);
    if (context.texts) {
        context.texts->add(*m_font, TPXtextRun{m_text, start, right, up, m_colour});
        return;
    }
    TPXmatrix facing = TPXmatrix::identity(4);
    const TPXp3 axes[4] = {right, up, context.viewerRight.cross(context.viewerUp) * m_size, start};
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 3; ++row)
            facing(row, column) = axes[column][row];
    glColor3d(m_colour.r, m_colour.g, m_colour.b);
    glPushMatrix();
    glLoadMatrixd((context.view * facing).data());
    m_font->draw(context, m_text);
    glPopMatrix();
}

void TPXtextBatch::add(const TPXfont& font, const TPXtextRun& run) {
    for (Group& group : m_groups)
        if (group.font == &font) {
            group.runs.push_back(run);
            return;
        }
    m_groups.push_back({&font, {run}});
}

void TPXtextBatch::draw(TPXdrawContext& context) {
    if (m_groups.empty())
        return;
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(context.view.data());
    for (const Group& group : m_groups)
        group.font->drawRuns(context, group.runs);
    m_groups.clear();
}

}  // namespace vellum
