// The random choice among the alternatives of an apply statement ("a | b | c"). By default each
// apply statement seeds the generator afresh from the current time in seconds, so that runs
// differ from second to second; with a fixed seed the generator is seeded once per run and never
// again, so that a run can be repeated exactly. Each interpreter owns its own generator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>

namespace vellum {

class KoralRandom {
  public:
    // Without a seed: reseeded from the clock by every startStatement().
    explicit KoralRandom(std::optional<std::uint32_t> seed = std::nullopt);

    // Called at every evaluation of an apply statement.
    void startStatement();
    // A random number modulo `count`; `count` must be greater than 0.
    std::size_t below(std::size_t count);

  private:
    std::optional<std::uint32_t> seed_;
    std::mt19937 engine_;
    // Under the clock: the last seed, and whether the engine is still as it left it.
    std::uint32_t clockSeed_ = 0;
    bool fresh_ = false;
};

}  // namespace vellum
