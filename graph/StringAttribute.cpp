#include "graph/StringAttribute.h"

namespace vellum {

StringAttribute::StringAttribute(std::string name, std::string value)
    : Attribute(std::move(name), AttributeType::String), value_(std::move(value)) {}

bool StringAttribute::equals(const Attribute& other) const {
    const auto* o = dynamic_cast<const StringAttribute*>(&other);
    return o != nullptr && value_ == o->value_;
}

std::unique_ptr<Attribute> StringAttribute::clone() const {
    return withExtension(std::make_unique<StringAttribute>(name(), value_));
}

}  // namespace vellum
