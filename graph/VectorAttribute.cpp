#include "graph/VectorAttribute.h"

namespace vellum {

VectorAttribute::VectorAttribute(std::string name, std::vector<double> value)
    : Attribute(std::move(name), AttributeType::Vector), value_(std::move(value)) {}

bool VectorAttribute::equals(const Attribute& other) const {
    const auto* o = dynamic_cast<const VectorAttribute*>(&other);
    return o != nullptr && value_ == o->value_;
}

std::unique_ptr<Attribute> VectorAttribute::clone() const {
    return withExtension(std::make_unique<VectorAttribute>(name(), value_));
}

}  // namespace vellum
