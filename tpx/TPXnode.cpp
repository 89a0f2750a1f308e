#include "tpx/TPXnode.h"

namespace vellum {

TPXnode::TPXnode(TPXkind kind, std::string name) : m_kind(kind), m_name(std::move(name)) {}

TPXnode::~TPXnode() {
    // Long sibling chains (a graph's vertices) are taken apart in a loop, not by recursion.
    while (m_firstChild) {
        std::unique_ptr<TPXnode> child = std::move(m_firstChild);
        m_firstChild = std::move(child->m_nextSibling);
    }
    while (m_nextSibling) {
        std::unique_ptr<TPXnode> next = std::move(m_nextSibling);
        m_nextSibling = std::move(next->m_nextSibling);
    }
}

void TPXnode::drawSelf(TPXdrawContext& context) const {
    if (m_geometry)
        m_geometry->draw(context);
}

std::optional<TPXboundingBox> TPXnode::drawnBounds() const {
    if (!m_geometry || m_kind == TPXkind::EdgeObject || m_geometry->boundingBox().empty)
        return std::nullopt;
    return m_geometry->boundingBox();
}

TPXmatrix TPXnode::worldMatrix() const {
    TPXmatrix world = localMatrix();
    for (const TPXnode* up = m_parent; up; up = up->m_parent)
        world = up->localMatrix() * world;
    return world;
}

TPXp3 TPXnode::worldPoint(const TPXp3& p) const {
    TPXp3 result = p;
    for (const TPXnode* node = this; node; node = node->m_parent)
        result = node->m_placement.transform(result);
    return result;
}

TPXkeep TPXnode::effective(TPXkeep keep) const {
    return m_kind == TPXkind::KeepsPlace ? TPXkeep::World : keep;
}

TPXnode* TPXnode::adopt(std::unique_ptr<TPXnode> child, TPXkeep keep) {
    TPXnode* node = child.get();
    // Not yet linked, so its current world matrix is its local one.
    const bool keepWorld = node->effective(keep) == TPXkeep::World;
    const std::optional<TPXmatrix> world =
        keepWorld ? std::optional<TPXmatrix>(node->localMatrix()) : std::nullopt;
    if (m_firstChild)
        m_firstChild->m_previousSibling = node;
    node->m_nextSibling = std::move(m_firstChild);
    node->m_parent = this;
    m_firstChild = std::move(child);
    if (keepWorld)
        node->placeAt(*world, this);
    return node;
}

TPXnode* TPXnode::adoptSibling(std::unique_ptr<TPXnode> sibling, TPXkeep keep) {
    TPXnode* node = sibling.get();
    const bool keepWorld = node->effective(keep) == TPXkeep::World;
    const std::optional<TPXmatrix> world =
        keepWorld ? std::optional<TPXmatrix>(node->localMatrix()) : std::nullopt;
    if (m_nextSibling)
        m_nextSibling->m_previousSibling = node;
    node->m_nextSibling = std::move(m_nextSibling);
    node->m_previousSibling = this;
    node->m_parent = m_parent;
    m_nextSibling = std::move(sibling);
    if (keepWorld)
        node->placeAt(*world, m_parent);
    return node;
}

std::unique_ptr<TPXnode> TPXnode::unlink(TPXkeep keep) {
    std::unique_ptr<TPXnode>* owner = m_previousSibling ? &m_previousSibling->m_nextSibling
                                      : m_parent        ? &m_parent->m_firstChild
                                                        : nullptr;
    if (!owner)
        return nullptr;
    const bool keepWorld = effective(keep) == TPXkeep::World;
    const std::optional<TPXmatrix> world =
        keepWorld ? std::optional<TPXmatrix>(worldMatrix()) : std::nullopt;
    std::unique_ptr<TPXnode> self = std::move(*owner);
    *owner = std::move(m_nextSibling);
    if (*owner)
        (*owner)->m_previousSibling = m_previousSibling;
    m_previousSibling = nullptr;
    m_parent = nullptr;
    if (keepWorld)
        placeAt(*world, nullptr);
    return self;
}

bool TPXnode::relinkUnder(TPXnode& newParent, TPXkeep keep) {
    if (isAncestorOf(newParent) || (!m_parent && !m_previousSibling))
        return false;
    const TPXmatrix world = worldMatrix();
    newParent.adopt(unlink(TPXkeep::Local), TPXkeep::Local);
    if (effective(keep) == TPXkeep::World)
        placeAt(world, &newParent);
    return true;
}

bool TPXnode::isAncestorOf(const TPXnode& node) const {
    for (const TPXnode* up = &node; up; up = up->m_parent)
        if (up == this)
            return true;
    return false;
}

void TPXnode::placeAt(const TPXmatrix& world, const TPXnode* newParent) {
    if (!newParent) {
        m_placement = TPXplacement::fromMatrix(world, m_placement.pivot);
        return;
    }
    // A parent that flattens space has no inverse: the node keeps its local placement.
    const std::optional<TPXmatrix> up = TPXinverseAffine(newParent->worldMatrix());
    if (up)
        m_placement = TPXplacement::fromMatrix(*up * world, m_placement.pivot);
}

}  // namespace vellum
