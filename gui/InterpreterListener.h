// InterpreterListener: what the interpreter frame does on the interpreter's worker thread when a
// running unit reports a step. It brings the scene up to date under the canvas lock, marks the
// match about to be rewritten, runs the chosen layout, asks for a repaint and paces the run (a
// pause, in which moved vertices glide to their new places, or the step dialog); it never
// touches a window itself, so that only the GUI thread does, through the hooks.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneChanges.h"
#include "koral/KoralFrame.h"
#include "koral/LayoutLibrary.h"

namespace vellum {

// The options of a run, edited together in the CPU properties dialog.
struct InterpreterOptions {
    // The snooze value of single-step mode: every notification waits for the step dialog.
    static constexpr int kStepMode = -1;

    int snooze = 0;        // the pause after each notification in milliseconds, 0 none, kStepMode
    bool morphism = true;  // highlight each match until it has been rewritten
    bool intermediate = false;  // show the graph between a step's deletion and creation
    bool debug = false;         // show the module's source with the running statement

    bool operator==(const InterpreterOptions& o) const {
        return snooze == o.snooze && morphism == o.morphism && intermediate == o.intermediate &&
               debug == o.debug;
    }
};

class InterpreterListener : public KoralFrame {
  public:
    static constexpr int kStepMode = InterpreterOptions::kStepMode;
    // How often a gliding vertex moves during a pause.
    static constexpr int glideFrameMs = 30;
    // How often a run without pauses brings the scene up to date: more often than the canvas
    // can show is work nobody sees.
    static constexpr int showEveryMs = 20;

    enum class StepAnswer { Step, Go, Stop };

    // Called on the worker; each must only post to the GUI thread and return.
    struct Hooks {
        std::function<void()> repaint;
        // Show the step dialog and answer() with the user's choice.
        std::function<void()> askStep;
        // Show the module file `file` with the characters [begin, end) selected, or hide the
        // source display when `file` is empty.
        std::function<void(const std::string& file, long begin, long end)> showSource;
        // Write the picture of the step `number` and call pictureTaken() once it is written.
        std::function<void(long number)> takePicture;
    };

    // What the run has done so far, for the status line.
    struct Figures {
        long steps = 0;
        std::size_t vertices = 0;
        std::size_t edges = 0;
    };

    // Follows runs on `graph`, whose scene is drawn under `sceneLock`.
    InterpreterListener(DirectedGraph& graph, std::mutex& sceneLock, Hooks hooks);

    // GUI thread, while no run goes: the scene to keep up to date (null: none).
    void setScene(GraphScene* scene) { m_scene = scene; }
    // GUI thread, while no run goes: the layout run after every step (null: none).
    void setLayout(const LayoutLibrary* layout) { m_layout = layout; }
    // Whether each step's picture is taken; the GUI thread may turn it off during a run.
    void setRecording(bool on) { m_recording = on; }
    // GUI thread, before a run starts: forget the last run's answers, figures and recordings.
    void begin();

    // The options; the snooze may change at any time (Step), the rest while no run goes.
    void setOptions(const InterpreterOptions& options);
    InterpreterOptions options() const;
    void setSnooze(int snooze) { m_snooze.store(snooze); }
    int snooze() const { return m_snooze.load(); }
    // What Go in the step dialog goes on with.
    void setSnoozeAfterGo(int snooze) { m_snoozeAfterGo.store(snooze < 0 ? 0 : snooze); }

    // Ends a pause or a wait for the step dialog or a picture at once, and lets the run go on
    // without any until the next begin() (the frame's Stop, which also raises the interpreter's
    // abort flag).
    void release();
    // The step dialog's answer: Step waits again at the next notification, Go leaves step mode,
    // Stop releases (the frame stops the interpreter).
    void answer(StepAnswer answer);
    // Whether the run waits for the step dialog's answer now: a request to show the dialog that
    // arrives later (from a run stopped meanwhile, or already answered) is stale.
    bool waitsForStep();
    // GUI thread: the picture asked for with takePicture is written.
    void pictureTaken();
    // After a run: true when a step could not be followed (a plug-in's, a method call's, or one
    // that failed after its deletion was shown) and the scene must be built anew.
    bool sceneStale() const { return m_stale.load() || m_midStep || m_afterCall; }
    // GUI thread, after a run whose scene is not stale: shows the steps the worker left to the
    // scene (see m_recorder).
    void catchUp();
    Figures figures() const;

    // Worker thread.
    void notify(const FrameEvent& event) override;

  private:
    struct Glide {
        std::uint64_t serial;
        TPXp3 from;
        TPXp3 to;
    };

    void statement(const StatementStarted& event);
    void highlight(const OccurrenceChosen& event);
    void intermediate();
    void applied(const RuleApplied& event);
    // Runs the layout and has the scene follow it; called without the scene lock.
    void layOut();
    void takePicture();
    void pace();
    // A pause of `snooze` milliseconds, in which the vertices of m_glides move; false when the
    // run was released meanwhile.
    bool glide(std::unique_lock<std::mutex>& lock, int snooze);
    void countFigures();
    // After a method call: the scene is built anew from the graph.
    void catchUpWithCall();
    // Takes the scene lock for a step's change. With no pause the scene is brought up to date
    // at most every showEveryMs, and a scene the canvas is drawing is left alone (false): a run
    // without pauses never waits for a paint.
    bool lockForStep(std::unique_lock<std::mutex>& lock);
    // Under the scene lock: the scene shows every step recorded so far.
    void showRecorded();
    // A step left to the scene for later: its new vertices get the places the scene would have
    // given them now, among the neighbours as they are now, before later steps change them.
    void placeNewVertices();

    DirectedGraph& m_graph;
    std::mutex& m_sceneLock;
    Hooks m_hooks;
    GraphScene* m_scene = nullptr;
    const LayoutLibrary* m_layout = nullptr;
    std::atomic<bool> m_recording{false};
    bool m_morphism = true;
    bool m_intermediate = false;
    bool m_debug = false;
    std::atomic<int> m_snooze{0};
    std::atomic<int> m_snoozeAfterGo{0};
    std::atomic<bool> m_stale{false};

    // Worker only during a run. What the steps changed and the scene does not show yet: taken
    // at each step, unless lockForStep() left the scene alone, until the next step that has it.
    StepRecorder m_recorder;
    bool m_midStep = false;                // shown after the deletion, before the step's end
    bool m_afterCall = false;              // a method call may have changed the graph unannounced
    bool m_sourceShown = false;            // the source display was asked for and not hidden since
    bool m_layoutFailed = false;           // said once per run
    std::uint64_t m_lastVertexSerial = 0;  // of the graph before the step under way
    std::vector<Glide> m_glides;           // of the last step, for the pause that follows it
    long m_pictures = 0;
    std::chrono::steady_clock::time_point m_shown;  // when the scene last caught up

    std::atomic<long> m_steps{0};
    std::atomic<std::size_t> m_vertices{0};
    std::atomic<std::size_t> m_edges{0};

    std::mutex m_paceMutex;
    std::condition_variable m_wake;
    bool m_released = false;     // guarded by m_paceMutex
    bool m_answered = false;     // guarded by m_paceMutex
    bool m_askPending = false;   // guarded by m_paceMutex: asked, and neither answered nor released
    bool m_pictureDone = false;  // guarded by m_paceMutex
};

}  // namespace vellum
