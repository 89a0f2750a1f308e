#include "gui/TPXCanvas.h"

#include <GL/gl.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/image.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include "tpx/TPXdraw.h"

// Last: the X headers it brings define macros (None, Bool) that other headers use as names.
#include <GL/glx.h>

namespace vellum {

namespace {

const wxColour kNoticeShadow(0, 0, 0);
const wxColour kNoticeText(255, 255, 255);

// The picture in the back buffer, top row first. The context must be current.
TPXimage readBackBuffer(const wxSize& size) {
    TPXimage image(size.x, size.y, TPXimage::Type::Colour);
    if (size.x <= 0 || size.y <= 0)
        return image;
    std::vector<std::uint8_t> rows(image.pixels().size());
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size.x, size.y, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    const std::size_t stride = 3 * static_cast<std::size_t>(size.x);
    for (int y = 0; y < size.y; ++y)
        std::memcpy(image.pixels().data() + y * stride, rows.data() + (size.y - 1 - y) * stride,
                    stride);
    return image;
}

void drainGlErrors() {
#ifndef NDEBUG
    while (glGetError() != GL_NO_ERROR) {
    }
#endif
}

std::optional<TPXmove> moveOf(int key) {
    switch (key) {
        case WXK_UP:
        case 'W':
            return TPXmove::Forward;
        case WXK_DOWN:
        case 'S':
            return TPXmove::Back;
        case WXK_LEFT:
        case 'A':
            return TPXmove::Left;
        case WXK_RIGHT:
        case 'D':
            return TPXmove::Right;
        case WXK_PAGEUP:
        case 'E':
            return TPXmove::Up;
        case WXK_PAGEDOWN:
        case 'Q':
            return TPXmove::Down;
        default:
            return std::nullopt;
    }
}

wxGLAttributes defaultPixelFormat() {
    wxGLAttributes format;
    format.PlatformDefaults().Defaults().EndList();
    return format;
}

}  // namespace

wxGLAttributes TPXCanvasSetup::standardPixelFormat() {
    wxGLAttributes format;
    format.PlatformDefaults().RGBA().DoubleBuffer().BufferSize(16).Depth(16).EndList();
    return format;
}

TPXCanvas::TPXCanvas(wxWindow* parent, TPXCanvasSetup setup)
    : TPXCanvas(parent, setup, wxGLCanvas::IsDisplaySupported(setup.pixelFormat)) {}

TPXCanvas::TPXCanvas(wxWindow* parent, TPXCanvasSetup& setup, bool formatSupported)
    // Without the format the window still needs a visual: the platform's default one, with
    // which the canvas makes no context.
    : wxGLCanvas(parent, formatSupported ? setup.pixelFormat : defaultPixelFormat(), wxID_ANY,
                 wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE | wxWANTS_CHARS),
      m_report(std::move(setup.report)),
      m_still(this) {
    if (!m_report) {
        m_report = [parent](const wxString& message, const wxString& caption) {
            wxMessageBox(message, caption, wxOK | wxICON_ERROR, parent);
        };
    }
    if (formatSupported)
        createContext(setup);
    else
        m_report("ChoosePixelFormat failed.", "Error");
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Bind(wxEVT_PAINT, &TPXCanvas::onPaint, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        Refresh(false);
        event.Skip();
    });
    for (const auto type :
         {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP, wxEVT_RIGHT_DOWN,
          wxEVT_RIGHT_UP, wxEVT_MOTION, wxEVT_MOUSEWHEEL, wxEVT_LEFT_DCLICK})
        Bind(type, &TPXCanvas::onMouse, this);
    Bind(wxEVT_KEY_DOWN, &TPXCanvas::onKey, this);
    Bind(wxEVT_TIMER, &TPXCanvas::onStill, this, m_still.GetId());
}

TPXCanvas::~TPXCanvas() = default;

void TPXCanvas::createContext(const TPXCanvasSetup& setup) {
    const wxGLContextAttrs* attributes =
        setup.contextAttributes ? &*setup.contextAttributes : nullptr;
    auto context = std::make_unique<wxGLContext>(this, nullptr, attributes);
    if (!context->IsOK()) {
        m_report("SetPixelFormat failed.", "Error");
        return;
    }
    m_context = std::move(context);
}

