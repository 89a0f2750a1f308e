#include "gui/EditingToolbar.h"

#include <wx/bmpbndl.h>

namespace vellum {
namespace {

constexpr int kIconSide = 24;

struct ModeTool {
    ToolbarTool tool;
    EditMode mode;
};
constexpr ModeTool kModeTools[] = {
    {ToolbarTool::Select, EditMode::Select},
    {ToolbarTool::ObjectMove, EditMode::Move},
    {ToolbarTool::ObjectRotate, EditMode::Rotate},
    {ToolbarTool::ObjectScale, EditMode::Scale},
    {ToolbarTool::VertexSphere, EditMode::InsertSphere},
    {ToolbarTool::VertexCone, EditMode::InsertCone},
    {ToolbarTool::VertexCylinder, EditMode::InsertCylinder},
    {ToolbarTool::VertexCube, EditMode::InsertCube},
    {ToolbarTool::VertexUser, EditMode::InsertUser},
    {ToolbarTool::Connection, EditMode::Connect},
};

struct ViewTool {
    ToolbarTool tool;
    TPXviewMode mode;
};
constexpr ViewTool kViewTools[] = {
    {ToolbarTool::ViewPerspective, TPXviewMode::Perspective},
    {ToolbarTool::ViewTop, TPXviewMode::Top},
    {ToolbarTool::ViewFront, TPXviewMode::Front},
    {ToolbarTool::ViewSide, TPXviewMode::Left},
    {ToolbarTool::ViewWalk, TPXviewMode::Walk},
    {ToolbarTool::ViewFly, TPXviewMode::Fly},
};

constexpr ToolbarTool kConstraintTools[] = {
    ToolbarTool::ConstrainPx, ToolbarTool::ConstrainPy, ToolbarTool::ConstrainPz,
    ToolbarTool::ConstrainOx, ToolbarTool::ConstrainOy, ToolbarTool::ConstrainOz,
};

// Whether a tool stays pressed (views, mouse tools, constraints) rather than acting once.
bool isToggle(ToolbarTool tool) {
    switch (tool) {
        case ToolbarTool::Delete:
        case ToolbarTool::Undo:
        case ToolbarTool::Redo:
        case ToolbarTool::Zoom:
            return false;
        default:
            return true;
    }
}

wxBitmapBundle bundleOf(const ToolIcon& icon) {
    const std::string svg(icon.svg);
    return wxBitmapBundle::FromSVG(svg.c_str(), wxSize(kIconSide, kIconSide));
}

void call(const std::function<void()>& action) {
    if (action)
        action();
}

}  // namespace

EditingToolbar::EditingToolbar(wxToolBar& bar, int firstId, Actions actions,
                               const std::string& zoomTip)
    : m_bar(bar), m_firstId(firstId), m_actions(std::move(actions)) {
    m_bar.SetToolBitmapSize(wxSize(kIconSide, kIconSide));
    for (const ToolIcon& icon : toolIcons()) {
        const wxBitmapBundle normal = bundleOf(icon);
        wxBitmapBundle disabled;
        if (!icon.disabledBitmap.empty())
            disabled = wxBitmapBundle::FromBitmap(
                normal.GetBitmap(wxSize(kIconSide, kIconSide)).ConvertToDisabled());
        const wxString tip = icon.tool == ToolbarTool::Zoom && !zoomTip.empty()
                                 ? wxString(zoomTip)
                                 : wxString(std::string(icon.tooltip));
        m_bar.AddTool(toolId(icon.tool), tip, normal, disabled,
                      isToggle(icon.tool) ? wxITEM_CHECK : wxITEM_NORMAL, tip);
    }
    m_bar.Realize();
    m_bar.ToggleTool(toolId(ToolbarTool::ViewPerspective), true);
    m_bar.ToggleTool(toolId(ToolbarTool::Select), true);
}

bool EditingToolbar::handle(int id) {
    if (!isTool(id))
        return false;
    use(static_cast<ToolbarTool>(id - m_firstId));
    return true;
}

void EditingToolbar::use(ToolbarTool tool) {
    for (const ModeTool& entry : kModeTools)
        if (entry.tool == tool) {
            showMode(entry.mode);
            if (m_actions.mode)
                m_actions.mode(entry.mode);
            return;
        }
    for (const ViewTool& entry : kViewTools)
        if (entry.tool == tool) {
            showView(entry.mode);
            if (m_actions.view)
                m_actions.view(entry.mode);
            return;
        }
    switch (tool) {
        case ToolbarTool::Delete:
            return call(m_actions.remove);
        case ToolbarTool::Undo:
            return call(m_actions.undo);
        case ToolbarTool::Redo:
            return call(m_actions.redo);
        case ToolbarTool::Zoom:
            return call(m_actions.zoom);
        default:  // a constraint tool
            if (m_actions.locks)
                m_actions.locks(locks());
    }
}

EditMode EditingToolbar::mode() const {
    for (const ModeTool& entry : kModeTools)
        if (m_bar.GetToolState(toolId(entry.tool)))
            return entry.mode;
    return EditMode::Select;
}

TPXviewMode EditingToolbar::view() const {
    for (const ViewTool& entry : kViewTools)
        if (m_bar.GetToolState(toolId(entry.tool)))
            return entry.mode;
    return TPXviewMode::Perspective;
}

AxisLocks EditingToolbar::locks() const {
    AxisLocks locks;
    for (int axis = 0; axis < 3; ++axis) {
        locks.translation[axis] = m_bar.GetToolState(toolId(kConstraintTools[axis]));
        locks.rotation[axis] = m_bar.GetToolState(toolId(kConstraintTools[3 + axis]));
    }
    return locks;
}

void EditingToolbar::showMode(EditMode mode) {
    // The mouse tools behave as one group of which exactly one is pressed.
    for (const ModeTool& entry : kModeTools)
        m_bar.ToggleTool(toolId(entry.tool), entry.mode == mode);
}

void EditingToolbar::showView(TPXviewMode view) {
    for (const ViewTool& entry : kViewTools)
        m_bar.ToggleTool(toolId(entry.tool), entry.mode == view);
}

void EditingToolbar::enableHistory(bool canUndo, bool canRedo) {
    m_bar.EnableTool(toolId(ToolbarTool::Undo), canUndo);
    m_bar.EnableTool(toolId(ToolbarTool::Redo), canRedo);
}

}  // namespace vellum
