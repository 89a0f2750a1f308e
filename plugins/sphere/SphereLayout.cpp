// sphere.layout: the vertices on a sphere along a Fibonacci spiral, in vertex order, from the
// north pole (+y) to the south pole. The same graph always gets the same picture, whatever
// positions it had, and neighbouring points lie about `spacing` apart whatever the size. The
// settings come from VELLUM_SPHERE ("spacing=3 radius=5"), which lyConfigure edits in a dialog.
#include <algorithm>
#include <cmath>

#include "koral/PluginApi.h"
#include "koral/VertexPosition.h"
#include "plugins/layoutsettings/SettingsSchema.h"
#include "plugins/layoutsettings/SettingsVariable.h"

namespace {

using vellum::layoutsettings::Setting;
using vellum::layoutsettings::SettingsSchema;
using vellum::layoutsettings::SettingsVariable;

constexpr double kPi = 3.14159265358979323846;

const SettingsVariable& settings() {
    static const SettingsSchema schema({
        // about the distance between neighbouring points
        {"spacing", "Spacing", Setting::Kind::Real, 1e-3, 1e6, {}, "2"},
        // small graphs still get a visible sphere
        {"radius", "Minimum radius", Setting::Kind::Real, 0, 1e6, {}, "2"},
    });
    static const SettingsVariable variable("sphere", "VELLUM_SPHERE", schema);
    return variable;
}

double radiusFor(std::size_t count, double spacing, double minRadius) {
    // Each point takes about spacing squared of the surface 4 pi r^2.
    const double radius = spacing * std::sqrt(static_cast<double>(count) / (4.0 * kPi));
    return std::max(radius, minRadius);
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

// The settings dialog in the desktop program, the settings on the console elsewhere.
void lyConfigure() {
    settings().configure();
}

// One pass with nothing to show in between, so the notifier is not used.
int lyCompleteLayout(vellum::DirectedGraph* graph, vellum::KoralFrame* /*notifier*/) {
    if (graph == nullptr)
        return 0;
    const auto values = settings().readOrReport();
    if (!values)
        return 0;
    const std::size_t count = graph->vertexCount();
    const double radius = radiusFor(count, values->real("spacing"), values->real("radius"));
    std::size_t index = 0;
    for (auto& vertex : graph->vertices()) {
        const vellum::Position unit = spiralPoint(index++, count);
        vellum::setVertexPosition(vertex, {radius * unit[0], radius * unit[1], radius * unit[2]});
    }
    return 1;
}
