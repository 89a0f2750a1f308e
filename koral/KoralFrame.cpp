#include "koral/KoralFrame.h"

namespace vellum {

// Defined here so that the interface's type information lives in the koral library, the one
// copy that the program and every plug-in share.
KoralFrame::~KoralFrame() = default;

}  // namespace vellum
