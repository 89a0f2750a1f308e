#include "tpx/TPXtexture.h"

#include <GL/gl.h>

namespace vellum {

TPXref<TPXtexture> TPXtexture::load(const std::string& fileName, std::string& error) {
    TPXimage image;
    if (!image.read(fileName)) {
        error = "cannot read the image '" + fileName + "' (a .ppm or .pgm file)";
        return {};
    }
    return TPXref<TPXtexture>(new TPXtexture(std::move(image), fileName));
}

TPXtexture::TPXtexture(TPXimage image, std::string fileName)
    : m_image(std::move(image)), m_fileName(std::move(fileName)) {}

TPXtexture::~TPXtexture() = default;

void TPXtexture::upload(TPXdrawContext& context) const {
    if (m_lists.get(*context.lists, 0) != 0)
        return;
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    const GLenum format = m_image.type() == TPXimage::Type::Grey ? GL_LUMINANCE : GL_RGB;
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), m_image.width(), m_image.height(), 0,
                 format, GL_UNSIGNED_BYTE, m_image.pixels().data());
    m_lists.set(context.lists, 0, name);
}

void TPXtexture::bind(TPXdrawContext& context) const {
    upload(context);
    glBindTexture(GL_TEXTURE_2D, m_lists.get(*context.lists, 0));
    glEnable(GL_TEXTURE_2D);
}

void TPXtexture::unbind() const {
    glDisable(GL_TEXTURE_2D);
}

}  // namespace vellum
