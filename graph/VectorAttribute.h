// A sequence of doubles of any length, also none.
#pragma once

#include <vector>

#include "graph/Attribute.h"

namespace vellum {

class VectorAttribute : public Attribute {
  public:
    VectorAttribute(std::string name, std::vector<double> value);

    const std::vector<double>& value() const { return value_; }
    void setValue(std::vector<double> value) { value_ = std::move(value); }

    bool equals(const Attribute& other) const override;
    std::unique_ptr<Attribute> clone() const override;

  private:
    std::vector<double> value_;
};

}  // namespace vellum
