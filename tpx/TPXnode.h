// TPXnode: a node of the scene tree. It has a kind, a name and a placement (position,
// orientation, scale and pivot) relative to its parent, and owns its children, which form a
// first-child / next-sibling chain; destroying a node destroys its subtree. Nodes at the top of
// a scene are siblings of one another, each owning the one after it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "tpx/TPXdrawContext.h"
#include "tpx/TPXgeometry.h"
#include "tpx/TPXmatrix.h"
#include "tpx/TPXtransform.h"

namespace vellum {

// The number given to a node at construction; kinds are part of the scene's contract.
enum class TPXkind : int {
    KeepsPlace = 1,   // always relinked with its place in the world kept
    ModelObject = 4,  // owns one geometry
    Widget = 7,       // the canvas's own helpers
    EdgeObject = 8,   // an edge of a graph shown as a scene
    Text = 9,         // a line of text facing the viewer (labels)
};

// What linking a node elsewhere keeps: its placement relative to the parent, or its place in
// the world (the placement is then recomputed under the new parent).
enum class TPXkeep { Local, World };

class TPXnode {
  public:
    TPXnode(TPXkind kind, std::string name);
    virtual ~TPXnode();
    TPXnode(const TPXnode&) = delete;
    TPXnode& operator=(const TPXnode&) = delete;

    TPXkind kind() const { return m_kind; }
    const std::string& name() const { return m_name; }
    void setName(std::string name) { m_name = std::move(name); }

    // The identity a picking pass reports for this node and what a graph element's "__link__"
    // holds; 0 (the default) means the node is picked as part of its nearest ancestor that has
    // one. Whoever builds a scene hands out identities unique within it.
    std::uint32_t identity() const { return m_identity; }
    void setIdentity(std::uint32_t identity) { m_identity = identity; }

    // The attached geometry; none at first.
    TPXgeometry* geometry() const { return m_geometry.get(); }
    void setGeometry(TPXref<TPXgeometry> geometry) { m_geometry = std::move(geometry); }

    // Draws this node alone (not its children) with its world matrix already loaded: by
    // default its geometry in the context's style. Edges, labels and helpers draw themselves.
    virtual void drawSelf(TPXdrawContext& context) const;
    // The box, in this node's space, that drawSelf stays within, so that drawing and picking
    // can skip the node when the box is out of view; none when not known (never skipped). By
    // default the geometry's box, except for edge objects, which draw beyond it. A subclass
    // whose drawSelf draws outside its geometry must widen the box or return none.
    virtual std::optional<TPXboundingBox> drawnBounds() const;

    TPXnode* parent() const { return m_parent; }
    TPXnode* firstChild() const { return m_firstChild.get(); }
    TPXnode* nextSibling() const { return m_nextSibling.get(); }
    TPXnode* previousSibling() const { return m_previousSibling; }

    const TPXplacement& placement() const { return m_placement; }
    void setPlacement(const TPXplacement& placement) { m_placement = placement; }
    void setPosition(const TPXp3& position) { m_placement.position = position; }
    void setOrientation(const TPXquaternion& orientation) { m_placement.orientation = orientation; }
    void setScale(const TPXp3& scale) { m_placement.scale = scale; }
    void setPivot(const TPXp3& pivot) { m_placement.pivot = pivot; }

    // The transform from this node's space to its parent's, and to the world's.
    TPXmatrix localMatrix() const { return m_placement.matrix(); }
    TPXmatrix worldMatrix() const;
    // The point `p` of this node's space in the world's: worldMatrix() applied to it, placement
    // by placement.
    TPXp3 worldPoint(const TPXp3& p) const;

    // Makes `child` (which must not be linked anywhere) this node's first child and returns it.
    TPXnode* adopt(std::unique_ptr<TPXnode> child, TPXkeep keep = TPXkeep::Local);
    // Puts `node` (which must not be linked anywhere) right after this node, under the same
    // parent, and returns it.
    TPXnode* adoptSibling(std::unique_ptr<TPXnode> node, TPXkeep keep = TPXkeep::Local);
    // Takes this node out of its parent and sibling chain and hands it, with its subtree, to
    // the caller. A node that is not linked returns null: whoever holds it owns it already.
    std::unique_ptr<TPXnode> unlink(TPXkeep keep = TPXkeep::Local);
    // Moves this node (with its subtree) to be the first child of `newParent`. Refused, with
    // false, when `newParent` is this node or lies in its subtree, or when this node is not
    // linked (its owner holds it; use adopt).
    bool relinkUnder(TPXnode& newParent, TPXkeep keep = TPXkeep::Local);

  private:
    bool isAncestorOf(const TPXnode& node) const;
    // Sets the placement so that the world matrix under `newParent` (null: the world) is `world`.
    void placeAt(const TPXmatrix& world, const TPXnode* newParent);
    TPXkeep effective(TPXkeep keep) const;

    TPXkind m_kind;
    std::string m_name;
    std::uint32_t m_identity = 0;
    TPXref<TPXgeometry> m_geometry;
    TPXplacement m_placement;
    TPXnode* m_parent = nullptr;
    // Invariants: m_firstChild->m_previousSibling is null; m_nextSibling->m_previousSibling is
    // this; every child's m_parent is this.
    std::unique_ptr<TPXnode> m_firstChild;
    std::unique_ptr<TPXnode> m_nextSibling;
    TPXnode* m_previousSibling = nullptr;
};

}  // namespace vellum
