// vellum-cli scene: builds the 3D scene of a graph, as the canvas would show it, and prints it
// as text (console messages of the build first, then the listing); -o also writes the graph with
// the attributes the build added. Needs no OpenGL.
#include <iostream>
#include <optional>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneListing.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {

int runScene(const Arguments& arguments) {
    std::string graphFile;
    std::optional<std::string> out;
    std::size_t given = 0;
    const std::string problem =
        OptionTable().positional(graphFile).value("-o", out).parse(arguments, given);
    if (!problem.empty() || given != 1)
        return usageError("scene", problem.empty() ? "expected one graph file" : problem);
    if (out) {
        if (const std::string bad = outputFileProblem(*out); !bad.empty())
            return usageError("scene", bad);
    }
    if (!openInput(graphFile, "scene"))
        return kExitFailed;
    DirectedGraph graph;
    if (!loadGraph(graphFile, graph))
        return kExitFailed;
    GraphScene scene(folderOf(graphFile));
    scene.build(graph);
    std::cout.flush();
    writeSceneListing(std::cout, graph, scene);
    std::cout.flush();
    if (out && !saveGraph(graph, *out))
        return kExitFailed;
    return kExitOk;
}

}  // namespace vellum::cli
