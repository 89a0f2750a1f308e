#include "gui/InterpreterListener.h"

#include <chrono>

#include "graph/GraphMorphism.h"
#include "graph/RuleEvents.h"

namespace vellum {

InterpreterListener::InterpreterListener(DirectedGraph& graph, std::mutex& sceneLock, Hooks hooks)
    : m_graph(graph), m_sceneLock(sceneLock), m_hooks(std::move(hooks)) {}

void InterpreterListener::begin() {
    m_recorder = StepRecorder();
    m_highlighted.clear();
    m_stale = false;
    std::lock_guard<std::mutex> lock(m_paceMutex);
    m_released = false;
    m_answered = false;
}

void InterpreterListener::release() {
    {
        std::lock_guard<std::mutex> lock(m_paceMutex);
        m_released = true;
    }
    m_wake.notify_all();
}

void InterpreterListener::answer(StepAnswer answer) {
    if (answer == StepAnswer::Stop)
        return release();
    if (answer == StepAnswer::Go)
        m_snooze = m_snoozeAfterGo.load();
    {
        std::lock_guard<std::mutex> lock(m_paceMutex);
        m_answered = true;
    }
    m_wake.notify_all();
}

void InterpreterListener::notify(const FrameEvent& event) {
    if (const auto* chosen = std::get_if<OccurrenceChosen>(&event)) {
        m_recorder.onEvent(kEventOccurrenceChosen, &m_graph, &chosen->occurrence);
        if (!m_morphism)
            return;
        highlight(chosen->occurrence);
    } else if (const auto* step = std::get_if<RuleApplied>(&event)) {
        applied(*step);
    } else if (!std::holds_alternative<StatementStarted>(event)) {
        // Intermediate states are not shown: the scene follows whole steps.
        return;
    }
    pace();
}

void InterpreterListener::highlight(const GraphMorphism& occurrence) {
    {
        std::lock_guard<std::mutex> lock(m_sceneLock);
        if (m_scene == nullptr)
            return;
        for (const EdgePair& pair : occurrence.edgePairs()) {
            GraphEdgeObject* object = pair.right ? m_scene->objectOf(*pair.right) : nullptr;
            if (object == nullptr)
                continue;
            object->setHighlighted(true);
            m_highlighted.push_back(object);
        }
    }
    m_hooks.repaint();
}

void InterpreterListener::clearHighlights() {
    for (GraphEdgeObject* object : m_highlighted)
        object->setHighlighted(false);
    m_highlighted.clear();
}

void InterpreterListener::applied(const RuleApplied& event) {
    if (event.survivors == nullptr) {
        // Sent by a plug-in: nothing says what changed.
        m_stale = true;
        return;
    }
    m_recorder.onEvent(kEventApplied, &m_graph, event.survivors);
    {
        std::lock_guard<std::mutex> lock(m_sceneLock);
        clearHighlights();
        if (m_scene != nullptr)
            m_scene->update(m_recorder.take());
    }
    m_hooks.repaint();
}

void InterpreterListener::pace() {
    std::unique_lock<std::mutex> lock(m_paceMutex);
    const int snooze = m_snooze.load();
    if (m_released || snooze == 0)
        return;
    if (snooze > 0) {
        m_wake.wait_for(lock, std::chrono::milliseconds(snooze), [this] { return m_released; });
        return;
    }
    m_answered = false;
    lock.unlock();
    m_hooks.askStep();
    lock.lock();
    m_wake.wait(lock, [this] { return m_released || m_answered; });
}

}  // namespace vellum
