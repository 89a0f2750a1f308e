// `vellum-cli run --frames DIR`: follows a run and writes the graph's picture before it and
// after every applied step into DIR (StepPictureWriter), drawn offscreen as `render` draws.
//
// The graph is shown as the interpreter frame shows it, so it keeps what showing adds: the
// circle a graph without any position is set out on, each vertex's look attributes and the
// places the scene gives created vertices; `render` of the graph the run leaves therefore
// draws the last picture. The camera is fitted to every picture's bounds so far: it never
// moves in, and moves out only when the graph grows beyond what was shown, so the pictures do
// not jump from step to step.
#pragma once

#include <memory>
#include <string>

#include "graph/DirectedGraph.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneChanges.h"
#include "gui/view/ScenePainter.h"
#include "gui/view/ScenePicture.h"
#include "gui/view/StepPictureWriter.h"
#include "koral/KoralFrame.h"

namespace vellum::cli {

class RunPictures : public KoralFrame {
  public:
    // Shows `graph` (relative model names looked up in `modelFolder`) and writes its picture as
    // number 0 into `folder`. None, with the reason in `error`, when there is no usable OpenGL
    // (found out before the folder is touched), the folder is refused or the picture cannot be
    // written. The graph must outlive the object.
    static std::unique_ptr<RunPictures> start(DirectedGraph& graph, const std::string& modelFolder,
                                              const PictureOptions& options,
                                              const std::string& folder, std::string& error);

    // The run's thread: follows the run, writing a picture after every applied step. After a
    // failed picture it writes no more.
    void notify(const FrameEvent& event) override;

    // Once the run has ended: the pictures written, and why the recording stopped early (empty
    // when it did not).
    int pictures() const { return m_next; }
    const std::string& problem() const { return m_problem; }

  private:
    RunPictures(DirectedGraph& graph, const std::string& modelFolder,
                std::unique_ptr<ScenePainter> painter, StepPictureWriter writer);
    // Brings the scene up to the graph after a step.
    void catchUp();
    bool writeNext();

    DirectedGraph& m_graph;
    GraphScene m_scene;
    StepRecorder m_recorder;
    std::unique_ptr<ScenePainter> m_painter;
    StepPictureWriter m_writer;
    TPXboundingBox m_framed;  // every picture's bounds so far
    bool m_rebuild = false;   // the graph may have changed in ways no step reported
    int m_next = 0;           // the number of the next picture
    std::string m_problem;
};

}  // namespace vellum::cli
