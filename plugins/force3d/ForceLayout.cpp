#include "plugins/force3d/ForceLayout.h"

#include <algorithm>
#include <cmath>

#include "plugins/force3d/Octree.h"
#include "plugins/force3d/Random.h"

namespace vellum::force3d {

namespace {

constexpr int kCoarsest = 32;             // a graph this small is laid out directly
constexpr double kMinReduction = 0.85;    // coarsening that keeps more than this stops
constexpr int kCoarsestIterations = 300;  // at most, and fewer when the coarsest is big
constexpr int kCoarsestWork = 300000;     // vertex moves the coarsest level may take
constexpr int kMaxDepth = 40;
constexpr double kCooling = 0.9;    // step factor after a step that did not lower the energy
constexpr int kProgressEvery = 10;  // finest-level steps between progress reports
constexpr double kGravity = 0.02;   // see relax()

// A layout of n vertices spreads over a cube of about this half-width.
double naturalRadius(int n, double length) {
    return length * std::cbrt(static_cast<double>(std::max(n, 1)));
}

// Each fine vertex starts at its coarse vertex, scaled to the finer graph's natural size and
// shaken a little so that merged vertices come apart.
std::vector<Vec3> prolong(const std::vector<Vec3>& coarse, const std::vector<int>& parent,
                          double length, Random& random) {
    const double scale = std::cbrt(static_cast<double>(parent.size()) /
                                   static_cast<double>(std::max<std::size_t>(coarse.size(), 1)));
    std::vector<Vec3> fine(parent.size());
    for (std::size_t v = 0; v < parent.size(); ++v)
        fine[v] = coarse[parent[v]] * scale + random.inCube(0.1 * length);
    return fine;
}

Vec3 massCentre(const LayoutGraph& graph, const std::vector<Vec3>& positions) {
    Vec3 sum;
    double mass = 0.0;
    for (int v = 0; v < graph.size(); ++v) {
        sum += positions[v] * graph.mass(v);
        mass += graph.mass(v);
    }
    return mass > 0.0 ? sum * (1.0 / mass) : sum;
}

// The middle value (reorders the values); 0 for none.
double median(std::vector<double>& values) {
    if (values.empty())
        return 0.0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The force on vertex v: `repulsion` (as Octree::repulsion sums it) times length^2, plus a spring
// to each neighbour pulling with distance^2 / length, so that an edge between two otherwise free
// vertices settles at `length`.
Vec3 force(const LayoutGraph& graph, const std::vector<Vec3>& positions, int v,
           const Vec3& repulsion, double length) {
    Vec3 f = repulsion * (length * length);
    const Vec3& p = positions[v];
    for (const int* w = graph.neighboursBegin(v); w != graph.neighboursEnd(v); ++w) {
        const Vec3 d = positions[*w] - p;
        f += d * (d.length() / length);
    }
    return f;
}

}  // namespace

std::vector<Vec3> ForceLayout::layout(const LayoutGraph& graph, const Progress& progress) const {
    Random random(settings_.seed);
    // What is shown on the way has the final layout's place and scale.
    const Progress normalised = [&](const std::vector<Vec3>& positions) {
        std::vector<Vec3> shown = positions;
        normalise(graph, shown);
        progress(shown);
    };
    std::vector<Vec3> positions = layoutLevel(graph, random, 0, progress ? &normalised : nullptr);
    normalise(graph, positions);
    return positions;
}

void ForceLayout::normalise(const LayoutGraph& graph, std::vector<Vec3>& positions) const {
    if (positions.empty())
        return;
    Vec3 centre;
    for (const Vec3& p : positions)
        centre += p;
    centre *= 1.0 / static_cast<double>(positions.size());
    std::vector<double> radii;
    radii.reserve(positions.size());
    for (Vec3& p : positions) {
        p -= centre;
        radii.push_back(p.length());
    }
    const double spread = median(radii);
    if (spread <= 0.0)
        return;
    // The median edge gets the edge length, unless that packed the vertices closer than a
    // lattice of that spacing would (a graph whose edges cannot all be short, or has none). In
    // a cubic lattice half the points lie within about half its width of the centre.
    const double length = settings_.edgeLength;
    const double lattice = 0.5 * length * std::cbrt(static_cast<double>(graph.size()));
    double scale = lattice / spread;
    std::vector<double> edges;
    for (int v = 0; v < graph.size(); ++v) {
        for (const int* w = graph.neighboursBegin(v); w != graph.neighboursEnd(v); ++w) {
            if (v < *w)
                edges.push_back((positions[v] - positions[*w]).length());
        }
    }
    const double edge = median(edges);
    if (edge > 0.0)
        scale = std::max(scale, length / edge);
    for (Vec3& p : positions)
        p *= scale;
}

std::vector<Vec3> ForceLayout::layoutLevel(const LayoutGraph& graph, Random& random, int depth,
                                           const Progress* progress) const {
    const int n = graph.size();
    const double length = settings_.edgeLength;
    std::vector<int> parent;
    LayoutGraph coarse;
    if (n > kCoarsest && depth < kMaxDepth)
        coarse = graph.coarsen(random, parent);
    if (coarse.size() == 0 || coarse.size() > kMinReduction * n) {
        std::vector<Vec3> positions(static_cast<std::size_t>(n));
        for (Vec3& p : positions)
            p = random.inCube(naturalRadius(n, length));
        const int iterations = std::min(kCoarsestIterations, kCoarsestWork / std::max(n, 1));
        relax(graph, positions, std::max(iterations, settings_.iterations),
              naturalRadius(n, length), depth == 0 ? progress : nullptr);
        return positions;
    }
    std::vector<Vec3> positions =
        prolong(layoutLevel(coarse, random, depth + 1, nullptr), parent, length, random);
    relax(graph, positions, settings_.iterations, length, depth == 0 ? progress : nullptr);
    return positions;
}

void ForceLayout::relax(const LayoutGraph& graph, std::vector<Vec3>& positions, int iterations,
                        double step, const Progress* progress) const {
    const double length = settings_.edgeLength;
    const double maxStep = step;
    Octree tree;
    double lastEnergy = HUGE_VAL;
    int improved = 0;
    for (int iteration = 0; iteration < iterations && step > 1e-3 * length; ++iteration) {
        tree.build(positions, graph.masses());
        const Vec3 centre = massCentre(graph, positions);
        double energy = 0.0;
        for (int v = 0; v < graph.size(); ++v) {
            Vec3 f = force(graph, positions, v, tree.repulsion(positions[v], v, settings_.theta),
                           length);
            // A weak pull to the middle keeps loose parts from drifting off: it balances the
            // whole graph's push at about the cube root of 1/kGravity times the graph's size.
            const Vec3 in = centre - positions[v];
            f += in * (kGravity * in.length() / length);
            const double size = f.length();
            if (size > 0.0)
                positions[v] += f * (step / size);
            energy += size * size;
        }
        // Adaptive step: grow it after a run of improvements, shrink it after a setback.
        if (energy < lastEnergy && ++improved >= 5) {
            improved = 0;
            step = std::min(step / kCooling, maxStep);
        } else if (energy >= lastEnergy) {
            improved = 0;
            step *= kCooling;
        }
        lastEnergy = energy;
        if (progress != nullptr && (iteration + 1) % kProgressEvery == 0)
            (*progress)(positions);
    }
}

}  // namespace vellum::force3d
