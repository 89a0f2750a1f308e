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

double TPXtext::pixelsHigh(const TPXdrawContext& context, const TPXp3& anchor) const {
    const TPXp3 forward = context.viewerUp.cross(context.viewerRight);
    const double depth = (anchor - context.viewerPosition).dot(forward);
    return depth > 0.0 ? m_size * context.pixelsPerUnit / depth : 0.0;
}

void TPXtext::drawSelf(TPXdrawContext& context) const {
    if (context.picking || !m_font || m_text.empty())
        return;
    const TPXp3 anchor = TPXtransformPoint(worldMatrix(), TPXp3());
    if (context.light && pixelsHigh(context, anchor) < lightMinimumPixels)
        return;
    // The picture's right and up at the anchor, one em long: the text lies in the plane of the
    // picture, read left to right, whichever way the camera looks.
    TPXmatrix facing = TPXmatrix::identity(4);
    const TPXp3 toward = context.viewerRight.cross(context.viewerUp);
    const TPXp3 axes[4] = {context.viewerRight * m_size, context.viewerUp * m_size, toward * m_size,
                           anchor};
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 3; ++row)
            facing(row, column) = axes[column][row];
    const TPXmatrix modelView = context.view * facing;

    const GLboolean lit = glIsEnabled(GL_LIGHTING);
    glDisable(GL_LIGHTING);
    glColor3d(m_colour.r, m_colour.g, m_colour.b);
    glPushMatrix();
    glLoadMatrixd(modelView.data());
    glTranslated(-m_em / 2.0, 0.0, 0.0);
    m_font->draw(context, m_text);
    glPopMatrix();
    if (lit)
        glEnable(GL_LIGHTING);
}

}  // namespace vellum
