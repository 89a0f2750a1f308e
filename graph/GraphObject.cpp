#include "graph/GraphObject.h"

#include "graph/LabelIndex.h"

namespace vellum {

GraphObject::GraphObject(LabelBucket& label) : label_(&label) {}

GraphObject::~GraphObject() = default;

const std::string& GraphObject::label() const {
    return label_->text;
}

void GraphObject::setLabel(std::string_view label) {
    label_->index->relabel(*this, label);
}

bool GraphObject::addAttribute(std::unique_ptr<Attribute> attribute) {
    if (!attribute)
        return false;
    if (!attributes_)
        attributes_ = std::make_unique<AttributeList>();
    return attributes_->add(std::move(attribute));
}

void GraphObject::setAttribute(std::unique_ptr<Attribute> attribute) {
    if (!attribute)
        return;
    if (!attributes_)
        attributes_ = std::make_unique<AttributeList>();
    attributes_->replace(std::move(attribute));
}

Attribute* GraphObject::findAttribute(std::string_view name) const {
    return attributes_ ? attributes_->find(name) : nullptr;
}

bool GraphObject::removeAttribute(std::string_view name) {
    if (!attributes_ || !attributes_->remove(name))
        return false;
    if (attributes_->empty())
        attributes_.reset();  // back to the cost of an object that never had attributes
    return true;
}

Attribute* GraphObject::firstAttribute() {
    return attributes_ ? attributes_->first() : nullptr;
}

Attribute* GraphObject::nextAttribute() {
    return attributes_ ? attributes_->next() : nullptr;
}

AttributeRange<const Attribute> GraphObject::attributes() const {
    if (!attributes_)
        return {};
    return static_cast<const AttributeList&>(*attributes_).view();
}

AttributeRange<Attribute> GraphObject::attributes() {
    return attributes_ ? attributes_->view() : AttributeRange<Attribute>{};
}

std::size_t GraphObject::attributeCount() const {
    return attributes_ ? attributes_->size() : 0;
}

}  // namespace vellum
