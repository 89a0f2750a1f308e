// A double-precision real.
#pragma once

#include "graph/Attribute.h"

namespace vellum {

class RealAttribute : public Attribute {
  public:
    RealAttribute(std::string name, double value);

    double value() const { return value_; }
    void setValue(double value) { value_ = value; }

    bool equals(const Attribute& other) const override;
    std::unique_ptr<Attribute> clone() const override;

  private:
    double value_;
};

}  // namespace vellum
