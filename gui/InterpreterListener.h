// InterpreterListener: what the interpreter frame does on the interpreter's worker thread when a
// running unit reports a step. It brings the scene up to date under the canvas lock, marks the
// match about to be rewritten, asks for a repaint and paces the run (a pause, or the step
// dialog); it never touches a window itself, so that only the GUI thread does, through the hooks.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

#include "graph/DirectedGraph.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneChanges.h"
#include "koral/KoralFrame.h"

namespace vellum {

class InterpreterListener : public KoralFrame {
  public:
    // The snooze value of single-step mode: every notification waits for the step dialog.
    static constexpr int kStepMode = -1;

    enum class StepAnswer { Step, Go, Stop };

    // Called on the worker; each must only post to the GUI thread and return.
    struct Hooks {
        std::function<void()> repaint;
        // Show the step dialog and answer() with the user's choice.
        std::function<void()> askStep;
    };

    // Follows runs on `graph`, whose scene is drawn under `sceneLock`.
    InterpreterListener(DirectedGraph& graph, std::mutex& sceneLock, Hooks hooks);

    // GUI thread, while no run goes: the scene to keep up to date (null: none).
    void setScene(GraphScene* scene) { m_scene = scene; }
    // GUI thread, before a run starts: forget the last run's answers and recordings.
    void begin();
    // The pause after every notification in milliseconds, 0 none, kStepMode the step dialog;
    // may change at any time. `afterGo` is what Go in the step dialog goes on with.
    void setSnooze(int snooze) { m_snooze.store(snooze); }
    int snooze() const { return m_snooze.load(); }
    void setSnoozeAfterGo(int snooze) { m_snoozeAfterGo.store(snooze < 0 ? 0 : snooze); }
    // Whether each match is highlighted until it has been rewritten; set while no run goes.
    void setMorphism(bool on) { m_morphism = on; }
    // Ends a pause or a wait for the step dialog at once, and lets the run go on without any
    // until the next begin() (the frame's Stop, which also raises the interpreter's abort flag).
    void release();
    // The step dialog's answer: Step waits again at the next notification, Go leaves step mode,
    // Stop releases (the frame stops the interpreter).
    void answer(StepAnswer answer);
    // True when a step could not be followed and the scene must be built anew once the run ends.
    bool sceneStale() const { return m_stale.load(); }

    // Worker thread.
    void notify(const FrameEvent& event) override;

  private:
    void highlight(const GraphMorphism& occurrence);
    void applied(const RuleApplied& event);
    void pace();
    void clearHighlights();

    DirectedGraph& m_graph;
    std::mutex& m_sceneLock;
    Hooks m_hooks;
    GraphScene* m_scene = nullptr;
    bool m_morphism = true;
    std::atomic<int> m_snooze{0};
    std::atomic<int> m_snoozeAfterGo{0};
    std::atomic<bool> m_stale{false};
    // Worker only during a run.
    StepRecorder m_recorder;
    std::vector<GraphEdgeObject*> m_highlighted;  // objects of the scene, guarded by m_sceneLock

    std::mutex m_paceMutex;
    std::condition_variable m_wake;
    bool m_released = false;  // guarded by m_paceMutex
    bool m_answered = false;  // guarded by m_paceMutex
};

}  // namespace vellum
