// RuleEditorFrame: the rule editor, a frame in which one graph rule is edited in 3D: the
// left-hand side and the right-hand side side by side, each in a canvas with the graph editor's
// tools (one toolbar, acting on the side last clicked), the interface shown as the same number
// and colour on both sides, deleted and created elements told by their colour, and a legend
// under them. The cameras of the two sides can move together. Event handlers only translate:
// the work is in the public commands, which the tests call the way the menus do, and every
// question to the user goes through EditorPrompts.
#pragma once

#include <wx/stattext.h>

#include <memory>
#include <string>

#include "gui/CanvasCommands.h"
#include "gui/EditorFrame.h"
#include "gui/GraphPane.h"
#include "gui/edit/RuleDocument.h"

namespace vellum {

class GraphEditorFrame;

class RuleEditorFrame : public EditorFrame {
  public:
    static constexpr const char* titlePrefix = "3D Rule Editor - ";
    static constexpr const char* ruleFilter = "Rule file (*.drl)";
    static constexpr const char* graphFilter = "Graph file (*.dg)";
    static constexpr const char* pngFilter = "PNG picture (*.png)";
    static constexpr const char* zoomTip = "Zoom out until the hole rule is visible.";
    // The size of an exported picture, as `vellum-cli picture` draws it by default.
    static constexpr int pictureWidth = 502;
    static constexpr int pictureHeight = 200;

    enum Command {
        kNewRule = wxID_HIGHEST + 1,
        kLoadRule,
        kSaveRule,
        kExportPicture,
        kTryOnGraph,
        kScreenshot,
        kExit,
        kUndo,
        kRedo,
        kDelete,
        kKeepOnRight,
        kAttributes,
        kProperties,
        kHideGround,
        kWireframeGround,
        kSolidGround,
        kTransparentGround,
        kBackground,
        kCoupleCameras,
        kRecentFiles,  // the submenu; its files take the ids after it
        kFirstRecent,
        // The toolbar's tools follow, in toolbar order.
        kFirstTool = kFirstRecent + static_cast<int>(UserSettings::kRecentCount)
    };
    static int toolId(ToolbarTool tool) { return kFirstTool + static_cast<int>(tool); }

    // A new editor on an untitled rule, shown. Null prompts: the toolkit's boxes.
    explicit RuleEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts = {});
    ~RuleEditorFrame() override;

    RuleDocument& document() { return m_document; }
    GraphPane& pane(RuleSide side) { return side == RuleSide::Left ? *m_left : *m_right; }
    RuleSide activeSide() const { return m_active; }
    // Makes `side` the one the toolbar acts on (what a click in its canvas does).
    void activate(RuleSide side);
    static constexpr const char* settingsName = "rule editor";

    // Commands, as the menus run them. Each asks its questions through the prompts.
    void newRule();
    // A failure keeps the rule and shows the reader's report in an "Alert".
    bool loadRule(const std::string& fileName = {});
    // Refuses, with the reader's message in an "Alert", a rule the reader would refuse.
    bool saveRule(const std::string& fileName = {});
    bool exportPicture(const std::string& fileName = {});
    // Lists the occurrences of the left-hand side in the graph file and, when the user says
    // OK, applies the rule to a copy of the graph shown in a new graph editor, and says what the
    // result code means. The new editor, or null.
    GraphEditorFrame* tryOnGraph(const std::string& fileName = {});
    bool screenshot(const std::string& fileName = {});
    void undo();
    void redo();
    void deleteSelected();
    void keepSelected();
    void editAttributes();
    void editProperties();
    bool coupled() const { return m_coupled; }
    void setCoupled(bool coupled);
    void showContextMenu(RuleSide side, const wxPoint& at);

  private:
    void buildMenus();
    void buildToolBar();
    void buildBody();
    void bindEvents();
    std::unique_ptr<GraphPane> makePane(wxWindow* parent, RuleSide side);
    GraphPane& activePane() { return pane(m_active); }
    GraphDocument& activeDocument() { return m_document.side(m_active); }
    // The partner of the active side's selection becomes the other side's selection, and both
    // are highlighted.
    void selectionFollows(RuleSide side);
    void cameraMoved(RuleSide side);
    void documentChanged();
    void scenesReplaced();
    bool modified() const override { return m_document.modified(); }
    void cancelTools() override;

    void onCommand(wxCommandEvent& event);
    void onKey(wxKeyEvent& event);

    RuleDocument m_document;
    std::unique_ptr<GraphPane> m_left;
    std::unique_ptr<GraphPane> m_right;
    wxStaticText* m_captions[2] = {nullptr, nullptr};
    RuleSide m_active = RuleSide::Left;
    bool m_coupled = true;
};

}  // namespace vellum
