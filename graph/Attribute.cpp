#include "graph/Attribute.h"

namespace vellum {

Attribute::Attribute(std::string name, AttributeType type) : name_(std::move(name)), type_(type) {}

Attribute::~Attribute() = default;

std::unique_ptr<Attribute> Attribute::withExtension(std::unique_ptr<Attribute> copy) const {
    if (extension_)
        copy->extension_ = extension_->clone();
    return copy;
}

}  // namespace vellum
