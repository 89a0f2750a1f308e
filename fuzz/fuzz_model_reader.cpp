// Fuzz target: arbitrary bytes read by the 3D model reader from memory. A failure must give its
// reason; a model that reads must hold in its tree exactly the objects, vertices and faces its
// totals say, every corner must name a vertex of its own object, and nothing may trip the scene
// library's assertions (which would report on the console).
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "tpx/TPXmodelReader.h"

using vellum::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    vellum::ConsoleCapture capture;
    std::string error;
    // Relative texture names lead nowhere, so that no input reads the files around it.
    const auto model = vellum::TPXmodelReader().readText(text, "/nonexistent/vellum-fuzz", error);
    check(capture.text().empty());
    if (!model) {
        check(!error.empty());
        return 0;
    }
    vellum::TPXmodelTotals found;
    std::vector<const vellum::TPXnode*> open{model->root->firstChild()};
    while (!open.empty()) {
        const vellum::TPXnode* node = open.back();
        open.pop_back();
        if (node == nullptr)
            continue;
        open.push_back(node->nextSibling());
        open.push_back(node->firstChild());
        const vellum::TPXgeometry* geometry = node->geometry();
        check(geometry != nullptr);
        ++found.objects;
        found.vertices += geometry->vertices().size();
        found.faces += geometry->polygons().size();
        for (const vellum::TPXpolygon& polygon : geometry->polygons()) {
            check(polygon.size() > 0);
            for (int corner : polygon.corners())
                check(corner >= 0 &&
                      static_cast<std::size_t>(corner) < geometry->vertices().size());
        }
    }
    check(found.objects == model->totals.objects && found.objects > 0);
    check(found.vertices == model->totals.vertices);
    check(found.faces == model->totals.faces);
    return 0;
}
