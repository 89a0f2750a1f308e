#include "graph/Attribute.h"

namespace vellum {

const char* attributeKeyword(AttributeType type) {
    switch (type) {
        case AttributeType::Boolean:
            return "boolean";
        case AttributeType::Integer:
            return "integer";
        case AttributeType::Real:
            return "real";
        case AttributeType::String:
            return "string";
        case AttributeType::Vector:
            return "vector";
    }
    return "unknown";
}

Attribute::Attribute(std::string name, AttributeType type) : name_(std::move(name)), type_(type) {}

Attribute::~Attribute() = default;

std::unique_ptr<Attribute> Attribute::withExtension(std::unique_ptr<Attribute> copy) const {
    if (extension_)
        copy->extension_ = extension_->clone();
    return copy;
}

}  // namespace vellum
