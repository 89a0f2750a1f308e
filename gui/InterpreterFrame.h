// InterpreterFrame: the Koral interpreter's window, in which a transformation unit runs on a graph
// shown in 3D. The unit runs on the interpreter's worker thread; the frame's listener keeps the
// scene up to date there under the canvas lock and paces the run, while this frame, on the GUI
// thread, paints, shows the step dialog and notices when the run has ended. Event handlers only
// translate: the work is in the public commands, which tests call the way the menus do, and every
// question to the user goes through EditorPrompts.
#pragma once

#include <wx/frame.h>
#include <wx/timer.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "graph/DirectedGraph.h"
#include "gui/CanvasCommands.h"
#include "gui/EditorPrompts.h"
#include "gui/InterpreterListener.h"
#include "gui/SourceDisplay.h"
#include "gui/TPXCanvas.h"
#include "gui/UserSettings.h"
#include "gui/view/GraphScene.h"
#include "gui/view/StepPictureWriter.h"
#include "koral/KoralCPU.h"
#include "koral/LayoutLibrary.h"

namespace vellum {

class InterpreterFrame : public wxFrame {
  public:
    static constexpr const char* title = "Koral Interpreter";
    static constexpr const char* idleStatus = "CPU idle";
    static constexpr const char* runningPrefix = "Running ";
    static constexpr const char* moduleFilter = "Koral module (*.mod)";
    static constexpr const char* graphFilter = "Graph file (*.dg)";
    static constexpr const char* pictureFilter = canvasPictureFilter;
    static constexpr const char* startFailure =
        "Could not start the execution!\nSee console output for more information!";
    // How often the GUI thread looks whether the run has ended, and updates the figures.
    static constexpr int watchMs = 20;
    static constexpr int figuresMs = 250;

    enum Command {
        kLoadGraph = wxID_HIGHEST + 1,
        kSaveGraph,
        kScreenshot,
        kRecord,
        kExit,
        kStart,
        kStep,
        kStop,
        kProperties,
        kChooseLayout,
        kConfigureLayout,
        kHideGround,
        kWireframeGround,
        kSolidGround,
        kTransparentGround,
        kBackground,
    };

    // A new interpreter frame with an empty graph, shown. Null prompts: the toolkit's boxes.
    explicit InterpreterFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts = {});
    // Stops a run that still goes and waits for its worker before anything it uses goes.
    ~InterpreterFrame() override;

    TPXCanvas& canvas() { return *m_canvas; }
    // The graph and its scene. While a run goes they are the run's: use them only while it
    // waits (a pause, the step dialog) and the scene only under sceneLock().
    DirectedGraph& graph() { return *m_graph; }
    GraphScene& scene() { return *m_scene; }
    std::mutex& sceneLock() { return m_sceneLock; }
    // True from a successful start until the frame has seen the run end (or stopped it).
    bool running() const { return m_runActive; }
    // The status line's first field ("CPU idle", "Running " + unit) and its second, the run's
    // figures.
    wxString status() const;
    wxString figures() const;

    // The pause after each notification in milliseconds (0 none, -1 the step dialog).
    void setSnooze(int snooze);
    int snooze() const { return m_listener.snooze(); }
    InterpreterOptions options() const { return m_listener.options(); }
    // The source display, once a run with debug on has asked for it (else null).
    SourceDisplay* sourceDisplay() const { return m_source; }
    // The chosen layout (null: none).
    const LayoutLibrary* layout() const { return m_layout.get(); }

