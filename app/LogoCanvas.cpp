#include "app/LogoCanvas.h"

#include "app/Resources.h"

#include <wx/dcclient.h>

namespace vellum {

LogoCanvas::LogoCanvas(wxWindow* parent)
    : wxWindow(parent, wxID_ANY), logo_(Resources::bitmap("IDB_LOGO")) {
    Bind(wxEVT_PAINT, &LogoCanvas::onPaint, this);
}

void LogoCanvas::paint(wxDC& dc) const {
    if (logo_.IsOk())
        dc.DrawBitmap(logo_, 0, 0, false);
}

void LogoCanvas::onPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    paint(dc);
}

}  // namespace vellum
