// The seeded random numbers of force3d's initial placement and jitter; internal to force3d.
#pragma once

#include "plugins/force3d/Vec3.h"

namespace vellum::force3d {

// A small deterministic generator (SplitMix64): the same seed gives the same layout on every
// machine, which the standard distributions do not promise.
class Random {
  public:
    explicit Random(unsigned long long seed) : state_(seed) {}
    // Uniform in [0, 1).
    double next() {
        unsigned long long z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        z ^= z >> 31;
        return static_cast<double>(z >> 11) * (1.0 / 9007199254740992.0);
    }
    // Uniform in the cube [-half, half]^3.
    Vec3 inCube(double half) {
        const double x = next();
        const double y = next();
        const double z = next();
        return {(2.0 * x - 1.0) * half, (2.0 * y - 1.0) * half, (2.0 * z - 1.0) * half};
    }

  private:
    unsigned long long state_;
};

}  // namespace vellum::force3d
