#include "graph/interchange/ImportedNames.h"

#include <cctype>

#include "graph/BooleanAttribute.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

std::unique_ptr<Attribute> renamed(const Attribute& attribute, const std::string& name) {
    switch (attribute.type()) {
        case AttributeType::Boolean:
            return std::make_unique<BooleanAttribute>(
                name, static_cast<const BooleanAttribute&>(attribute).value());
        case AttributeType::Integer:
            return std::make_unique<IntegerAttribute>(
                name, static_cast<const IntegerAttribute&>(attribute).value());
        case AttributeType::Real:
            return std::make_unique<RealAttribute>(
                name, static_cast<const RealAttribute&>(attribute).value());
        case AttributeType::String:
            return std::make_unique<StringAttribute>(
                name, static_cast<const StringAttribute&>(attribute).value());
        case AttributeType::Vector:
            return std::make_unique<VectorAttribute>(
                name, static_cast<const VectorAttribute&>(attribute).value());
    }
    return nullptr;
}

// A string a graph file can hold between its quotes: other bytes become "?", double quotes
// single ones, a backslash that ends the text "/".
std::string spellableString(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x20 || c > 0x7e)
            out += '?';
        else if (c == '"')
            out += '\'';
        else if (c == '\\' && i + 1 == text.size())
            out += '/';
        else
            out += static_cast<char>(c);
    }
    return out;
}

}  // namespace

std::string ImportedNames::identifierFrom(std::string_view text) {
    std::string out;
    for (char c : text)
        out += std::isalnum(static_cast<unsigned char>(c)) && static_cast<unsigned char>(c) < 0x80
                   ? c
                   : '_';
    if (out.empty() || !std::isalpha(static_cast<unsigned char>(out[0])))
        out.insert(0, "x");
    return out;
}

bool ImportedNames::refuse(const std::string& element, const std::string& what,
                           const std::string& reason, bool renamable) {
    if (refusal_.empty()) {
        refusal_ = element + ": " + what + " " + reason;
        renamable_ = renamable;
    }
    return false;
}

std::optional<std::string> ImportedNames::identifier(const std::string& element,
                                                     const std::string& what, std::string_view text,
                                                     bool isLabel) {
    auto check = [&](std::string_view candidate) {
        return isLabel ? spelling_.label(candidate) : spelling_.name(candidate);
    };
    const std::string reason = check(text);
    if (reason.empty())
        return std::string(text);
    const std::string described = what + " '" + FileSpelling::shown(text) + "'";
    if (!rename_) {
        refuse(element, described, "cannot be read: " + reason, true);
        return std::nullopt;
    }
    std::string candidate = identifierFrom(text);
    // A keyword at the front ("vertex1") still reads as two tokens.
    if (!check(candidate).empty())
        candidate.insert(0, "x_");
    if (const std::string still = check(candidate); !still.empty()) {
        refuse(element, described, "cannot be renamed: " + still, false);
        return std::nullopt;
    }
    changes_.push_back(element + ": " + described + " became '" + candidate + "'");
    return candidate;
}

std::optional<std::string> ImportedNames::label(const std::string& element, std::string_view text) {
    if (text.empty())
        return std::string();
    return identifier(element, "the label", text, true);
}

std::unique_ptr<Attribute> ImportedNames::attribute(const std::string& element,
                                                    std::unique_ptr<Attribute> attribute) {
    const std::optional<std::string> name =
        identifier(element, "the attribute name", attribute->name(), false);
    if (!name)
        return nullptr;
    if (*name != attribute->name())
        attribute = renamed(*attribute, *name);
    const std::string reason = spelling_.attribute(*attribute);
    if (reason.empty())
        return attribute;
    const std::string described = "the attribute '" + *name + "'";
    if (!rename_ || attribute->type() != AttributeType::String) {
        refuse(element, described, "cannot be read: " + reason,
               !rename_ && attribute->type() == AttributeType::String);
        return nullptr;
    }
    const std::string& value = static_cast<const StringAttribute&>(*attribute).value();
    auto changed = std::make_unique<StringAttribute>(*name, spellableString(value));
    if (const std::string still = spelling_.attribute(*changed); !still.empty()) {
        refuse(element, described, "cannot be read: " + still, false);
        return nullptr;
    }
    changes_.push_back(element + ": " + described + " '" + FileSpelling::shown(value) +
                       "' became '" + FileSpelling::shown(changed->value()) + "'");
    return changed;
}

}  // namespace vellum
