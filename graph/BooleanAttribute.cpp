#include "graph/BooleanAttribute.h"

namespace vellum {

BooleanAttribute::BooleanAttribute(std::string name, bool value)
    : Attribute(std::move(name), AttributeType::Boolean), value_(value) {}

bool BooleanAttribute::equals(const Attribute& other) const {
    const auto* o = dynamic_cast<const BooleanAttribute*>(&other);
    return o != nullptr && value_ == o->value_;
}

std::unique_ptr<Attribute> BooleanAttribute::clone() const {
    return withExtension(std::make_unique<BooleanAttribute>(name(), value_));
}

}  // namespace vellum
