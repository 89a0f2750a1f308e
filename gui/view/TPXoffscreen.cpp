#include "gui/view/TPXoffscreen.h"

#define GL_GLEXT_PROTOTYPES 1
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include <cstdio>
#include <cstring>

namespace vellum {

namespace {

const char* const kNoGl = "OpenGL is not available: ";

EGLDisplay openDisplay(std::string& error) {
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!extensions || !std::strstr(extensions, "EGL_MESA_platform_surfaceless")) {
        error = std::string(kNoGl) + "EGL has no surfaceless platform (Mesa's EGL is needed)";
        return EGL_NO_DISPLAY;
    }
    auto getDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    EGLDisplay display =
        getDisplay ? getDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr)
                   : EGL_NO_DISPLAY;
    EGLint major = 0;
    EGLint minor = 0;
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, &major, &minor)) {
        error = std::string(kNoGl) + "EGL cannot open Mesa's surfaceless display (no driver?)";
        return EGL_NO_DISPLAY;
    }
    return display;
}

// EGL has one display per platform in a process, and eglTerminate would end it under every
// context on it: it is opened once, on first use, and kept until the process ends. (Keeping the
// driver loaded also lets a leak checker name the driver's own allocations.)
EGLDisplay sharedDisplay(std::string& error) {
    struct Opened {
        EGLDisplay display;
        std::string error;
    };
    static const Opened opened = [] {
        Opened result{EGL_NO_DISPLAY, {}};
        result.display = openDisplay(result.error);
        return result;
    }();
    error = opened.error;
    return opened.display;
}

std::string eglErrorText() {
    char text[32];
    std::snprintf(text, sizeof text, "EGL error 0x%04x", static_cast<unsigned>(eglGetError()));
    return text;
}

EGLContext createContext(EGLDisplay display, std::string& error) {
    if (!eglBindAPI(EGL_OPENGL_API)) {
        error = std::string(kNoGl) + "EGL offers no desktop OpenGL";
        return EGL_NO_CONTEXT;
    }
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &found) || found < 1)
        config = EGL_NO_CONFIG_KHR;  // surfaceless contexts need none where EGL allows it
    // Display lists and the fixed-function pipeline live in the compatibility profile.
    const EGLint compatibility[] = {EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                    EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT, EGL_NONE};
    EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, compatibility);
    if (context == EGL_NO_CONTEXT)
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (context == EGL_NO_CONTEXT)
        error = std::string(kNoGl) + "no OpenGL context could be created (" + eglErrorText() + ")";
    return context;
}

}  // namespace

struct TPXoffscreen::Egl {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;

    ~Egl() {
        if (context != EGL_NO_CONTEXT) {
            if (eglGetCurrentContext() == context)
                eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
            eglDestroyContext(display, context);
        }
    }
};

std::unique_ptr<TPXoffscreen> TPXoffscreen::create(int width, int height, std::string& error) {
    if (width < 1 || height < 1) {
        error = "the picture size " + std::to_string(width) + "x" + std::to_string(height) +
                " has no pixels";
        return nullptr;
    }
    auto egl = std::make_unique<Egl>();
    egl->display = sharedDisplay(error);
    if (egl->display == EGL_NO_DISPLAY)
        return nullptr;
    egl->context = createContext(egl->display, error);
    if (egl->context == EGL_NO_CONTEXT)
        return nullptr;
    std::unique_ptr<TPXoffscreen> offscreen(new TPXoffscreen(std::move(egl), width, height));
    if (!eglMakeCurrent(offscreen->m_egl->display, EGL_NO_SURFACE, EGL_NO_SURFACE,
                        offscreen->m_egl->context)) {
        error = std::string(kNoGl) + "the context cannot be made current (" + eglErrorText() + ")";
        return nullptr;
    }
    if (!offscreen->createFramebuffer(error))
        return nullptr;
    glViewport(0, 0, width, height);
    return offscreen;
}

TPXoffscreen::TPXoffscreen(std::unique_ptr<Egl> egl, int width, int height)
    : m_egl(std::move(egl)), m_width(width), m_height(height) {}

// The framebuffer and renderbuffers go with the context.
TPXoffscreen::~TPXoffscreen() = default;

bool TPXoffscreen::createFramebuffer(std::string& error) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    if (m_width > largest || m_height > largest) {
        error = "the picture size " + std::to_string(m_width) + "x" + std::to_string(m_height) +
                " is larger than OpenGL allows here (" + std::to_string(largest) +
                " pixels a side)";
        return false;
    }
    glGenRenderbuffers(1, &m_colour);
    glBindRenderbuffer(GL_RENDERBUFFER, m_colour);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, m_width, m_height);
    glGenRenderbuffers(1, &m_depth);
    glBindRenderbuffer(GL_RENDERBUFFER, m_depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, m_width, m_height);
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_colour);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, m_depth);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        error = std::string(kNoGl) + "the driver refuses a framebuffer of " +
                std::to_string(m_width) + "x" + std::to_string(m_height) + " pixels";
        return false;
    }
    return true;
}

bool TPXoffscreen::makeCurrent() {
    if (!eglMakeCurrent(m_egl->display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_egl->context))
        return false;
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, m_width, m_height);
    return true;
}

void TPXoffscreen::release() {
    if (eglGetCurrentContext() == m_egl->context)
        eglMakeCurrent(m_egl->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

TPXimage TPXoffscreen::read() const {
    TPXimage image(m_width, m_height, TPXimage::Type::Colour);
    const std::size_t row = static_cast<std::size_t>(m_width) * 3;
    std::vector<std::uint8_t> bottomUp(row * static_cast<std::size_t>(m_height));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, m_width, m_height, GL_RGB, GL_UNSIGNED_BYTE, bottomUp.data());
    // OpenGL counts rows from the bottom.
    for (int y = 0; y < m_height; ++y)
        std::memcpy(image.pixels().data() + static_cast<std::size_t>(y) * row,
                    bottomUp.data() + static_cast<std::size_t>(m_height - 1 - y) * row, row);
    return image;
}

}  // namespace vellum
