#include "graph/AttributeTransfer.h"

#include <optional>
#include <string_view>

#include "base/Console.h"
#include "graph/AttributeExpression.h"
#include "graph/BooleanAttribute.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"

namespace vellum {

std::optional<std::string> quotedPieces(std::string_view held) {
    if (held.empty())
        return std::nullopt;
    std::string contents;
    std::size_t at = 0;
    while (at < held.size()) {
        if (held[at++] != '"')
            return std::nullopt;
        while (at < held.size() && held[at] != '"') {
            if (held[at] == '\\' && at + 1 < held.size())
                contents += held[at++];
            contents += held[at++];
        }
        if (at++ >= held.size())
            return std::nullopt;  // no closing quote
    }
    return contents;
}

namespace {

// The evaluated attribute, or null after reporting the problem.
std::unique_ptr<Attribute> evaluated(const TransferItem& item, const Environment& bindings,
                                     const std::string& ruleName) {
    const std::string& name = item.attribute->name();
    std::string problem;
    try {
        if (item.buildFailure >= 0)
            throw exprException(item.buildFailure);
        std::unique_ptr<Value> value = item.expression->evaluate(bindings);
        if (value == nullptr)
            problem = "the expression gives no value";
        else if (auto made = attributeFromValue(*item.attribute, *value, problem))
            return made;
    } catch (const exprException& error) {
        problem = "exprException " + std::to_string(error.code());
    }
    console() << "Rule '" << ruleName << "': attribute '" << name << "' not set: " << problem
              << "\n";
    return nullptr;
}

}  // namespace

std::vector<TransferItem> transferItemsOf(const GraphObject& rightObject) {
    std::vector<TransferItem> items;
    for (const Attribute& attribute : rightObject.attributes()) {
        if (isInternalName(attribute.name()))
            continue;
        TransferItem item;
        item.attribute = &attribute;
        const std::string* text = expressionOf(attribute);
        if (text != nullptr && attribute.type() != AttributeType::Vector) {
            try {
                item.expression = std::make_unique<Expression>(*text);
            } catch (const exprException& error) {
                item.buildFailure = error.code();
            }
        }
        items.push_back(std::move(item));
    }
    return items;
}

std::unique_ptr<Attribute> attributeFromValue(const Attribute& declared, const Value& value,
                                              std::string& problem) {
    const std::string& name = declared.name();
    switch (declared.type()) {
        case AttributeType::Boolean:
            if (value.is(ValueType::Boolean))
                return std::make_unique<BooleanAttribute>(name, value.asBoolean());
            break;
        case AttributeType::Integer:
            if (value.is(ValueType::Integer))
                return std::make_unique<IntegerAttribute>(name, value.asInteger());
            break;
        case AttributeType::Real:
            if (value.is(ValueType::Real))
                return std::make_unique<RealAttribute>(name, value.asReal());
            if (value.is(ValueType::Integer))
                return std::make_unique<RealAttribute>(name, value.asInteger());
            break;
        case AttributeType::String:
            if (value.is(ValueType::String)) {
                std::optional<std::string> pieces = quotedPieces(value.asString());
                return std::make_unique<StringAttribute>(
                    name, pieces ? std::move(*pieces) : value.asString());
            }
            break;
        case AttributeType::Vector:
            break;
    }
    problem = std::string("the expression's value is ") + valueTypeName(value.type()) +
              ", the attribute is " + attributeKeyword(declared.type());
    return nullptr;
}

bool transferAttributes(const std::vector<TransferItem>& items, GraphObject& host,
                        const Environment& bindings, const std::string& ruleName) {
    for (const TransferItem& item : items) {
        std::unique_ptr<Attribute> attribute;
        if (item.expression != nullptr || item.buildFailure >= 0) {
            attribute = evaluated(item, bindings, ruleName);
            if (attribute == nullptr)
                return false;
        } else {
            attribute = item.attribute->clone();
            attribute->setExtension(nullptr);  // host attributes carry no rule data
        }
        host.setAttribute(std::move(attribute));
    }
    return true;
}

}  // namespace vellum
