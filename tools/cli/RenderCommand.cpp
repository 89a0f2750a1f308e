// vellum-cli render and picture: draw a graph (through a standard camera, fitted to the whole
// graph) or a rule's two sides into a picture file offscreen, with no display. The file type
// follows the extension: .png, .ppm or .pgm. Without a usable OpenGL they say so in one line.
#include <cstdio>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/RuleReader.h"
#include "gui/view/ScenePicture.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {

namespace {

std::string readBackground(const std::string& text, TPXrgb& colour) {
    double c[3];
    char tail;
    if (std::sscanf(text.c_str(), "%lf,%lf,%lf%c", &c[0], &c[1], &c[2], &tail) != 3 || c[0] < 0 ||
        c[0] > 1 || c[1] < 0 || c[1] > 1 || c[2] < 0 || c[2] > 1)
        return "--background needs R,G,B, each 0 to 1, not '" + text + "'";
    colour = {c[0], c[1], c[2]};
    return {};
}

std::string outputProblem(const std::optional<std::string>& out) {
    if (!out)
        return "-o FILE is required";
    if (!isPictureFile(*out))
        return "the picture file must end in .png, .ppm or .pgm: '" + *out + "'";
    return outputFileProblem(*out);
}

int finish(const char* command, const std::optional<TPXimage>& picture, const std::string& file,
           const std::string& error) {
    std::string problem = error;
    if (picture && writePicture(*picture, file, problem))
        return kExitOk;
    std::cerr << "vellum-cli " << command << ": " << problem << "\n";
    return kExitFailed;
}

}  // namespace

int runRender(const Arguments& arguments) {
    std::string graphFile;
    std::optional<std::string> out;
    PictureOptions options;
    std::size_t given = 0;
    std::string problem =
        OptionTable()
            .positional(graphFile)
            .value("-o", out)
            .value("--size",
                   [&](const std::string& v) {
                       return readPictureSize(v, options.width, options.height);
                   })
            .value("--camera",
                   [&](const std::string& v) {
                       options.camera = v;
                       return v == "perspective" || v == "top" || v == "front" || v == "left"
                                  ? std::string()
                                  : "--camera must be perspective, top, front or left, not '" + v +
                                        "'";
                   })
            .value("--background",
                   [&](const std::string& v) { return readBackground(v, options.background); })
            .parse(arguments, given);
    if (problem.empty() && given != 1)
        problem = "expected one graph file";
    if (problem.empty())
        problem = outputProblem(out);
    if (!problem.empty())
        return usageError("render", problem);
    if (!openInput(graphFile, "render"))
        return kExitFailed;
    DirectedGraph graph;
    if (!loadGraph(graphFile, graph))
        return kExitFailed;
    std::string error;
    const std::optional<TPXimage> picture =
        graphPicture(graph, folderOf(graphFile), options, error);
    return finish("render", picture, *out, error);
}

int runPicture(const Arguments& arguments) {
    std::string ruleFile;
    std::optional<std::string> out;
    int width = 502, height = 200;
    std::size_t given = 0;
    std::string problem =
        OptionTable()
            .positional(ruleFile)
            .value("-o", out)
            .value("--size",
                   [&](const std::string& v) { return readPictureSize(v, width, height); })
            .parse(arguments, given);
    if (problem.empty() && given != 1)
        problem = "expected one rule file";
    if (problem.empty())
        problem = outputProblem(out);
    if (!problem.empty())
        return usageError("picture", problem);
    if (!openInput(ruleFile, "picture"))
        return kExitFailed;
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(ruleFile);
    if (!rule)
        return kExitFailed;
    std::string error;
    const std::optional<TPXimage> picture = rulePicture(*rule, width, height, error);
    return finish("picture", picture, *out, error);
}

}  // namespace vellum::cli
