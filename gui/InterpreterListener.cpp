#include "gui/InterpreterListener.h"

#include <algorithm>
#include <chrono>

#include "base/Console.h"
#include "graph/GraphMorphism.h"
#include "graph/RuleEvents.h"
#include "gui/view/ElementLook.h"
#include "koral/KoralException.h"
#include "koral/KoralModule.h"
#include "koral/KoralSourcePosition.h"
#include "koral/SharedRule.h"

namespace vellum {
namespace {

std::uint64_t lastVertexSerial(DirectedGraph& graph) {
    auto vertices = graph.vertices();
    return vertices.empty() ? 0 : (--vertices.end())->serial();
}

}  // namespace

InterpreterListener::InterpreterListener(DirectedGraph& graph, std::mutex& sceneLock, Hooks hooks)
    : m_graph(graph), m_sceneLock(sceneLock), m_hooks(std::move(hooks)) {}

void InterpreterListener::begin() {
    m_recorder = StepRecorder();
    m_stale = false;
    m_midStep = false;
    m_afterCall = false;
    m_layoutFailed = false;
    m_glides.clear();
    m_pictures = 0;
    m_shown = {};
    m_steps = 0;
    countFigures();
    std::lock_guard<std::mutex> lock(m_paceMutex);
    m_released = false;
    m_answered = false;
    m_askPending = false;
    m_pictureDone = false;
}

void InterpreterListener::setOptions(const InterpreterOptions& options) {
    m_snooze = options.snooze;
    if (options.snooze >= 0)
        m_snoozeAfterGo = options.snooze;
    m_morphism = options.morphism;
    m_intermediate = options.intermediate;
    m_debug = options.debug;
}

InterpreterOptions InterpreterListener::options() const {
    InterpreterOptions options;
    options.snooze = m_snooze.load();
    options.morphism = m_morphism;
    options.intermediate = m_intermediate;
    options.debug = m_debug;
    return options;
}

InterpreterListener::Figures InterpreterListener::figures() const {
    return {m_steps.load(), m_vertices.load(), m_edges.load()};
}

void InterpreterListener::countFigures() {
    m_vertices = m_graph.vertexCount();
    m_edges = m_graph.edgeCount();
}

void InterpreterListener::release() {
    {
        std::lock_guard<std::mutex> lock(m_paceMutex);
        m_released = true;
        m_askPending = false;
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
        m_askPending = false;
    }
    m_wake.notify_all();
}

bool InterpreterListener::waitsForStep() {
    std::lock_guard<std::mutex> lock(m_paceMutex);
    return m_askPending;
}

void InterpreterListener::pictureTaken() {
    {
        std::lock_guard<std::mutex> lock(m_paceMutex);
        m_pictureDone = true;
    }
    m_wake.notify_all();
}

void InterpreterListener::notify(const FrameEvent& event) {
    if (m_afterCall)
        catchUpWithCall();
    if (const auto* started = std::get_if<StatementStarted>(&event)) {
        statement(*started);
    } else if (const auto* chosen = std::get_if<OccurrenceChosen>(&event)) {
        m_lastVertexSerial = lastVertexSerial(m_graph);
        m_recorder.chosen(m_graph, chosen->occurrence, chosen->rule.rule().prepared());
        if (!m_morphism)
            return;
        highlight(*chosen);
    } else if (std::holds_alternative<StepIntermediate>(event)) {
        if (!m_intermediate)
            return;
        intermediate();
    } else if (const auto* step = std::get_if<RuleApplied>(&event)) {
        applied(*step);
        if (m_recording)
            takePicture();
    } else {
        return;  // a plug-in's own code: nothing to show
    }
    pace();
}

void InterpreterListener::catchUpWithCall() {
    m_afterCall = false;
    countFigures();
    // The call may have deleted elements that steps left to the scene: the build shows them all.
    m_recorder = StepRecorder();
    {
        std::lock_guard<std::mutex> lock(m_sceneLock);
        if (m_scene == nullptr)
            return;
        m_scene->clearHighlights();
        m_scene->build(m_graph);
    }
    m_hooks.repaint();
}

void InterpreterListener::statement(const StatementStarted& event) {
    m_afterCall = event.position.code == koralSourcePosition::kCall;
    if (!m_debug) {
        if (m_sourceShown)
            m_hooks.showSource({}, 0, 0);
        m_sourceShown = false;
        return;
    }
    const koralSourcePosition& at = event.position;
    if (at.module == nullptr)
        return;
    m_hooks.showSource(at.module->file(), at.begin, at.end);
    m_sourceShown = true;
}

bool InterpreterListener::lockForStep(std::unique_lock<std::mutex>& lock) {
    // A pause, a recording or a layout shows every step, so they wait for the scene.
    if (m_snooze.load() != 0 || m_recording.load() || m_layout != nullptr) {
        lock.lock();
        return true;
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - m_shown < std::chrono::milliseconds(showEveryMs) || !lock.try_lock())
        return false;
    m_shown = now;
    return true;
}

void InterpreterListener::showRecorded() {
    m_scene->clearHighlights();
    m_scene->update(m_recorder.take());
}

void InterpreterListener::placeNewVertices() {
    std::vector<DirectedGraphVertex*> created;
    auto vertices = m_graph.vertices();
    for (auto at = vertices.end(); at != vertices.begin();) {
        --at;
        if (at->serial() <= m_lastVertexSerial)
            break;
        if (at->inGraph() && !at->findAttribute(look::position))
            created.push_back(&*at);
    }
    std::reverse(created.begin(), created.end());
    // The scene shows every vertex from before the step, where its "position" says.
    placeAmongNeighbours(created, [this](const DirectedGraphVertex& vertex) {
        return vertex.serial() <= m_lastVertexSerial ? readPosition(vertex) : std::nullopt;
    });
}

void InterpreterListener::catchUp() {
    std::lock_guard<std::mutex> lock(m_sceneLock);
    if (m_scene != nullptr)
        showRecorded();
}

void InterpreterListener::highlight(const OccurrenceChosen& event) {
    {
        std::unique_lock<std::mutex> lock(m_sceneLock, std::defer_lock);
        // A match the scene cannot show at once is not shown: the step follows without a pause.
        if (!lockForStep(lock) || m_scene == nullptr)
            return;
        showRecorded();
        for (const VertexPair& pair : event.occurrence.vertexPairs())
            if (pair.right)
                m_scene->highlight(*pair.right);
        for (const EdgePair& pair : event.occurrence.edgePairs())
            if (pair.right)
                m_scene->highlight(*pair.right);
    }
    m_hooks.repaint();
}

void InterpreterListener::intermediate() {
    m_recorder.deleted();
    m_midStep = true;
    {
        std::unique_lock<std::mutex> lock(m_sceneLock, std::defer_lock);
        if (!lockForStep(lock) || m_scene == nullptr)
            return;
        // The highlighted objects of deleted elements go now.
        showRecorded();
    }
    m_hooks.repaint();
}

void InterpreterListener::applied(const RuleApplied& event) {
    ++m_steps;
    countFigures();
    if (event.survivors == nullptr) {
        // Sent by a plug-in: nothing says what changed, or which recorded elements are gone.
        m_stale = true;
        m_recorder = StepRecorder();
        return;
    }
    m_recorder.onEvent(kEventApplied, &m_graph, event.survivors);
    m_midStep = false;
    const bool gliding = m_snooze.load() > 0;
    std::unordered_map<std::uint64_t, TPXp3> before;
    {
        std::unique_lock<std::mutex> lock(m_sceneLock, std::defer_lock);
        if (!lockForStep(lock)) {
            placeNewVertices();
            return;
        }
        if (m_scene == nullptr)
            return;
        if (gliding)
            before = m_scene->vertexPositions();
        showRecorded();
    }
    if (m_layout != nullptr)
        layOut();
    m_glides.clear();
    if (gliding) {
        std::lock_guard<std::mutex> lock(m_sceneLock);
        for (const auto& [serial, to] : m_scene->vertexPositions()) {
            auto from = before.find(serial);
            if (from != before.end() && (from->second - to).length() > 1e-9)
                m_glides.push_back({serial, from->second, to});
        }
        // Each starts where it was: the pause moves it.
        for (const Glide& g : m_glides)
            m_scene->showVertexAt(g.serial, g.from);
    }
    m_hooks.repaint();
}

void InterpreterListener::layOut() {
    bool placed = false;
    try {
        placed = m_layout->completeLayout(m_graph, nullptr);
    } catch (const koralException& e) {
        if (!m_layoutFailed)
            console() << e.what() << "\n";
        m_layoutFailed = true;
        return;
    }
    if (!placed) {
        if (!m_layoutFailed)
            console() << "The layout '" << m_layout->name() << "' failed.\n";
        m_layoutFailed = true;
        return;
    }
    std::lock_guard<std::mutex> lock(m_sceneLock);
    m_scene->followPlacements();
}

void InterpreterListener::takePicture() {
    std::unique_lock<std::mutex> lock(m_paceMutex);
    if (m_released)
        return;
    m_pictureDone = false;
    const long number = ++m_pictures;
    lock.unlock();
    m_hooks.takePicture(number);
    lock.lock();
    m_wake.wait(lock, [this] { return m_released || m_pictureDone; });
}

void InterpreterListener::pace() {
    std::unique_lock<std::mutex> lock(m_paceMutex);
    const int snooze = m_snooze.load();
    if (m_released || snooze == 0) {
        m_glides.clear();
        return;
    }
    if (snooze > 0) {
        if (!m_glides.empty())
            glide(lock, snooze);
        else
            m_wake.wait_for(lock, std::chrono::milliseconds(snooze), [this] { return m_released; });
        return;
    }
    m_answered = false;
    m_askPending = true;
    lock.unlock();
    m_hooks.askStep();
    lock.lock();
    m_wake.wait(lock, [this] { return m_released || m_answered; });
}

bool InterpreterListener::glide(std::unique_lock<std::mutex>& lock, int snooze) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    const Clock::time_point end = start + std::chrono::milliseconds(snooze);
    // The vertices arrive after two thirds of the pause and rest there for the rest.
    const double travel = 2.0 / 3.0 * snooze;
    bool released = false;
    for (;;) {
        const double elapsed =
            std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        const double t = std::min(1.0, elapsed / travel);
        const double s = t * t * (3 - 2 * t);  // eases in and out
        lock.unlock();
        {
            std::lock_guard<std::mutex> scene(m_sceneLock);
            for (const Glide& g : m_glides)
                m_scene->showVertexAt(g.serial, g.from + (g.to - g.from) * s);
        }
        m_hooks.repaint();
        lock.lock();
        if (t >= 1.0)
            break;
        released = m_wake.wait_for(lock, std::chrono::milliseconds(glideFrameMs),
                                   [this] { return m_released; });
        if (released)
            break;
    }
    if (released) {
        lock.unlock();
        {
            std::lock_guard<std::mutex> scene(m_sceneLock);
            for (const Glide& g : m_glides)
                m_scene->showVertexAt(g.serial, g.to);
        }
        lock.lock();
    } else {
        m_wake.wait_until(lock, end, [this] { return m_released; });
    }
    m_glides.clear();
    return !released;
}

}  // namespace vellum
