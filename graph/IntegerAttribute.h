// A signed 32-bit integer.
#pragma once

#include <cstdint>

#include "graph/Attribute.h"

namespace vellum {

class IntegerAttribute : public Attribute {
  public:
    IntegerAttribute(std::string name, std::int32_t value);

    std::int32_t value() const { return value_; }
    void setValue(std::int32_t value) { value_ = value; }

    bool equals(const Attribute& other) const override;
    std::unique_ptr<Attribute> clone() const override;

  private:
    std::int32_t value_;
};

}  // namespace vellum
