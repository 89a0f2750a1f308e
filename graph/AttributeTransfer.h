// Gives a host object the attributes of a right-hand object of a rule: plain values are copied,
// expressions are evaluated in the occurrence's variable bindings and their results stored in
// the attribute's declared type. An attribute replaces the host's attribute of the same name
// in its place, or is appended; host attributes that the rule does not name stay. Internal
// attributes ("__*__") of the rule are never transferred.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grammar/Expression.h"
#include "graph/GraphObject.h"

namespace vellum {

// One attribute of a right-hand object, with its expression built once.
struct TransferItem {
    const Attribute* attribute = nullptr;
    std::unique_ptr<Expression> expression;  // null for a plain value, or when building failed
    int buildFailure = -1;                   // the exprException code of a failed build, or -1
};

// The items of a right-hand object's attributes, internal ones left out.
std::vector<TransferItem> transferItemsOf(const GraphObject& rightObject);

// Sets the attributes on `host`. On the first failure (an expression that does not build or
// evaluate, or whose result does not fit the declared type) writes one console line naming
// the rule and the attribute and returns false; the attributes before it are set.
bool transferAttributes(const std::vector<TransferItem>& items, GraphObject& host,
                        const Environment& bindings, const std::string& ruleName);

// The contents of a run of double-quoted pieces written one after the other, as the expression
// language holds strings ("red""!" holds red!), escapes kept as written; nothing when the text
// is not such a run.
std::optional<std::string> quotedPieces(std::string_view held);

// The attribute `declared` with the value `value` in its type: an integer widens to a real,
// a string held as quoted pieces ("red""!") is stored as their contents (red!), any other
// text as it is. Null, with `problem` set, when the types do not fit.
std::unique_ptr<Attribute> attributeFromValue(const Attribute& declared, const Value& value,
                                              std::string& problem);

}  // namespace vellum
