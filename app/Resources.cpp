#include "app/Resources.h"

#include <wx/dcmemory.h>
#include <wx/graphics.h>

#include <cmath>
#include <memory>
#include <utility>

namespace vellum {
namespace {

// Vertex and edge colours follow the scene defaults (vertex 0, 0.5, 1; edge 1, 0, 0), so the
// logo shows a graph the way the editors do.
const wxColour kParchment(246, 240, 224);
const wxColour kInk(58, 40, 24);
const wxColour kBorder(176, 150, 108);
const wxColour kVertex(0, 128, 255);
const wxColour kVertexRim(0, 64, 150);
const wxColour kEdge(200, 24, 24);

constexpr double kVertexRadius = 11.0;
constexpr double kArrowLength = 10.0;
constexpr double kArrowHalfWidth = 5.0;

struct Point {
    double x;
    double y;
};

const Point kVertices[] = {{70, 196}, {150, 156}, {150, 232}, {234, 196}, {316, 160}};
const std::pair<int, int> kEdges[] = {{0, 1}, {0, 2}, {1, 2}, {1, 3}, {2, 3}, {3, 4}};

void drawEdge(wxGraphicsContext& gc, Point from, Point to) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::hypot(dx, dy);
    const double ux = dx / length;
    const double uy = dy / length;
    const Point start{from.x + ux * kVertexRadius, from.y + uy * kVertexRadius};
    const Point tip{to.x - ux * kVertexRadius, to.y - uy * kVertexRadius};
    const Point base{tip.x - ux * kArrowLength, tip.y - uy * kArrowLength};

    gc.SetPen(wxPen(kEdge, 2));
    gc.StrokeLine(start.x, start.y, base.x, base.y);

    wxGraphicsPath head = gc.CreatePath();
    head.MoveToPoint(tip.x, tip.y);
    head.AddLineToPoint(base.x - uy * kArrowHalfWidth, base.y + ux * kArrowHalfWidth);
    head.AddLineToPoint(base.x + uy * kArrowHalfWidth, base.y - ux * kArrowHalfWidth);
    head.CloseSubpath();
    gc.SetPen(*wxTRANSPARENT_PEN);
    gc.SetBrush(wxBrush(kEdge));
    gc.FillPath(head);
}

// A shaded disc, lit from the upper left, to hint at the spheres of the 3D view.
void drawVertex(wxGraphicsContext& gc, Point at) {
    const double r = kVertexRadius;
    gc.SetPen(wxPen(kVertexRim, 1));
    gc.SetBrush(gc.CreateRadialGradientBrush(at.x - r / 3, at.y - r / 3, at.x, at.y, r,
                                             wxColour(170, 215, 255), kVertex));
    gc.DrawEllipse(at.x - r, at.y - r, 2 * r, 2 * r);
}

void drawCentredText(wxGraphicsContext& gc, const wxString& text, const wxFont& font, double y) {
    gc.SetFont(font, kInk);
    double width = 0;
    double height = 0;
    gc.GetTextExtent(text, &width, &height);
    gc.DrawText(text, (Resources::kLogoWidth - width) / 2, y);
}

void drawLogoOn(wxGraphicsContext& gc) {
    gc.SetPen(wxPen(kBorder, 2));
    gc.SetBrush(wxBrush(kParchment));
    gc.DrawRectangle(1, 1, Resources::kLogoWidth - 2, Resources::kLogoHeight - 2);

    drawCentredText(gc, "Vellum", wxFont(wxFontInfo(40).Family(wxFONTFAMILY_ROMAN).Bold()), 18);
    drawCentredText(gc, "graph transformation in three dimensions",
                    wxFont(wxFontInfo(11).Family(wxFONTFAMILY_ROMAN).Italic()), 88);

    for (const auto& [from, to] : kEdges)
        drawEdge(gc, kVertices[from], kVertices[to]);
    for (const Point& vertex : kVertices)
        drawVertex(gc, vertex);
}

}  // namespace

wxIcon Resources::icon(std::string_view name) {
    wxIcon result;
    if (name == "mondrian")
        result.CopyFromBitmap(drawMondrian());
    return result;
}

wxBitmap Resources::bitmap(std::string_view name) {
    if (name == "IDB_LOGO")
        return drawLogo();
    return wxNullBitmap;
}

// Primary-coloured fields divided by heavy black lines.
wxBitmap Resources::drawMondrian() {
    wxBitmap picture(kIconSize, kIconSize, 24);
    wxMemoryDC dc(picture);
    dc.SetBackground(*wxWHITE_BRUSH);
    dc.Clear();
    dc.SetPen(*wxTRANSPARENT_PEN);
    const struct {
        wxColour colour;
        wxRect area;
    } fields[] = {
        {wxColour(214, 32, 32), wxRect(0, 0, 19, 19)},
        {wxColour(32, 64, 190), wxRect(22, 22, 10, 10)},
        {wxColour(250, 210, 30), wxRect(0, 27, 9, 5)},
        {wxColour(250, 210, 30), wxRect(22, 0, 10, 6)},
    };
    for (const auto& field : fields) {
        dc.SetBrush(wxBrush(field.colour));
        dc.DrawRectangle(field.area);
    }
    dc.SetBrush(*wxBLACK_BRUSH);
    const wxRect lines[] = {wxRect(19, 0, 3, 32), wxRect(0, 19, 32, 3), wxRect(9, 22, 2, 10),
                            wxRect(22, 6, 10, 2), wxRect(0, 25, 9, 2)};
    for (const wxRect& line : lines)
        dc.DrawRectangle(line);
    dc.SelectObject(wxNullBitmap);
    return picture;
}

wxBitmap Resources::drawLogo() {
    wxBitmap picture(kLogoWidth, kLogoHeight, 24);
    wxMemoryDC dc(picture);
    dc.SetBackground(wxBrush(kParchment));
    dc.Clear();
    std::unique_ptr<wxGraphicsContext> gc(wxGraphicsContext::Create(dc));
    if (gc)
        drawLogoOn(*gc);
    dc.SelectObject(wxNullBitmap);
    return picture;
}

}  // namespace vellum
