// GraphEditorFrame: the graph editor, a frame in which one graph is edited directly in 3D. A
// canvas shows the document's scene; the toolbar chooses the view, the mouse tool and the axis
// locks; the menus load, save, lay out and photograph the graph and change what is selected.
// Event handlers only translate: the work is in the public commands, which the tests call the
// way the menus do, and every question to the user goes through EditorPrompts.
#pragma once

#include <wx/toolbar.h>

#include <memory>
#include <string>

#include "gui/CanvasCommands.h"
#include "gui/EditorFrame.h"
#include "gui/GraphPane.h"
#include "gui/edit/GraphDocument.h"
#include "gui/icons/ToolIcons.h"

namespace vellum {

class GraphEditorFrame : public EditorFrame {
  public:
    static constexpr const char* titlePrefix = "3D Graph Editor - ";
    static constexpr const char* graphFilter = "Graph file (*.dg)";
    // Import and export take all three; the extension of the name chosen decides.
    static constexpr const char* otherToolsFilter =
        "GraphML, GXL or DOT file (*.graphml;*.gxl;*.dot;*.gv)";
    static constexpr const char* renameQuestion =
        "The file holds what a graph file cannot hold:\n\n%s\n\nRename such labels, names and "
        "texts (the console lists each change) and go on?";
    static constexpr const char* modelFilter = "3D Model (*.3rd)";
    static constexpr const char* pictureFilter = canvasPictureFilter;

    // Menu commands; the context menu uses the same ones.
    enum Command {
        kNewGraph = wxID_HIGHEST + 1,
        kLoadGraph,
        kSaveGraph,
        kLayoutGraph,
        kScreenshot,
        kExit,
        kUndo,
        kRedo,
        kCopy,
        kDelete,
        kHideGround,
        kWireframeGround,
        kSolidGround,
        kTransparentGround,
        kRepresentation,
        kAttributes,
        kGround,
        kBackground,
        kVrInterface,
        kImportGraph,
        kExportGraph,
        kRecentFiles,  // the submenu; its files take the ids after it
        kFirstRecent,
        // The toolbar's tools follow, in toolbar order.
        kFirstTool = kFirstRecent + static_cast<int>(UserSettings::kRecentCount)
    };
    static int toolId(ToolbarTool tool) { return kFirstTool + static_cast<int>(tool); }

    // A new editor on an untitled graph, shown. Null prompts: the toolkit's boxes.
    explicit GraphEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts = {});
    ~GraphEditorFrame() override;

    GraphDocument& document() { return m_document; }
    TPXCanvas& canvas() { return m_pane->canvas(); }
    EditingTool& tool() { return m_pane->tool(); }
    static constexpr const char* settingsName = "graph editor";
    static constexpr const char* layoutChoice = "graph editor/layout";

    // Commands, as the menus run them. Each asks its questions through the prompts.
    void newGraph();
    // Loads `fileName` (asks for one when empty); a failure keeps the graph and the console
    // says why. False when nothing was loaded.
    bool loadGraph(const std::string& fileName = {});
    bool saveGraph(const std::string& fileName = {});
    // A graph of another tool into the editor, untitled (asks before a refusal that renaming
    // avoids); false when nothing was read.
    bool importGraph(const std::string& fileName = {});
    // The graph into a file of another tool; the editor keeps its file and state.
    bool exportGraph(const std::string& fileName = {});
    // A 3D model file shown as a vertex of the graph, at the origin, in view; false when the
    // file is not there.
    bool showModel(const std::string& fileName);
    // Shows `graph`'s elements (which it takes) as an untitled, unmodified graph.
    void adoptGraph(DirectedGraph& graph);
    void layoutGraph();
    bool screenshot(const std::string& fileName = {});
    void undo();
    void redo();
    void copySelected();
    void deleteSelected();
    void changeRepresentation();
    void editAttributes();
    void editGround();
    void chooseBackground();
    void setVrEnabled(bool enabled);
    // Shows the object context menu at window point `at` of the canvas.
    void showContextMenu(const wxPoint& at);

  private:
    void buildMenus();
    void buildToolBar();
    void bindEvents();
    bool modified() const override { return m_document.modified(); }
    void cancelTools() override { m_pane->tool().cancel(); }
    // The document changed: the canvas shows its scene again and the title, tools and menus
    // follow.
    void documentChanged();
    void sceneReplaced();
    // A graph read from `name` is shown, in view, and joins the recent files.
    void graphRead(const std::string& name);
    std::optional<std::string> chooseModel();

    void onCommand(wxCommandEvent& event);
    void onKey(wxKeyEvent& event);

    GraphDocument m_document;
    std::unique_ptr<GraphPane> m_pane;
};

}  // namespace vellum
