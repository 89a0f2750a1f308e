// EditingToolbar: the editors' one toolbar of view, mouse, history, insertion and constraint
// tools, put into a frame's wxToolBar. It keeps the pressed state of its groups (one view, one
// mouse tool, any constraints) and hands each click to the editor as an action, so an editor
// with several canvases decides which one a tool acts on.
#pragma once

#include <wx/toolbar.h>

#include <functional>
#include <string>

#include "gui/CanvasNavigator.h"
#include "gui/EditingTool.h"
#include "gui/icons/ToolIcons.h"

namespace vellum {

class EditingToolbar {
  public:
    struct Actions {
        std::function<void(EditMode)> mode;
        std::function<void(TPXviewMode)> view;
        std::function<void(const AxisLocks&)> locks;
        std::function<void()> remove;
        std::function<void()> undo;
        std::function<void()> redo;
        std::function<void()> zoom;
    };

    // Adds every tool to `bar` in toolbar order with the ids firstId, firstId + 1, ... and
    // realizes it; `zoomTip` replaces the zoom tool's tooltip when it is not empty. The
    // perspective view and the select tool start pressed.
    EditingToolbar(wxToolBar& bar, int firstId, Actions actions, const std::string& zoomTip = {});

    int toolId(ToolbarTool tool) const { return m_firstId + static_cast<int>(tool); }
    bool isTool(int id) const {
        return id >= m_firstId && id < m_firstId + static_cast<int>(toolbarToolCount);
    }
    // What a click on the tool does, after the toolkit has toggled a toggle tool.
    void use(ToolbarTool tool);
    // use() for a command id; false when the id is no tool of this toolbar.
    bool handle(int id);

    EditMode mode() const;
    TPXviewMode view() const;
    AxisLocks locks() const;
    // Presses the tool of `mode` (`view`) alone in its group, without acting.
    void showMode(EditMode mode);
    void showView(TPXviewMode view);
    void enableHistory(bool canUndo, bool canRedo);

  private:
    wxToolBar& m_bar;
    int m_firstId;
    Actions m_actions;
};

}  // namespace vellum
