#include "gui/AttributeText.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <sstream>

#include "graph/BooleanAttribute.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

// The whole text as a real; none when anything but one number is there.
bool parseReal(const std::string& text, double& value) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    value = std::strtod(begin, &end);
    if (end == begin || errno == ERANGE)
        return false;
    while (*end == ' ')
        ++end;
    return *end == '\0';
}

bool parseInteger(const std::string& text, std::int32_t& value) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    const long long parsed = std::strtoll(begin, &end, 10);
    if (end == begin || errno == ERANGE || parsed < INT32_MIN || parsed > INT32_MAX)
        return false;
    while (*end == ' ')
        ++end;
    value = static_cast<std::int32_t>(parsed);
    return *end == '\0';
}

bool parseVector(std::string text, std::vector<double>& value) {
    for (char& c : text)
        if (c == ',')
            c = ' ';
    std::istringstream words(text);
    std::string word;
    while (words >> word) {
        double component = 0;
        if (!parseReal(word, component))
            return false;
        value.push_back(component);
    }
    return true;
}

}  // namespace

std::string attributeText(const Attribute& attribute) {
    return attributeValueText(attribute, realText, ", ");
}

std::unique_ptr<Attribute> attributeFromText(const std::string& name, AttributeType type,
                                             const std::string& text, std::string& why) {
    if (name.empty()) {
        why = "An attribute needs a name.";
        return nullptr;
    }
    switch (type) {
        case AttributeType::Boolean:
            if (text == "true" || text == "false")
                return std::make_unique<BooleanAttribute>(name, text == "true");
            why = "A boolean is true or false.";
            return nullptr;
        case AttributeType::Integer: {
            std::int32_t value = 0;
            if (parseInteger(text, value))
                return std::make_unique<IntegerAttribute>(name, value);
            why = "'" + text + "' is no integer.";
            return nullptr;
        }
        case AttributeType::Real: {
            double value = 0;
            if (parseReal(text, value))
                return std::make_unique<RealAttribute>(name, value);
            why = "'" + text + "' is no real number.";
            return nullptr;
        }
        case AttributeType::String:
            return std::make_unique<StringAttribute>(name, text);
        case AttributeType::Vector: {
            std::vector<double> value;
            if (parseVector(text, value))
                return std::make_unique<VectorAttribute>(name, std::move(value));
            why = "A vector is numbers separated by commas.";
            return nullptr;
        }
    }
    return nullptr;
}

}  // namespace vellum
