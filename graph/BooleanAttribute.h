// A truth value (files write "true" or "false").
#pragma once

#include "graph/Attribute.h"

namespace vellum {

class BooleanAttribute : public Attribute {
  public:
    BooleanAttribute(std::string name, bool value);

    bool value() const { return value_; }
    void setValue(bool value) { value_ = value; }

    bool equals(const Attribute& other) const override;
    std::unique_ptr<Attribute> clone() const override;

  private:
    bool value_;
};

}  // namespace vellum
