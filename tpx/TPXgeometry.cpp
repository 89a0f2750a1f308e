#include "tpx/TPXgeometry.h"

#include <algorithm>

#include "tpx/TPXcollision.h"

namespace vellum {

TPXgeometry::TPXgeometry(std::string name) : m_name(std::move(name)) {}

TPXgeometry::~TPXgeometry() = default;

void TPXgeometry::finish() {
    m_box = TPXboundingBox();
    for (const TPXvertex& vertex : m_vertices) {
        const TPXp3& p = vertex.position;
        if (m_box.empty) {
            m_box.min = m_box.max = p;
            m_box.empty = false;
            continue;
        }
        for (int c = TPXp3::X; c <= TPXp3::Z; ++c) {
            m_box.min[c] = std::min(m_box.min[c], p[c]);
            m_box.max[c] = std::max(m_box.max[c], p[c]);
        }
    }
    m_lists.clear();
    std::lock_guard<std::mutex> lock(m_collisionMutex);
    m_collision.reset();
}

const TPXcollisionModel& TPXgeometry::collisionModel() const {
    std::lock_guard<std::mutex> lock(m_collisionMutex);
    if (!m_collision)
        m_collision = std::make_unique<TPXcollisionModel>(TPXcollisionModel::trianglesOf(*this));
    return *m_collision;
}

std::optional<TPXhit> TPXgeometry::closestHit(const TPXp3& origin, const TPXp3& direction) const {
    return collisionModel().closestHit(origin, direction);
}

}  // namespace vellum
