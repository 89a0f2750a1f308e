// Shared by the fuzz targets of the GraphML, GXL and DOT readers: arbitrary bytes read as a
// file of the format, with renaming on. A graph that reads must save as a graph file (renaming
// makes everything spellable), and export and import again to a graph of the same size unless
// the export refused it with its reason.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "graph/GraphWriter.h"
#include "graph/interchange/Interchange.h"
#include "tests/support/TempFolder.h"

namespace vellum::fuzz {

inline int readInterchange(const std::uint8_t* data, std::size_t size, const char* extension) {
    test::TempFolder folder;
    const std::string file = folder.write(std::string("in") + extension,
                                          std::string(reinterpret_cast<const char*>(data), size));
    ConsoleCapture capture;
    DirectedGraph graph;
    ImportOptions options;
    options.rename = true;
    if (!importGraph(file, graph, options)) {
        check(graph.vertexCount() == 0 && !capture.text().empty());
        return 0;
    }
    check(saveGraph(graph, folder.path("out.dg")));
    const std::string again = folder.path(std::string("again") + extension);
    if (!exportGraph(graph, again)) {
        check(capture.text().find("Could not write the file '") != std::string::npos);
        return 0;
    }
    DirectedGraph reread;
    check(importGraph(again, reread, options));
    check(reread.vertexCount() == graph.vertexCount());
    check(reread.edgeCount() == graph.edgeCount());
    return 0;
}

}  // namespace vellum::fuzz
