#include "tpx/TPXmaterial.h"

#include <GL/gl.h>

#include "tpx/TPXtexture.h"

namespace vellum {

namespace {

void setColour(GLenum which, const TPXrgb& colour, double opacity) {
    const GLfloat values[4] = {static_cast<GLfloat>(colour.r), static_cast<GLfloat>(colour.g),
                               static_cast<GLfloat>(colour.b), static_cast<GLfloat>(opacity)};
    glMaterialfv(GL_FRONT_AND_BACK, which, values);
}

}  // namespace

TPXmaterial::~TPXmaterial() = default;

TPXref<TPXmaterial> TPXmaterial::plain(const TPXrgb& colour, double opacity) {
    TPXref<TPXmaterial> material(new TPXmaterial);
    material->m_kind = Kind::Plain;
    material->m_ambient = colour;
    material->m_diffuse = colour;
    material->m_opacity = opacity;
    return material;
}

TPXref<TPXmaterial> TPXmaterial::full(const TPXrgb& ambient, const TPXrgb& diffuse,
                                      const TPXrgb& specular, const TPXrgb& emission,
                                      double shininess, double opacity) {
    TPXref<TPXmaterial> material(new TPXmaterial);
    material->m_kind = Kind::Full;
    material->m_ambient = ambient;
    material->m_diffuse = diffuse;
    material->m_specular = specular;
    material->m_emission = emission;
    material->m_shininess = shininess;
    material->m_opacity = opacity;
    return material;
}

TPXref<TPXmaterial> TPXmaterial::textured(TPXref<TPXtexture> texture) {
    TPXref<TPXmaterial> material(new TPXmaterial);
    material->m_kind = Kind::Textured;
    material->m_ambient = material->m_diffuse = TPXrgb{1, 1, 1};
    material->m_texture = std::move(texture);
    return material;
}

void TPXmaterial::apply(TPXdrawContext& context) const {
    if (blends()) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    }
    setColour(GL_AMBIENT, m_ambient, m_opacity);
    setColour(GL_DIFFUSE, m_diffuse, m_opacity);
    setColour(GL_SPECULAR, m_specular, m_opacity);
    setColour(GL_EMISSION, m_emission, m_opacity);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, static_cast<GLfloat>(m_shininess));
    // Unlit drawing (labels, edges) goes by the current colour.
    glColor4d(m_diffuse.r, m_diffuse.g, m_diffuse.b, m_opacity);
    if (m_texture)
        m_texture->bind(context);
}

void TPXmaterial::unapply(TPXdrawContext&) const {
    if (m_texture)
        m_texture->unbind();
    glDisable(GL_BLEND);
}

}  // namespace vellum
