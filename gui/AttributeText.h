// AttributeText: an attribute's value as the attributes dialog shows it and reads it back from
// what the user typed: "true"/"false", decimal numbers, the string as it stands, and vectors as
// numbers separated by commas or spaces.
#pragma once

#include <memory>
#include <string>

#include "graph/Attribute.h"

namespace vellum {

std::string attributeText(const Attribute& attribute);

// The attribute `name` of `type` holding the value `text` denotes; null, with `why` saying
// what is wrong, when the text is no value of that type.
std::unique_ptr<Attribute> attributeFromText(const std::string& name, AttributeType type,
                                             const std::string& text, std::string& why);

}  // namespace vellum
