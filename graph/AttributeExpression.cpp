#include "graph/AttributeExpression.h"

namespace vellum {

std::unique_ptr<ObjectExtension> AttributeExpression::clone() const {
    return std::make_unique<AttributeExpression>(text_);
}

const std::string* expressionOf(const Attribute& attribute) {
    const auto* expression = dynamic_cast<const AttributeExpression*>(attribute.extension());
    return expression != nullptr ? &expression->text() : nullptr;
}

void setExpression(Attribute& attribute, std::string text) {
    attribute.setExtension(std::make_unique<AttributeExpression>(std::move(text)));
}

}  // namespace vellum
