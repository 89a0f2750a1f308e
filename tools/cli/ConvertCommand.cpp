// vellum-cli convert IN OUT: reads IN with the reader of its extension and writes what it read
// to OUT with the writer of OUT's extension. The readers' and writers' console messages go to
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
#include "tools/cli/Commands.h"

namespace vellum::cli {
namespace {

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool convertGraph(const std::string& in, const std::string& out) {
    DirectedGraph graph;
    return loadGraph(in, graph) && saveGraph(graph, out);
}

bool convertRule(const std::string& in, const std::string& out) {
    const std::unique_ptr<DirectedGraphRule> rule = loadRule(in);
    return rule != nullptr && saveRule(*rule, out);
}

struct Conversion {
    const char* from;
    const char* to;
    bool (*run)(const std::string& in, const std::string& out);
};

// The conversions that convert knows, by the extensions of input and output.
constexpr Conversion kConversions[] = {
    {".dg", ".dg", convertGraph},
    {".drl", ".drl", convertRule},
};

}  // namespace

int runConvert(const Arguments& arguments) {
    if (arguments.size() != 2)
        return usageError("convert", "expected an input and an output file");
    const std::string& in = arguments[0];
    const std::string& out = arguments[1];
    for (const Conversion& conversion : kConversions) {
        if (!endsWith(in, conversion.from) || !endsWith(out, conversion.to))
            continue;
        if (!openInput(in, "convert"))
            return kExitFailed;
        const bool done = conversion.run(in, out);
        std::cout.flush();
        return done ? kExitOk : kExitFailed;
    }
    std::cerr << "vellum-cli convert: cannot convert '" << in << "' to '" << out
              << "' (known: .dg to .dg, .drl to .drl)\n";
    return kExitFailed;
}

}  // namespace vellum::cli
