#include "plugins/force3d/IncrementalLayout.h"

#include <algorithm>
#include <deque>

#include "plugins/force3d/Octree.h"
#include "plugins/force3d/Random.h"

namespace vellum::force3d {

namespace {

constexpr double kJitter = 0.5;    // a newcomer lands this many edge lengths from its anchor
constexpr double kAnchor = 8.0;    // pull of an old vertex back to where it was, per unit away
constexpr double kMaxShift = 1.0;  // how far, in gaps between vertices, an old vertex may move
constexpr double kCooling = 0.9;
constexpr double kNear = 3.0;  // gaps between vertices within which they push each other
constexpr std::size_t kDirectLimit = 128;  // fewer moving vertices repel each other directly

// The ball round the placed vertices: newcomers with no placed vertex in reach start just
// outside it.
struct Ball {
    Vec3 centre;
    double radius = 0.0;
};

Ball placedBall(const std::vector<Vec3>& positions, const std::vector<bool>& placed) {
    Ball ball;
    int count = 0;
    for (std::size_t v = 0; v < positions.size(); ++v) {
        if (placed[v]) {
            ball.centre += positions[v];
            ++count;
        }
    }
    ball.centre *= 1.0 / std::max(count, 1);
    for (std::size_t v = 0; v < positions.size(); ++v) {
        if (placed[v])
            ball.radius = std::max(ball.radius, (positions[v] - ball.centre).length());
    }
    return ball;
}

Vec3 outsidePoint(const Ball& ball, double length, Random& random) {
    Vec3 direction = random.inCube(1.0);
    const double size = direction.length();
    direction = size > 1e-9 ? direction * (1.0 / size) : Vec3{1.0, 0.0, 0.0};
    return ball.centre + direction * (ball.radius + length);
}

Vec3 limited(const Vec3& from, const Vec3& to, double maxDistance) {
    const Vec3 d = to - from;
    const double distance = d.length();
    return distance <= maxDistance ? to : from + d * (maxDistance / distance);
}

// One pass. The moving vertices are the newcomers (not placed) and their neighbours; the others
// stay. Forces are local: springs, and the push of the vertices within a few edge lengths (the
// far field shaped the picture once and is left alone). An old moving vertex was balanced, or
// meant to be, where it stood; the pass takes off the force it felt there before the change, so
// that only the change moves it.
class Pass {
  public:
    Pass(const LayoutGraph& graph, std::vector<Vec3>& positions, const std::vector<bool>& placed,
         const ForceSettings& settings)
        : graph_(graph), positions_(positions), placed_(placed), settings_(settings) {}

    void run();
    const std::vector<int>& moving() const { return moving_; }

  private:
    void chooseMoving();
    double localEdgeLength() const;
    void placeNewcomers(Random& random);
    void spread(std::deque<int>& queue, std::vector<char>& known, Random& random);
    void takeBaselines();
    void relax();
    // The push on v (as Octree::repulsion sums it) from the vertices near it, staying or moving,
    // without the newcomers when `withNewcomers` is false.
    Vec3 repulsion(int v, bool withNewcomers) const;
    Vec3 springs(int v, bool withNewcomers) const;
    // About the gap between neighbouring vertices, which bounds how far pushes reach and old
    // vertices move. Edges may be much longer than the gaps (a graph whose edges cannot all be
    // short is spread like a lattice of the edge length setting).
    double reach() const { return std::min(length_, settings_.edgeLength); }

