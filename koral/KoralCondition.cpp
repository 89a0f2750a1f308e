#include "koral/KoralCondition.h"

namespace vellum {

// Defined here so that the interface's type information lives in the koral library.
KoralCondition::~KoralCondition() = default;

}  // namespace vellum
