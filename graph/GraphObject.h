// The common base of vertices and edges: class name, label and owned attributes. Objects are
// made only by their DirectedGraph, in its pool, which keeps the label index in step with
// setLabel(). An object without attributes or client data pays nothing for them (LabelSlot),
// and there is no virtual table: a graph of millions of elements is mostly these objects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "graph/AttributeList.h"
#include "graph/IntrusiveList.h"
#include "graph/LabelSlot.h"
#include "graph/ObjectExtension.h"

namespace vellum {

struct GraphListTag;  // links of the graph's vertex list and edge list
struct LabelTag;      // links of the label index
struct LabelBucket;

enum class GraphObjectKind { Vertex, Edge };

class GraphObject : public ListHook<GraphListTag>, public ListHook<LabelTag> {
  public:
    GraphObject(const GraphObject&) = delete;
    GraphObject& operator=(const GraphObject&) = delete;

    // "DirectedGraphVertex" or "DirectedGraphEdge"; shared text, no storage per object.
    const std::string& className() const;
    GraphObjectKind kind() const { return edge_ ? GraphObjectKind::Edge : GraphObjectKind::Vertex; }

    // Empty when the object has none.
    const std::string& label() const;
    // Also moves the object to the new label's entry of its graph's label index.
    void setLabel(std::string_view label);

    // True while the object is an element of its graph: false for an edge removed as a
    // self-loop whose entry lingers in its vertex's incoming list, and for a vertex taken out by
    // removeVertexOnly() that live edges still point at.
    bool inGraph() const { return ListHook<LabelTag>::linked(); }

    // Appends the attribute unless the object already has one of that name: then false, the
    // old value stays (first definition wins) and the given attribute is destroyed.
    bool addAttribute(std::unique_ptr<Attribute> attribute);
    // The attribute of that name (exact comparison), or null.
    Attribute* findAttribute(std::string_view name) const;
    // Destroys the attribute of that name; false when there is none.
    bool removeAttribute(std::string_view name);
    // first/next iteration with the cursor kept in the list; null at the end.
    Attribute* firstAttribute();
    Attribute* nextAttribute();
    AttributeRange<const Attribute> attributes() const;
    AttributeRange<Attribute> attributes();
    std::size_t attributeCount() const;

    // Appends the attribute, or replaces the one of the same name in its place.
    void setAttribute(std::unique_ptr<Attribute> attribute);

    // The object's place in its graph's creation order: larger for later objects, so it orders
    // the vertex list and the edge list (which only append) in constant time. 0 before the
    // graph gives it one.
    std::uint64_t serial() const { return serial_; }

    // Client data (the rule model's); null for host graphs.
    ObjectExtension* extension() const;
    void setExtension(std::unique_ptr<ObjectExtension> extension);

  protected:
    GraphObject(LabelBucket& label, GraphObjectKind kind);
    // Not virtual: the graph's pool destroys each object as what it is.
    ~GraphObject() = default;

  private:
    friend class LabelIndex;
    friend class DirectedGraph;

    LabelBucket& bucket() const { return *label_.bucket(); }
    AttributeList* attributeList() const;

    LabelSlot label_;
    // The kind shares the serial's word; 63 bits of creation order outlast any run.
    std::uint64_t serial_ : 63;
    std::uint64_t edge_ : 1;
};

}  // namespace vellum
