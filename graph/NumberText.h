// The conversions that the file readers apply to the text of a $NUMBER token. They are
// defined for every text: digits beyond the range of the result wrap around instead of
// overflowing, and a text that is no number gives 0.
#pragma once

#include <cstdint>
#include <string_view>

namespace vellum {

// Decimal integer: an optional "-", then digits up to the first other character (so "3.6"
// gives 3). Wraps modulo 2^32 where the value does not fit.
std::int32_t integerValue(std::string_view text);
// The real the text denotes; infinite beyond the range of a double.
double realValue(std::string_view text);

}  // namespace vellum
