#include "koral/KoralRandom.h"

#include <ctime>

namespace vellum {

KoralRandom::KoralRandom(std::optional<std::uint32_t> seed)
    : seed_(seed), engine_(seed.value_or(std::mt19937::default_seed)) {}

void KoralRandom::startStatement() {
    if (seed_)
        return;
    // Seeding costs more than a whole rule application: skip it when the engine is still in
    // the state that this very seed gave it.
    const auto now = static_cast<std::uint32_t>(std::time(nullptr));
    if (fresh_ && now == clockSeed_)
        return;
    engine_.seed(now);
    clockSeed_ = now;
    fresh_ = true;
}

std::size_t KoralRandom::below(std::size_t count) {
    // A choice of one decides nothing; under the clock, where every statement seeds afresh,
    // leaving the number undrawn keeps the engine fresh for the next statement.
    if (count == 1 && !seed_)
        return 0;
    fresh_ = false;
    return static_cast<std::size_t>(engine_()) % count;
}

}  // namespace vellum
