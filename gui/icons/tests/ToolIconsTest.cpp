#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "gui/icons/ToolIcons.h"

namespace vellum {
namespace {

using T = ToolbarTool;

struct ToolRow {
    ToolbarTool tool;
    std::string_view bitmap;
    std::string_view disabledBitmap;
    std::string_view tooltip;
};

// The toolbar as the user sees it, in order.
const ToolRow toolbar[] = {
    {T::ViewPerspective, "IDB_VIEW_PERSPECTIVE", "IDB_VIEW_DPERSPECTIVE", "Perspective view"},
    {T::ViewTop, "IDB_VIEW_TOP", "IDB_VIEW_DTOP", "Top elevation view"},
    {T::ViewFront, "IDB_VIEW_FRONT", "IDB_VIEW_DFRONT", "Front elevation view"},
    {T::ViewSide, "IDB_VIEW_SIDE", "IDB_VIEW_DSIDE", "Left elevation view"},
    {T::ViewWalk, "IDB_VIEW_WALK", "IDB_VIEW_DWALK", "Walk mode"},
    {T::ViewFly, "IDB_VIEW_FLY", "IDB_VIEW_DFLY", "Fly mode"},
    {T::Select, "IDB_SELECT", "IDB_DSELECT", "Select an object"},
    {T::ObjectMove, "IDB_OBJECT_MOVE", "IDB_OBJECT_DMOVE", "Translate an object"},
    {T::ObjectRotate, "IDB_OBJECT_ROTATE", "IDB_OBJECT_DROTATE", "Rotate an object"},
    {T::ObjectScale, "IDB_OBJECT_SCALE", "IDB_OBJECT_DSCALE", "Scale an object"},
    {T::Delete, "IDB_DELETE", "", "Delete selected object"},
    {T::Undo, "IDB_UNDO", "", "Undoes the last action"},
    {T::Redo, "IDB_REDO", "", "Redoes the last action"},
    {T::Zoom, "IDB_ZOOM", "", "Zoom out until the hole graph is visible."},
    {T::VertexSphere, "IDB_VERTEX_SPHERE", "",
     "Insert a new vertex with a sphere representation into the graph."},
    {T::VertexCone, "IDB_VERTEX_CONE", "",
     "Insert a new vertex with a cone representation into the graph."},
    {T::VertexCylinder, "IDB_VERTEX_CYLINDER", "",
     "Insert a new vertex with a cylinder representation into the graph."},
    {T::VertexCube, "IDB_VERTEX_CUBE", "",
     "Insert a new vertex with a cube representation into the graph."},
    {T::VertexUser, "IDB_VERTEX_USER", "",
     "Insert a new vertex with a user defined representation into the graph."},
    {T::Connection, "IDB_CONNECTION", "IDB_DCONNECTION", "Connect two vertices."},
    {T::ConstrainPx, "IDB_CONSTRAIN_PX", "IDB_CONSTRAIN_DPX",
     "Set's a constrain for x translation."},
    {T::ConstrainPy, "IDB_CONSTRAIN_PY", "IDB_CONSTRAIN_DPY",
     "Set's a constrain for y translation."},
    {T::ConstrainPz, "IDB_CONSTRAIN_PZ", "IDB_CONSTRAIN_DPZ",
     "Set's a constrain for z translation."},
    {T::ConstrainOx, "IDB_CONSTRAIN_OX", "IDB_CONSTRAIN_DOX", "Set's a constrain for x rotation."},
    {T::ConstrainOy, "IDB_CONSTRAIN_OY", "IDB_CONSTRAIN_DOY", "Set's a constrain for y rotation."},
    {T::ConstrainOz, "IDB_CONSTRAIN_OZ", "IDB_CONSTRAIN_DOZ", "Set's a constrain for z rotation."},
};

TEST(ToolIcons, ToolbarHasEveryToolInOrderWithItsNamesAndTooltip) {
    const auto& icons = toolIcons();
    ASSERT_EQ(icons.size(), std::size(toolbar));
    for (std::size_t i = 0; i < icons.size(); ++i) {
        const ToolRow& row = toolbar[i];
        SCOPED_TRACE(std::string(row.bitmap));
        EXPECT_EQ(icons[i].tool, row.tool);
        EXPECT_EQ(icons[i].bitmap, row.bitmap);
        EXPECT_EQ(icons[i].disabledBitmap, row.disabledBitmap);
        EXPECT_EQ(icons[i].tooltip, row.tooltip);
        EXPECT_EQ(&toolIcon(row.tool), &icons[i]);
    }
}

// What the toolkit's small SVG renderer draws reliably: plain shapes with colours written out.
const std::set<std::string> drawingElements = {"path",    "line",     "circle", "ellipse",
                                               "polygon", "polyline", "rect"};

// The first thing wrong with `svg` as a toolbar icon, or empty when it is fine: well-formed tags,
// one <svg> root on the 24x24 grid, only groups and drawing elements, at least one of them, no
// text between the tags and nothing the renderer would ignore or fetch.
std::string problemWith(const std::string& svg) {
    for (const char* banned : {"url(", "href", "<text", "<style", "<!"}) {
        if (svg.find(banned) != std::string::npos) {
            return std::string("uses ") + banned;
        }
    }
    std::vector<std::string> open;
    int drawings = 0;
    int roots = 0;
    std::size_t at = 0;
    while (true) {
        const std::size_t start = svg.find('<', at);
        const std::string between = svg.substr(at, start == std::string::npos ? start : start - at);
        if (between.find_first_not_of(" \t\r\n") != std::string::npos) {
            return "text outside tags: " + between;
        }
        if (start == std::string::npos) {
            break;
        }
        const std::size_t end = svg.find('>', start);
        if (end == std::string::npos) {
            return "unterminated tag";
        }
        const std::string tag = svg.substr(start + 1, end - start - 1);
        at = end + 1;
        if (tag.rfind("?xml", 0) == 0) {
            continue;
        }
        if (std::count(tag.begin(), tag.end(), '"') % 2 != 0) {
            return "unbalanced quotes in <" + tag + ">";
        }
        if (tag[0] == '/') {
            if (open.empty() || open.back() != tag.substr(1)) {
                return "unexpected </" + tag.substr(1) + ">";
            }
            open.pop_back();
            continue;
        }
        const bool selfClosing = tag.back() == '/';
        const std::string name = tag.substr(0, tag.find_first_of(" \t\r\n/"));
        if (open.empty()) {
            if (name != "svg" || ++roots > 1) {
                return "root is not one <svg>";
            }
            if (tag.find("viewBox=\"0 0 24 24\"") == std::string::npos) {
                return "no viewBox=\"0 0 24 24\"";
            }
        } else if (drawingElements.count(name) != 0) {
            ++drawings;
        } else if (name != "g") {
            return "element <" + name + ">";
        }
        if (!selfClosing) {
            open.push_back(name);
        }
    }
    if (!open.empty()) {
        return "<" + open.back() + "> not closed";
    }
    if (roots == 0 || drawings == 0) {
        return "draws nothing";
    }
    return {};
}

TEST(ToolIcons, EveryDrawingIsAPlainDistinctSvgOnTheIconGrid) {
    std::set<std::string_view> seen;
    for (const ToolIcon& icon : toolIcons()) {
        SCOPED_TRACE(icon.bitmap);
        EXPECT_EQ(problemWith(std::string(icon.svg)), "");
        EXPECT_TRUE(seen.insert(icon.svg).second) << "drawn like another tool";
    }
}

// The check above must be able to fail.
TEST(ToolIcons, CheckRejectsWhatTheRendererCannotDraw) {
    const std::string head = R"(<svg viewBox="0 0 24 24">)";
    const std::string dot = R"(<circle cx="12" cy="12" r="4"/>)";
    struct Row {
        std::string svg;
        std::string problem;
    };
    const Row rows[] = {
        {head + dot + "</svg>", ""},
        {head + "<g>" + dot + "</g></svg>", ""},
        {head + dot, "<svg> not closed"},
        {head + "<g>" + dot + "</svg>", "unexpected </svg>"},
        {head + "</svg>", "draws nothing"},
        {R"(<svg viewBox="0 0 16 16">)" + dot + "</svg>", "no viewBox=\"0 0 24 24\""},
        {"<g>" + dot + "</g>", "root is not one <svg>"},
        {head + dot + "</svg>" + head + dot + "</svg>", "root is not one <svg>"},
        {head + "<text>x</text></svg>", "uses <text"},
        {head + "<linearGradient/>" + dot + "</svg>", "element <linearGradient>"},
        {head + R"x(<rect fill="url(#a)"/></svg>)x", "uses url("},
        {head + R"(<image href="a.png"/></svg>)", "uses href"},
        {head + "x" + dot + "</svg>", "text outside tags: x"},
        {head + R"(<circle r="4/>)" + "</svg>", R"(unbalanced quotes in <circle r="4/>)"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(problemWith(row.svg), row.problem) << row.svg;
    }
}

}  // namespace
}  // namespace vellum