    // Commands, as the menus run them. Each asks its questions through the prompts.
    // Loads `fileName` (asks for one when empty); a failure keeps the graph and the console says
    // why. Refused while a run goes. False when nothing was loaded.
    bool loadGraph(const std::string& fileName = {});
    // Writes the graph; refused while a run goes. False when nothing was written.
    bool saveGraph(const std::string& fileName = {});
    bool screenshot(const std::string& fileName = {});
    // Records the next run: its picture before the first step and after every step go into
    // `folder` (asked for when empty) as numbered PNG files. Refused while a run goes, and with
    // the reason in an "Alert" box for a folder that cannot take them.
    bool recordNextRun(const std::string& folder = {});
    bool recording() const { return m_pictures.has_value(); }
    // Asks for a module file and one of its units and starts it; false when nothing started.
    bool startUnit();
    // Starts the unit `unitName` of the module file `moduleFile` without asking; a module that
    // does not compile or has no such unit shows the "Alert" box. False when nothing started.
    bool startUnit(const std::string& moduleFile, const std::string& unitName);
    // Called on the GUI thread whenever a run has ended, with whether it ended normally.
    void setRunEnded(std::function<void(bool normally)> ended) { m_runEnded = std::move(ended); }
    // Starts the unit on the graph; on failure the "Alert" box says so and false comes back.
    bool start(const koralUnit& unit);
    // Raises the abort flag and ends any pause at once; the run ends at its next check.
    void stop();
    // Single-step mode from the next notification on.
    void step();
    // The CPU properties dialog; refused while a run goes. True when options were taken over.
    bool properties();
    // Takes `options` over; refused (false) while a run goes.
    bool setOptions(const InterpreterOptions& options);
    // The layout dialog; the chosen algorithm runs after every step. Refused while a run goes.
    bool chooseLayout();
    // Loads the layout `name` ("" for none); false, with the reason on the console, when it
    // will not load or a run goes.
    bool useLayout(const std::string& name);
    // The chosen layout's own settings dialog; refused while a run goes or with none chosen.
    bool configureLayout();
    // Where the frame's size and its layout choice are kept: it takes the size and the layout
    // kept there now, and keeps what the user chooses from then on; null: nothing is kept.
    void useSettings(UserSettings* settings);
    static constexpr const char* settingsName = "interpreter";
    void chooseBackground();

  private:
    class ModuleFolder;

    void buildMenus();
    void bindEvents();
    void enableCommands();
    void setStatus(const wxString& text);
    // A scene built anew from the graph, shown.
    void showScene();
    // GUI thread, posted by the worker: the step dialog, answered to the listener.
    void showStepDialog();
    // GUI thread, posted by the worker: the source display shows the running statement.
    void showSource(const std::string& file, long begin, long end);
    void showFigures();
    // GUI thread, posted by the worker: the picture of step `number` of a recorded run.
    void recordPicture(long number);
    // Loads the module `file` for a start (with its folder on the search path); null, after the
    // "Alert" box, when it does not compile.
    const koralModule* loadModule(const std::string& file);
    // The run has ended: join its worker and go back to idle.
    void finishRun();
    // Stops a run that goes and waits for it to end.
    void endRun();

    void onCommand(wxCommandEvent& event);
    void onWatch(wxTimerEvent& event);
    void onClose(wxCloseEvent& event);

    std::unique_ptr<EditorPrompts> m_prompts;
    UserSettings* m_settings = nullptr;
    std::unique_ptr<DirectedGraph> m_graph;
    std::unique_ptr<GraphScene> m_scene;  // shows m_graph; changed by the worker under m_sceneLock
    std::mutex m_sceneLock;
    std::string m_modelFolder;  // where the scene finds model files: the graph file's folder
    InterpreterListener m_listener;
    // Where the rules and modules of the last module chosen are found while it runs.
    std::unique_ptr<ModuleFolder> m_moduleFolder;
    std::unique_ptr<LayoutLibrary> m_layout;      // changed only while no run goes
    std::optional<StepPictureWriter> m_pictures;  // of the next or the running run
    long m_picturesWritten = 0;
    // The camera keeps the growing graph in view until the user moves it during the run.
    unsigned long m_cameraMovesAtStart = 0;
    SourceDisplay* m_source = nullptr;  // owned by the toolkit, as a child frame
    koralCPU m_cpu;                     // declared after what the run uses, so that it ends first
    TPXCanvas* m_canvas;                // child window, owned by the frame
    wxTimer m_watch;                    // runs while a run goes
    bool m_runActive = false;
    bool m_stopping = false;  // Stop was chosen and the run has not ended yet
    std::function<void(bool)> m_runEnded;
    std::chrono::steady_clock::time_point m_runStart;     // of the run that goes
    std::chrono::steady_clock::time_point m_lastFigures;  // when they were last shown
};

}  // namespace vellum
