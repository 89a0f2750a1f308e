#include "graph/IntegerAttribute.h"

namespace vellum {

IntegerAttribute::IntegerAttribute(std::string name, std::int32_t value)
    : Attribute(std::move(name), AttributeType::Integer), value_(value) {}

bool IntegerAttribute::equals(const Attribute& other) const {
    const auto* o = dynamic_cast<const IntegerAttribute*>(&other);
    return o != nullptr && value_ == o->value_;
}

std::unique_ptr<Attribute> IntegerAttribute::clone() const {
    return withExtension(std::make_unique<IntegerAttribute>(name(), value_));
}

}  // namespace vellum
