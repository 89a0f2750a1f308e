#include "koral/KoralRandom.h"

#include <ctime>

namespace vellum {

KoralRandom::KoralRandom(std::optional<std::uint32_t> seed)
    : seed_(seed), engine_(seed.value_or(std::mt19937::default_seed)) {}

void KoralRandom::startStatement() {
    if (!seed_)
        engine_.seed(static_cast<std::uint32_t>(std::time(nullptr)));
}

std::size_t KoralRandom::below(std::size_t count) {
    return static_cast<std::size_t>(engine_()) % count;
}

}  // namespace vellum
