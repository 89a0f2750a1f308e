// TPXoffscreen: an OpenGL context that draws into memory instead of a window, for the
// command-line tool and the tests. It opens EGL on Mesa's surfaceless platform (no display
// server needed), creates a desktop OpenGL compatibility context (legacy GL with display lists)
// and a framebuffer object with colour and depth buffers of a fixed size. The only class of
// Vellum that knows EGL: everything else draws through whatever context is current.
#pragma once

#include <memory>
#include <string>

#include "tpx/TPXimage.h"

namespace vellum {

class TPXoffscreen {
  public:
    // A context drawing into width x height pixels, current on the calling thread on return;
    // null when there is no usable OpenGL (no EGL, no driver, no framebuffer objects, a size
    // below 1 or above what the driver allows), with one line saying why in `error`.
    static std::unique_ptr<TPXoffscreen> create(int width, int height, std::string& error);
    ~TPXoffscreen();
    TPXoffscreen(const TPXoffscreen&) = delete;
    TPXoffscreen& operator=(const TPXoffscreen&) = delete;

    int width() const { return m_width; }
    int height() const { return m_height; }
    // Makes the context current on the calling thread, its framebuffer bound and the viewport
    // covering it; false when EGL refuses.
    bool makeCurrent();
    // Leaves the calling thread without a current context.
    void release();
    // The picture drawn so far as a colour image, top row first. The context must be current.
    TPXimage read() const;

  private:
    struct Egl;
    explicit TPXoffscreen(std::unique_ptr<Egl> egl, int width, int height);
    bool createFramebuffer(std::string& error);

    std::unique_ptr<Egl> m_egl;
    int m_width;
    int m_height;
    unsigned m_framebuffer = 0;
    unsigned m_colour = 0;  // renderbuffers
    unsigned m_depth = 0;
};

}  // namespace vellum
