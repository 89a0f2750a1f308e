#include "graph/NumberText.h"

#include <charconv>
#include <cstdlib>
#include <string>

namespace vellum {

std::int32_t integerValue(std::string_view text) {
    std::size_t at = 0;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative)
        at = 1;
    std::uint32_t value = 0;  // unsigned: wrapping is defined
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
        value = value * 10u + static_cast<std::uint32_t>(text[at] - '0');
    if (negative)
        value = 0u - value;
    return static_cast<std::int32_t>(value);
}

double realValue(std::string_view text) {
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // from_chars leaves the value alone then; the conventional result is an infinity (or 0
        // for a value too small), which strtod gives.
        return std::strtod(std::string(text).c_str(), nullptr);
    }
    return value;
}

}  // namespace vellum
