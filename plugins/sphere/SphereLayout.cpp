// sphere.layout: the vertices on a sphere along a Fibonacci spiral, in vertex order, from the
// north pole (+y) to the south pole. The same graph always gets the same picture, whatever
// positions it had, and neighbouring points lie about kSpacing apart whatever the size.
#include <algorithm>
#include <cmath>

#include "base/Console.h"
#include "koral/PluginApi.h"
#include "koral/VertexPosition.h"

namespace {

constexpr double kSpacing = 2.0;    // about the distance between neighbouring points
constexpr double kMinRadius = 2.0;  // small graphs still get a visible sphere
constexpr double kPi = 3.14159265358979323846;

double radiusFor(std::size_t count) {
    // Each point takes about kSpacing squared of the surface 4 pi r^2.
    const double radius = kSpacing * std::sqrt(static_cast<double>(count) / (4.0 * kPi));
    return std::max(radius, kMinRadius);
}

// Point `index` of `count` on the unit sphere.
vellum::Position spiralPoint(std::size_t index, std::size_t count) {
    const double goldenAngle = kPi * (3.0 - std::sqrt(5.0));
    const double y = 1.0 - (static_cast<double>(index) + 0.5) * 2.0 / static_cast<double>(count);
    const double ring = std::sqrt(std::max(0.0, 1.0 - y * y));
    const double angle = goldenAngle * static_cast<double>(index);
    return {ring * std::cos(angle), y, ring * std::sin(angle)};
}

}  // namespace

const char* lyDescription() {
    return "Vertices on a sphere, in vertex order along a spiral (deterministic)";
}

void lyConfigure() {
    vellum::console() << "sphere: no settings; spacing " << kSpacing << ", minimum radius "
                      << kMinRadius << "\n";
}

// One pass with nothing to show in between, so the notifier is not used.
int lyCompleteLayout(vellum::DirectedGraph* graph, vellum::KoralFrame* /*notifier*/) {
    if (graph == nullptr)
        return 0;
    const std::size_t count = graph->vertexCount();
    const double radius = radiusFor(count);
    std::size_t index = 0;
    for (auto& vertex : graph->vertices()) {
        const vellum::Position unit = spiralPoint(index++, count);
        vellum::setVertexPosition(vertex, {radius * unit[0], radius * unit[1], radius * unit[2]});
    }
    return 1;
}
