#include "graph/interchange/Interchange.h"

#include <algorithm>
#include <cctype>

#include "base/Console.h"
#include "base/ReplacingFile.h"
#include "graph/GlobMatch.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/interchange/Formats.h"

namespace vellum {
namespace {

bool endsWith(std::string_view text, std::string_view end) {
    if (text.size() < end.size())
        return false;
    return std::equal(end.begin(), end.end(), text.end() - end.size(), [](char wanted, char c) {
        return std::tolower(static_cast<unsigned char>(c)) == wanted;
    });
}

}  // namespace

GraphFileFormat graphFileFormat(std::string_view fileName) {
    if (endsWith(fileName, ".dg"))
        return GraphFileFormat::Native;
    if (endsWith(fileName, ".graphml"))
        return GraphFileFormat::GraphML;
    if (endsWith(fileName, ".gxl"))
        return GraphFileFormat::GXL;
    if (endsWith(fileName, ".dot") || endsWith(fileName, ".gv"))
        return GraphFileFormat::DOT;
    return GraphFileFormat::Unknown;
}

const char* formatName(GraphFileFormat format) {
    switch (format) {
        case GraphFileFormat::Native:
            return "graph file";
        case GraphFileFormat::GraphML:
            return "GraphML";
        case GraphFileFormat::GXL:
            return "GXL";
        case GraphFileFormat::DOT:
            return "DOT";
        case GraphFileFormat::Unknown:
            break;
    }
    return "unknown";
}

const char* knownGraphExtensions() {
    return ".dg, .graphml, .gxl, .dot";
}

bool isInternalAttribute(const Attribute& attribute) {
    return isInternalName(attribute.name());
}

std::string vectorText(const std::vector<double>& elements) {
    std::string text;
    for (double element : elements)
        text += (text.empty() ? "" : " ") + exactRealText(element);
    return text;
}

bool importGraph(const std::string& fileName, DirectedGraph& graph, const ImportOptions& options,
                 bool* renamable) {
    if (renamable != nullptr)
        *renamable = false;
    const GraphFileFormat format = graphFileFormat(fileName);
    if (format == GraphFileFormat::Native) {
        graph.clear();
        return loadGraph(fileName, graph);
    }
    if (format == GraphFileFormat::Unknown) {
        graph.clear();
        console() << "Could not read the file '" << fileName << "': its extension is none of "
                  << knownGraphExtensions() << "\n";
        return false;
    }
    ForeignGraph foreign(graph, options.rename, formatName(format));
    if (format == GraphFileFormat::GraphML)
        readGraphML(fileName, foreign);
    else if (format == GraphFileFormat::GXL)
        readGxl(fileName, foreign);
    else
        readDot(fileName, foreign);
    if (renamable != nullptr)
        *renamable = foreign.renamable();
    return foreign.finish(fileName);
}

bool exportGraph(const DirectedGraph& graph, const std::string& fileName) {
    const GraphFileFormat format = graphFileFormat(fileName);
    if (format == GraphFileFormat::Native)
        return saveGraph(graph, fileName);
    if (format == GraphFileFormat::Unknown) {
        console() << "Could not write the file '" << fileName << "': its extension is none of "
                  << knownGraphExtensions() << "\n";
        return false;
    }
    ReplacingFile file(fileName);
    if (file.open()) {
        std::string refusal;
        const bool written =
            format == GraphFileFormat::GraphML ? writeGraphML(graph, file.stream(), refusal)
            : format == GraphFileFormat::GXL   ? writeGxl(graph, file.stream(), refusal)
                                               : writeDot(graph, file.stream(), refusal);
        if (!written)
            console() << formatName(format) << ": " << refusal << "\n";
        else if (file.commit())
            return true;
    }
    console() << "Could not write the file '" << fileName << "' !!!\n";
    return false;
}

}  // namespace vellum
