// vellum-cli convert [--rename] IN OUT: reads IN with the reader of its extension and writes
// what it read to OUT with the writer of OUT's extension: graphs between .dg, .graphml, .gxl
// and .dot, rules from .drl to .drl. --rename changes what a graph file cannot spell in an
// imported graph instead of refusing it. The readers' and writers' console messages go to
// standard output; exit status 1 when reading or writing failed.
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/RuleReader.h"
#include "graph/RuleWriter.h"
#include "graph/interchange/Interchange.h"
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool convertRule(const std::string& in, const std::string& out) {
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(in);
    return rule != nullptr && saveRule(*rule, out);
}

bool isGraphFile(const std::string& name) {
    return graphFileFormat(name) != GraphFileFormat::Unknown;
}

}  // namespace

int runConvert(const Arguments& arguments) {
    bool rename = false;
    std::string in, out;
    std::size_t given = 0;
    const std::string problem = OptionTable()
                                    .flag("--rename", rename)
                                    .positional(in)
                                    .positional(out)
                                    .parse(arguments, given);
    if (!problem.empty())
        return usageError("convert", problem);
    if (given != 2)
        return usageError("convert", "expected an input and an output file");
    const bool graphs = isGraphFile(in) && isGraphFile(out);
    if (!graphs && !(endsWith(in, ".drl") && endsWith(out, ".drl"))) {
        std::cerr << "vellum-cli convert: cannot convert '" << in << "' to '" << out
                  << "' (known: graphs between " << knownGraphExtensions() << "; .drl to .drl)\n";
        return kExitFailed;
    }
    if (!openInput(in, "convert"))
        return kExitFailed;
    bool done = false;
    if (graphs) {
        DirectedGraph graph;
        ImportOptions options;
        options.rename = rename;
        done = importGraph(in, graph, options) && exportGraph(graph, out);
    } else {
        done = convertRule(in, out);
    }
    std::cout.flush();
    return done ? kExitOk : kExitFailed;
}

}  // namespace vellum::cli
