#include "graph/RealAttribute.h"

namespace vellum {

RealAttribute::RealAttribute(std::string name, double value)
    : Attribute(std::move(name), AttributeType::Real), value_(value) {}

bool RealAttribute::equals(const Attribute& other) const {
    const auto* o = dynamic_cast<const RealAttribute*>(&other);
    return o != nullptr && value_ == o->value_;
}

std::unique_ptr<Attribute> RealAttribute::clone() const {
    return withExtension(std::make_unique<RealAttribute>(name(), value_));
}

}  // namespace vellum