std::unique_lock<std::mutex> TPXCanvas::lockScene() const {
    return m_lock ? std::unique_lock<std::mutex>(*m_lock) : std::unique_lock<std::mutex>();
}

void TPXCanvas::releaseCurrentContext() {
    if (glXGetCurrentContext() != nullptr)
        glXMakeCurrent(glXGetCurrentDisplay(), None, nullptr);
}

bool TPXCanvas::makeCurrent() {
    return m_context && IsShownOnScreen() && SetCurrent(*m_context);
}

wxSize TPXCanvas::pictureSize() const {
    return GetClientSize() * GetContentScaleFactor();
}

wxPoint TPXCanvas::toPixels(const wxPoint& point) const {
    return point * GetContentScaleFactor();
}

TPXboundingBox TPXCanvas::sceneBounds() const {
    return m_bounds ? m_bounds() : TPXsceneBounds(m_scene);
}

void TPXCanvas::setScene(const TPXnode* root) {
    m_scene = root;
    Refresh(false);
}

void TPXCanvas::requestRepaint() {
    if (m_repaintPosted.exchange(true))
        return;
    CallAfter([this] {
        m_repaintPosted = false;
        Refresh(false);
    });
}

void TPXCanvas::setViewMode(TPXviewMode mode) {
    m_navigator.setMode(mode);
    Refresh(false);
}

bool TPXCanvas::selectCamera(const std::string& name) {
    if (!m_navigator.selectCamera(name))
        return false;
    Refresh(false);
    return true;
}

bool TPXCanvas::zoomToFit() {
    {
        auto lock = lockScene();
        m_navigator.setSceneBounds(sceneBounds());
    }
    const wxSize size = pictureSize();
    if (!m_navigator.zoomToFit(size.x, size.y))
        return false;
    Refresh(false);
    return true;
}

void TPXCanvas::drawPicture(const wxSize& size, bool light) {
    TPXcamera camera = m_navigator.camera();
    camera.setViewport(size.x, size.y);
    m_renderer.drawFrame(m_scene, camera, size.x, size.y, light);
    m_helpers.draw(m_renderer, camera, size.y);
    drainGlErrors();
}

void TPXCanvas::paintNow() {
    auto lock = lockScene();
    if (!makeCurrent())
        return;
    const auto start = std::chrono::steady_clock::now();
    drawPicture(pictureSize(), m_moving);
    SwapBuffers();
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ++m_paintStatistics.paints;
    m_paintStatistics.seconds += seconds;
    m_paintStatistics.maxSeconds = std::max(m_paintStatistics.maxSeconds, seconds);
    if (!m_vrEnabled) {
        wxClientDC dc(this);
        drawNotice(dc);
    }
}

void TPXCanvas::drawNotice(wxDC& dc) const {
    dc.SetFont(GetFont());
    dc.SetBackgroundMode(wxBRUSHSTYLE_TRANSPARENT);
    dc.SetTextForeground(kNoticeShadow);
    dc.DrawText(vrNotice, 11, 11);
    dc.SetTextForeground(kNoticeText);
    dc.DrawText(vrNotice, 10, 10);
}

void TPXCanvas::addNotice(TPXimage& image) const {
    if (image.width() <= 0 || image.height() <= 0)
        return;
    wxImage picture(image.width(), image.height(), image.pixels().data(), true);
    wxBitmap bitmap(picture, 24);
    {
        wxMemoryDC dc(bitmap);
        drawNotice(dc);
    }
    const wxImage drawn = bitmap.ConvertToImage();
    std::memcpy(image.pixels().data(), drawn.GetData(), image.pixels().size());
}

TPXimage TPXCanvas::screenshot() {
    auto lock = lockScene();
    if (!makeCurrent())
        return {};
    const wxSize size = pictureSize();
    drawPicture(size, false);
    // Read before the swap: after it the back buffer's content is undefined, and the front
    // buffer reads black on virtual displays.
    TPXimage image = readBackBuffer(size);
    SwapBuffers();
    if (!m_vrEnabled) {
        wxClientDC dc(this);
        drawNotice(dc);
        addNotice(image);
    }
    return image;
}