    const LayoutGraph& graph_;
    std::vector<Vec3>& positions_;
    const std::vector<bool>& placed_;
    const ForceSettings& settings_;
    double length_ = 1.0;
    std::vector<int> moving_;
    std::vector<char> isMoving_;  // by vertex
    Octree staying_;
    Octree movingTree_;  // of the moving vertices when there are too many to sum directly
    bool movingTreeBuilt_ = false;
    std::vector<Vec3> original_;  // by index into moving_
    std::vector<Vec3> baseline_;  // by index into moving_
};

void Pass::run() {
    Random random(settings_.seed);
    length_ = localEdgeLength();
    chooseMoving();
    std::vector<int> staying;
    staying.reserve(positions_.size() - moving_.size());
    for (int v = 0; v < graph_.size(); ++v) {
        if (!isMoving_[v])
            staying.push_back(v);
    }
    staying_.build(positions_, graph_.masses(), std::move(staying));
    takeBaselines();
    placeNewcomers(random);
    relax();
}

void Pass::chooseMoving() {
    isMoving_.assign(static_cast<std::size_t>(graph_.size()), 0);
    const auto add = [this](int v) {
        if (!isMoving_[v])
            moving_.push_back(v);
        isMoving_[v] = 1;
    };
    for (int v = 0; v < graph_.size(); ++v) {
        if (placed_[v])
            continue;
        add(v);
        for (const int* w = graph_.neighboursBegin(v); w != graph_.neighboursEnd(v); ++w)
            add(*w);
    }
}

double Pass::localEdgeLength() const {
    std::vector<double> lengths;
    for (int v = 0; v < graph_.size(); ++v) {
        if (placed_[v])
            continue;
        for (const int* w = graph_.neighboursBegin(v); w != graph_.neighboursEnd(v); ++w) {
            if (!placed_[*w])
                continue;
            for (const int* u = graph_.neighboursBegin(*w); u != graph_.neighboursEnd(*w); ++u) {
                if (placed_[*u])
                    lengths.push_back((positions_[*w] - positions_[*u]).length());
            }
        }
    }
    if (lengths.empty())
        return settings_.edgeLength;
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    return *middle > 0.0 ? *middle : settings_.edgeLength;
}

void Pass::placeNewcomers(Random& random) {
    std::vector<char> known(placed_.begin(), placed_.end());
    std::deque<int> queue;
    for (int v : moving_) {
        if (!known[v] && std::any_of(graph_.neighboursBegin(v), graph_.neighboursEnd(v),
                                     [&](int w) { return known[w] != 0; }))
            queue.push_back(v);
    }
    spread(queue, known, random);
    // What is left has no placed vertex in its component: it starts beside the picture.
    const auto left =
        std::find_if(moving_.begin(), moving_.end(), [&](int v) { return !known[v]; });
    if (left == moving_.end())
        return;
    const Ball ball = placedBall(positions_, placed_);
    for (auto it = left; it != moving_.end(); ++it) {
        if (known[*it])
            continue;
        positions_[*it] = outsidePoint(ball, length_, random);
        known[*it] = 1;
        queue.insert(queue.end(), graph_.neighboursBegin(*it), graph_.neighboursEnd(*it));
        spread(queue, known, random);
    }
}

// Places the queued vertices breadth first, each at the mean of its known neighbours (it has
// one) plus jitter, and queues their unknown neighbours in turn.
void Pass::spread(std::deque<int>& queue, std::vector<char>& known, Random& random) {
    while (!queue.empty()) {
        const int v = queue.front();
        queue.pop_front();
        if (known[v])
            continue;
        Vec3 sum;
        int count = 0;
        for (const int* w = graph_.neighboursBegin(v); w != graph_.neighboursEnd(v); ++w) {
            if (known[*w]) {
                sum += positions_[*w];
                ++count;
            } else {
                queue.push_back(*w);
            }
        }
        positions_[v] = sum * (1.0 / count) + random.inCube(kJitter * length_);
        known[v] = 1;
    }
}

void Pass::takeBaselines() {
    original_.resize(moving_.size());
    baseline_.assign(moving_.size(), Vec3{});
    if (moving_.size() > kDirectLimit) {
        std::vector<int> old;
        std::copy_if(moving_.begin(), moving_.end(), std::back_inserter(old),
                     [this](int v) { return placed_[v]; });
        movingTree_.build(positions_, graph_.masses(), std::move(old));
        movingTreeBuilt_ = true;
    }
    for (std::size_t i = 0; i < moving_.size(); ++i) {
        const int v = moving_[i];
        original_[i] = positions_[v];
        if (placed_[v])
            baseline_[i] = repulsion(v, false) * (length_ * length_) + springs(v, false);
    }
}

Vec3 Pass::repulsion(int v, bool withNewcomers) const {
    const Vec3& p = positions_[v];
    const double radius = kNear * reach();
    Vec3 sum = staying_.repulsionWithin(p, v, radius);
    if (movingTreeBuilt_)
        return sum + movingTree_.repulsionWithin(p, v, radius);
    for (int w : moving_) {
        const Vec3 d = p - positions_[w];
        const double d2 = d.lengthSquared();
        if (w != v && d2 > 1e-18 && d2 <= radius * radius && (withNewcomers || placed_[w]))
            sum += d * (1.0 / d2);
    }
    return sum;
}

Vec3 Pass::springs(int v, bool withNewcomers) const {
    Vec3 sum;
    const Vec3& p = positions_[v];
    for (const int* w = graph_.neighboursBegin(v); w != graph_.neighboursEnd(v); ++w) {
        if (!withNewcomers && !placed_[*w])
            continue;
        const Vec3 d = positions_[*w] - p;
        sum += d * (d.length() / length_);
    }
    return sum;
}

// Each vertex moves by its force over its stiffness (about what the force changes by per unit
// of movement: twice per spring, once for the crowd and the anchor), at most by the step, so that
// moves die down where the forces balance instead of going on at full step.
void Pass::relax() {
    double step = 0.5 * length_;
    for (int iteration = 0; iteration < settings_.incrementalSteps; ++iteration) {
        if (moving_.size() > kDirectLimit) {
            movingTree_.build(positions_, graph_.masses(), moving_);
            movingTreeBuilt_ = true;
        }
        for (std::size_t i = 0; i < moving_.size(); ++i) {
            const int v = moving_[i];
            Vec3 f = repulsion(v, true) * (length_ * length_) + springs(v, true) - baseline_[i];
            double stiffness = 2.0 * graph_.degree(v) + 1.0;
            if (placed_[v]) {
                f += (original_[i] - positions_[v]) * kAnchor;
                stiffness += kAnchor;
            }
            const double size = f.length();
            if (size > 0.0)
                positions_[v] += f * (std::min(step, size / stiffness) / size);
        }
        step *= kCooling;
    }
    for (std::size_t i = 0; i < moving_.size(); ++i) {
        const int v = moving_[i];
        if (placed_[v])
            positions_[v] = limited(original_[i], positions_[v], kMaxShift * reach());
    }
}

}  // namespace

std::vector<int> IncrementalLayout::update(const LayoutGraph& graph, std::vector<Vec3>& positions,
                                           const std::vector<bool>& placed) const {
    Pass pass(graph, positions, placed, settings_);
    pass.run();
    return pass.moving();
}

}  // namespace vellum::force3d
