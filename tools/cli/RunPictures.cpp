#include "tools/cli/RunPictures.h"

#include "graph/RuleEvents.h"
#include "gui/view/ElementLook.h"
#include "koral/KoralSourcePosition.h"

namespace vellum::cli {

std::unique_ptr<RunPictures> RunPictures::start(DirectedGraph& graph,
                                                const std::string& modelFolder,
                                                const PictureOptions& options,
                                                const std::string& folder, std::string& error) {
    std::unique_ptr<ScenePainter> painter = ScenePainter::create(options, error);
    if (!painter)
        return nullptr;
    std::optional<StepPictureWriter> writer = StepPictureWriter::open(folder, error);
    if (!writer)
        return nullptr;
    std::unique_ptr<RunPictures> pictures(
        new RunPictures(graph, modelFolder, std::move(painter), std::move(*writer)));
    if (!pictures->writeNext()) {
        error = pictures->m_problem;
        return nullptr;
    }
    return pictures;
}

RunPictures::RunPictures(DirectedGraph& graph, const std::string& modelFolder,
                         std::unique_ptr<ScenePainter> painter, StepPictureWriter writer)
    : m_graph(graph),
      m_scene(modelFolder),
      m_painter(std::move(painter)),
      m_writer(std::move(writer)) {
    setOutUnplaced(m_graph);
    m_scene.build(m_graph);
}

void RunPictures::notify(const FrameEvent& event) {
    if (!m_problem.empty())
        return;
    if (const auto* statement = std::get_if<StatementStarted>(&event)) {
        // A library method may change anything, and no step tells.
        if (statement->position.code == koralSourcePosition::kCall)
            m_rebuild = true;
    } else if (const auto* chosen = std::get_if<OccurrenceChosen>(&event)) {
        m_recorder.onEvent(kEventOccurrenceChosen, &m_graph, &chosen->occurrence);
    } else if (const auto* step = std::get_if<RuleApplied>(&event)) {
        if (step->survivors == nullptr)
            m_rebuild = true;  // a plug-in's step: nothing says what changed
        else
            m_recorder.onEvent(kEventApplied, &m_graph, step->survivors);
        catchUp();
        writeNext();
    }
}

void RunPictures::catchUp() {
    SceneChanges changes = m_recorder.take();
    if (!m_rebuild) {
        m_scene.update(changes);
        return;
    }
    m_scene.build(m_graph);
    m_rebuild = false;
}

bool RunPictures::writeNext() {
    m_framed = unionOf(m_framed, m_scene.bounds());
    const std::optional<TPXimage> picture = m_painter->draw(m_scene.root(), m_framed, m_problem);
    if (!picture || !m_writer.write(m_next, *picture, m_problem))
        return false;
    ++m_next;
    return true;
}

}  // namespace vellum::cli
