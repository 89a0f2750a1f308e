// vellum-cli layout: runs a layout algorithm of the layout folder ("VellumLayout") on a graph
// file and writes the graph with its vertices' new positions; `layout --list` prints the
// algorithms, one line each: the name, a blank and the description. Library errors are the
// system's console lines ("caugh't: ...", "from class: ..."); exit status 1 for them.
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "base/Console.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "koral/KoralException.h"
#include "koral/LayoutLibrary.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

int listLayouts() {
    int status = kExitOk;
    for (const std::string& name : LayoutLibrary::available()) {
        try {
            const LayoutLibrary layout(name);
            std::cout << name << " " << layout.description() << "\n";
        } catch (const koralException& error) {
            // Standard output keeps its one line per usable algorithm.
            std::cerr << "vellum-cli layout: " << error.message() << "\n";
            status = kExitFailed;
        }
    }
    return status;
}

bool writeGraph(const DirectedGraph& graph, const std::string& out) {
    if (!out.empty())
        return saveGraph(graph, out);
    // Through a buffer: a refused graph prints nothing but the reason.
    std::ostringstream text;
    GraphWriter writer(text);
    if (!writer.write(graph)) {
        console() << writer.refusal() << "\n";
        return false;
    }
    std::cout << text.str();
    return static_cast<bool>(std::cout);
}

int layoutFile(const std::string& name, const std::string& in, const std::string& out) {
    if (!openInput(in, "layout"))
        return kExitFailed;
    DirectedGraph graph;
    if (!loadGraph(in, graph))
        return kExitFailed;
    try {
        const LayoutLibrary layout(name);
        if (!layout.completeLayout(graph, nullptr)) {
            std::cerr << "vellum-cli layout: the layout '" << name << "' failed\n";
            return kExitFailed;
        }
    } catch (const koralException& error) {
        reportCaught(error);
        return kExitFailed;
    }
    return writeGraph(graph, out) ? kExitOk : kExitFailed;
}

}  // namespace

int runLayout(const Arguments& arguments) {
    if (!arguments.empty() && arguments[0] == "--list") {
        return arguments.size() == 1 ? listLayouts()
                                     : usageError("layout", "--list takes no further arguments");
    }
    if (arguments.size() == 2)
        return layoutFile(arguments[0], arguments[1], {});
    if (arguments.size() == 4 && arguments[2] == "-o") {
        const std::string problem = outputFileProblem(arguments[3]);
        return problem.empty() ? layoutFile(arguments[0], arguments[1], arguments[3])
                               : usageError("layout", problem);
    }
    return usageError("layout", "expected a layout name and a graph file, or --list");
}

}  // namespace vellum::cli
