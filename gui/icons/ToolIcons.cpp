#include "gui/icons/ToolIcons.h"

#include <cctype>
#include <string>

#include "gui/icons/ToolIconFiles.h"

namespace vellum {
namespace {

using T = ToolbarTool;

// The drawing of a tool is the file named after its bitmap: IDB_VIEW_TOP -> view_top.svg.
std::string_view drawingOf(std::string_view bitmap) {
    constexpr std::string_view prefix = "IDB_";
    std::string name(bitmap.substr(prefix.size()));
    for (char& c : name) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return iconFile(name);
}

std::array<ToolIcon, toolbarToolCount> makeTable() {
    std::array<ToolIcon, toolbarToolCount> table = {{
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
        {T::ConstrainOx, "IDB_CONSTRAIN_OX", "IDB_CONSTRAIN_DOX",
         "Set's a constrain for x rotation."},
        {T::ConstrainOy, "IDB_CONSTRAIN_OY", "IDB_CONSTRAIN_DOY",
         "Set's a constrain for y rotation."},
        {T::ConstrainOz, "IDB_CONSTRAIN_OZ", "IDB_CONSTRAIN_DOZ",
         "Set's a constrain for z rotation."},
    }};
    for (ToolIcon& icon : table) {
        icon.svg = drawingOf(icon.bitmap);
    }
    return table;
}

}  // namespace

const std::array<ToolIcon, toolbarToolCount>& toolIcons() {
    static const std::array<ToolIcon, toolbarToolCount> table = makeTable();
    return table;
}

const ToolIcon& toolIcon(ToolbarTool tool) {
    return toolIcons()[static_cast<std::size_t>(tool)];
}

}  // namespace vellum
