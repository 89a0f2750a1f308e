#include "tpx/TPXpolygon.h"

#include <algorithm>

#include "base/Console.h"

namespace vellum {

TPXpolygon::TPXpolygon(int nrVertex) {
    if (nrVertex <= 0) {
        reportAssertion("nrVertex > 0", "Src/TPXpolygon", __LINE__);
        return;
    }
    m_corners.assign(static_cast<std::size_t>(nrVertex), 0);
}

bool TPXpolygon::validIndex(int index) const {
    if (index >= 0 && index < size())
        return true;
    reportAssertion("index >= 0 && index < m_nrVertex", "Src/TPXpolygon", __LINE__);
    return false;
}

int TPXpolygon::corner(int index) const {
    return validIndex(index) ? m_corners[static_cast<std::size_t>(index)] : 0;
}

void TPXpolygon::setCorner(int index, int vertex) {
    if (validIndex(index))
        m_corners[static_cast<std::size_t>(index)] = vertex;
}

void TPXpolygon::reverse() {
    std::reverse(m_corners.begin(), m_corners.end());
}

}  // namespace vellum
