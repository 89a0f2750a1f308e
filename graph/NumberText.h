// The conversions that the file readers apply to the text of a $NUMBER token, and the text that
// the file writers give a real. The readings are defined for every text: digits beyond the range
// of the result wrap around instead of overflowing, and a text that is no number gives 0.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "graph/Attribute.h"

namespace vellum {

// Decimal integer: an optional "-", then digits up to the first other character (so "3.6"
// gives 3). Wraps modulo 2^32 where the value does not fit.
std::int32_t integerValue(std::string_view text);
// The real the text denotes; infinite beyond the range of a double.
double realValue(std::string_view text);

// A finite real as graph and rule files write it: the six significant digits of the stream's
// default format, in plain decimal where that format would use an exponent (files have no
// exponent): 0.3, 1e-05 as 0.00001, 1.23457e+06 as 1234570. Reading the text gives the double
// nearest to what the default format denotes. Infinities and NaN give "inf"/"nan" (no number
// of the format; the writers refuse them before).
std::string realText(double value);

// The value as text: truth values "true"/"false", integers in decimal, a string as it stands,
// reals and a vector's elements written by `real`, the elements joined by `separator`.
std::string attributeValueText(const Attribute& attribute, std::string (*real)(double),
                               const char* separator);

}  // namespace vellum
