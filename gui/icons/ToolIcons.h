// The graph editor's toolbar: its tools in toolbar order, each with the name of its bitmap, the
// name of its disabled-state bitmap where it has one, its tooltip and its picture as SVG text on a
// 24x24 grid. No wxWidgets: the frame makes the bitmaps from the SVG text and derives the
// disabled look from the normal picture, so the disabled names are names only.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vellum {

// In toolbar order.
enum class ToolbarTool {
    ViewPerspective,
    ViewTop,
    ViewFront,
    ViewSide,
    ViewWalk,
    ViewFly,
    Select,
    ObjectMove,
    ObjectRotate,
    ObjectScale,
    Delete,
    Undo,
    Redo,
    Zoom,
    VertexSphere,
    VertexCone,
    VertexCylinder,
    VertexCube,
    VertexUser,
    Connection,
    ConstrainPx,
    ConstrainPy,
    ConstrainPz,
    ConstrainOx,
    ConstrainOy,
    ConstrainOz,
};

inline constexpr std::size_t toolbarToolCount = 26;

struct ToolIcon {
    ToolbarTool tool;
    std::string_view bitmap;          // e.g. "IDB_VIEW_PERSPECTIVE"
    std::string_view disabledBitmap;  // e.g. "IDB_VIEW_DPERSPECTIVE"; empty when there is none
    std::string_view tooltip;
    std::string_view svg = {};  // a complete SVG document
};

// Every tool in toolbar order: entry i is the tool whose enumerator has the value i. The texts
// live as long as the program.
const std::array<ToolIcon, toolbarToolCount>& toolIcons();

// The entry of `tool`.
const ToolIcon& toolIcon(ToolbarTool tool);

}  // namespace vellum
