// The expression text of a right-hand attribute of a rule (written in square brackets in place
// of a value). It is kept in the attribute's extension, so host attributes do not grow; the
// attribute itself holds its type's default value until the expression is evaluated.
#pragma once

#include <memory>
#include <string>

#include "graph/Attribute.h"

namespace vellum {

class AttributeExpression : public ObjectExtension {
  public:
    explicit AttributeExpression(std::string text) : text_(std::move(text)) {}
    std::unique_ptr<ObjectExtension> clone() const override;

    // Without the brackets.
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

// The attribute's expression text, or null when it holds a plain value.
const std::string* expressionOf(const Attribute& attribute);
void setExpression(Attribute& attribute, std::string text);

}  // namespace vellum
