// The main frame's client area: a window that shows the "IDB_LOGO" bitmap at its top-left
// corner whenever it is redrawn.
#pragma once

#include <wx/bitmap.h>
#include <wx/dc.h>
#include <wx/window.h>

namespace vellum {

class LogoCanvas : public wxWindow {
  public:
    explicit LogoCanvas(wxWindow* parent);

    // Draws the canvas's content on any device context; the paint handler and screenshots
    // share it.
    void paint(wxDC& dc) const;

  private:
    void onPaint(wxPaintEvent& event);

    wxBitmap logo_;
};

}  // namespace vellum
