// A text. Read from a file it is the text between the quotes as written there,
// backslash sequences included, so that writing it back reproduces the file.
#pragma once

#include <string>

#include "graph/Attribute.h"

namespace vellum {

class StringAttribute : public Attribute {
  public:
    StringAttribute(std::string name, std::string value);

    const std::string& value() const { return value_; }
    void setValue(std::string value) { value_ = std::move(value); }

    bool equals(const Attribute& other) const override;
    std::unique_ptr<Attribute> clone() const override;

  private:
    std::string value_;
};

}  // namespace vellum
