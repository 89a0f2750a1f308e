#include "tpx/TPXshared.h"

#include "base/Console.h"

namespace vellum {

void TPXshared::release() {
    if (m_NrReferences - 1 < 0) {
        reportAssertion("m_NrReferences >= 0", "Src/TPXshared", __LINE__);
        return;
    }
    if (--m_NrReferences == 0)
        delete this;
}

}  // namespace vellum
