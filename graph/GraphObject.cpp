#include "graph/GraphObject.h"

#include "graph/LabelIndex.h"

namespace vellum {

GraphObject::GraphObject(LabelBucket& label, GraphObjectKind kind)
    : label_(label), serial_(0), edge_(kind == GraphObjectKind::Edge ? 1 : 0) {}

const std::string& GraphObject::className() const {
    static const std::string vertex = "DirectedGraphVertex";
    static const std::string edge = "DirectedGraphEdge";
    return edge_ ? edge : vertex;
}

const std::string& GraphObject::label() const {
    return bucket().text;
}

void GraphObject::setLabel(std::string_view label) {
    bucket().index->relabel(*this, label);
}

AttributeList* GraphObject::attributeList() const {
    ObjectExtras* extras = label_.extras();
    return extras != nullptr ? &extras->attributes : nullptr;
}

bool GraphObject::addAttribute(std::unique_ptr<Attribute> attribute) {
    if (!attribute)
        return false;
    const bool added = label_.ensureExtras().attributes.add(std::move(attribute));
    label_.dropExtrasIfEmpty();
    return added;
}

void GraphObject::setAttribute(std::unique_ptr<Attribute> attribute) {
    if (!attribute)
        return;
    label_.ensureExtras().attributes.replace(std::move(attribute));
}

Attribute* GraphObject::findAttribute(std::string_view name) const {
    AttributeList* list = attributeList();
    return list != nullptr ? list->find(name) : nullptr;
}

bool GraphObject::removeAttribute(std::string_view name) {
    AttributeList* list = attributeList();
    if (list == nullptr || !list->remove(name))
        return false;
    label_.dropExtrasIfEmpty();  // back to the cost of an object that never had attributes
    return true;
}

Attribute* GraphObject::firstAttribute() {
    AttributeList* list = attributeList();
    return list != nullptr ? list->first() : nullptr;
}

Attribute* GraphObject::nextAttribute() {
    AttributeList* list = attributeList();
    return list != nullptr ? list->next() : nullptr;
}

AttributeRange<const Attribute> GraphObject::attributes() const {
    const AttributeList* list = attributeList();
    if (list == nullptr)
        return {};
    return list->view();
}

AttributeRange<Attribute> GraphObject::attributes() {
    AttributeList* list = attributeList();
    return list != nullptr ? list->view() : AttributeRange<Attribute>{};
}

std::size_t GraphObject::attributeCount() const {
    const AttributeList* list = attributeList();
    return list != nullptr ? list->size() : 0;
}

ObjectExtension* GraphObject::extension() const {
    ObjectExtras* extras = label_.extras();
    return extras != nullptr ? extras->extension.get() : nullptr;
}

void GraphObject::setExtension(std::unique_ptr<ObjectExtension> extension) {
    if (!extension && label_.extras() == nullptr)
        return;
    label_.ensureExtras().extension = std::move(extension);
    label_.dropExtrasIfEmpty();
}

}  // namespace vellum