std::optional<std::uint32_t> TPXCanvas::pick(int x, int y) {
    auto lock = lockScene();
    if (!makeCurrent())
        return std::nullopt;
    const wxSize size = pictureSize();
    const wxPoint at = toPixels(wxPoint(x, y));
    TPXcamera camera = m_navigator.camera();
    camera.setViewport(size.x, size.y);
    glViewport(0, 0, size.x, size.y);
    const auto picked = m_picker.pick(m_renderer, m_scene, camera, at.x, at.y);
    drainGlErrors();
    return picked;
}

bool TPXCanvas::markAt(std::uint32_t identity, int x, int y) {
    auto lock = lockScene();
    const wxSize size = pictureSize();
    const wxPoint at = toPixels(wxPoint(x, y));
    TPXcamera camera = m_navigator.camera();
    camera.setViewport(size.x, size.y);
    const auto point =
        CanvasHelpers::markPointOn(m_scene, identity, camera.ray(at.x, at.y, size.x, size.y));
    if (!point)
        return false;
    m_helpers.showMark(*point);
    Refresh(false);
    return true;
}

void TPXCanvas::clearMark() {
    m_helpers.hideMark();
    Refresh(false);
}

void TPXCanvas::setGroundMode(TPXgroundMode mode) {
    m_helpers.setGroundMode(mode);
    Refresh(false);
}

void TPXCanvas::setBackground(const TPXrgb& colour) {
    m_renderer.look().background = colour;
    Refresh(false);
}

void TPXCanvas::setVrEnabled(bool enabled) {
    m_vrEnabled = enabled;
    Refresh(false);
}

void TPXCanvas::cameraMoved() {
    ++m_cameraMoves;
    m_moving = true;
    m_still.StartOnce(stillAfterMs);
    Refresh(false);
    if (m_cameraListener)
        m_cameraListener();
}

void TPXCanvas::onPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    paintNow();
}

void TPXCanvas::onMouse(wxMouseEvent& event) {
    if (m_mouseHandler && m_mouseHandler->onCanvasMouse(*this, event))
        return;
    const wxSize size = pictureSize();
    const wxPoint at = toPixels(event.GetPosition());
    if (event.GetEventType() == wxEVT_MOUSEWHEEL) {
        const int delta = event.GetWheelDelta() > 0 ? event.GetWheelDelta() : 120;
        {
            auto lock = lockScene();
            m_navigator.setSceneBounds(sceneBounds());
        }
        m_navigator.zoom(static_cast<double>(event.GetWheelRotation()) / delta, at.x, at.y, size.x,
                         size.y);
        cameraMoved();
        return;
    }
    if (event.ButtonDown()) {
        SetFocus();
        m_dragFrom = at;
        // The scene's bounds are taken once per drag: the scene does not move under a drag.
        auto lock = lockScene();
        m_navigator.setSceneBounds(sceneBounds());
        return;
    }
    if (event.ButtonUp() && !event.LeftIsDown() && !event.MiddleIsDown() && !event.RightIsDown()) {
        m_dragFrom.reset();
        return;
    }
    if (!event.Dragging() || !m_dragFrom)
        return;
    const wxPoint delta = at - *m_dragFrom;
    m_dragFrom = at;
    const bool secondary = event.MiddleIsDown() || event.RightIsDown() || event.ShiftDown();
    if (m_navigator.drag(secondary ? TPXdrag::Secondary : TPXdrag::Primary, delta.x, delta.y,
                         size.y))
        cameraMoved();
}

void TPXCanvas::onKey(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    if (key == WXK_HOME) {
        zoomToFit();
        return;
    }
    const auto direction = moveOf(key);
    if (!direction) {
        event.Skip();
        return;
    }
    {
        auto lock = lockScene();
        m_navigator.setSceneBounds(sceneBounds());
    }
    if (m_navigator.move(*direction))
        cameraMoved();
    else
        event.Skip();
}

void TPXCanvas::onStill(wxTimerEvent&) {
    m_moving = false;
    Refresh(false);
}

}  // namespace vellum
