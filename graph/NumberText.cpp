#include "graph/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

#include "graph/BooleanAttribute.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

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

std::string realText(double value) {
    // to_chars, unlike printf, ignores the C locale (a GUI may set one with a decimal comma).
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
    const std::string_view shown(text, static_cast<std::size_t>(end.ptr - text));
    const std::size_t e = shown.find('e');
    if (e == std::string_view::npos || !std::isfinite(value))
        return std::string(shown);
    // "-d.ddddde-XX": the digits without sign and point, and where the point goes among them.
    const bool negative = shown[0] == '-';
    std::string digits;
    for (char c : shown.substr(negative ? 1 : 0, e - (negative ? 1 : 0))) {
        if (c != '.')
            digits.push_back(c);
    }
    long exponent = 0;
    const std::string_view power = shown.substr(e + 1);
    std::from_chars(power.data() + (power[0] == '+' ? 1 : 0), power.data() + power.size(),
                    exponent);
    const long point = exponent + 1;
    std::string result = negative ? "-" : "";
    const long count = static_cast<long>(digits.size());
    if (point <= 0) {
        result += "0.";
        result.append(static_cast<std::size_t>(-point), '0');
        result += digits;
    } else if (point >= count) {
        result += digits;
        result.append(static_cast<std::size_t>(point - count), '0');
    } else {
        result += digits.substr(0, static_cast<std::size_t>(point));
        result += '.';
        result += digits.substr(static_cast<std::size_t>(point));
    }
    return result;
}

std::string attributeValueText(const Attribute& attribute, std::string (*real)(double),
                               const char* separator) {
    switch (attribute.type()) {
        case AttributeType::Boolean:
            return static_cast<const BooleanAttribute&>(attribute).value() ? "true" : "false";
        case AttributeType::Integer:
            return std::to_string(static_cast<const IntegerAttribute&>(attribute).value());
        case AttributeType::Real:
            return real(static_cast<const RealAttribute&>(attribute).value());
        case AttributeType::String:
            return static_cast<const StringAttribute&>(attribute).value();
        case AttributeType::Vector: {
            std::string text;
            for (double element : static_cast<const VectorAttribute&>(attribute).value())
                text += (text.empty() ? "" : separator) + real(element);
            return text;
        }
    }
    return {};
}

}  // namespace vellum
