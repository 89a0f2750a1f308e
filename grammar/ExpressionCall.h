// The library-call node of an expression tree: $(lib.name) with its arguments. The library is
// loaded when the node is made, while the expression is built; the function's entry is looked up
// then too, but a missing entry only surfaces when the call is evaluated.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grammar/ExpressionLibrary.h"
#include "grammar/ExpressionNodes.h"

namespace vellum {

// The names a call token's whole text is cut into at its first full stop: "$(vmath.twice)"
// names the library "$(vmath" and the function "twice)".
struct CallName {
    std::string library;
    std::string function;
};
CallName splitCallText(std::string_view text);

// A call as written, for tools that check calls without making them.
struct CallSite {
    std::string text;      // the call token: "$(vmath.max)"
    std::string library;   // the library's name as cut from it: "$(vmath"
    std::string function;  // the function's name as written: "max"
    bool found = false;    // the library exports the function
    // Each argument in written order: its value when it is a constant, else nothing.
    std::vector<std::optional<Value>> arguments;
};

class CallNode final : public ExpressionNode {
  public:
    // The node for a call token's text, or null when its library cannot be loaded.
    static std::unique_ptr<CallNode> load(const std::string& text);

    CallNode(CallName name, std::shared_ptr<FunctionLibrary> library, ExpressionFunction entry)
        : name_(std::move(name)), library_(std::move(library)), entry_(entry) {}

    void appendArgument(NodePtr argument) { arguments_.push_back(std::move(argument)); }

    // Evaluates the arguments in written order and calls the function with them. Throws
    // exprException code 1 when the entry or an argument's value is missing; returns what the
    // function returns, which may be nothing.
    std::unique_ptr<Value> evaluate(const Environment& environment) const override;
    void collectCalls(std::vector<const CallNode*>& calls) const override;

    // The call as written.
    CallSite site() const;

  private:
    CallName name_;
    std::shared_ptr<FunctionLibrary> library_;  // keeps entry_ loaded
    ExpressionFunction entry_;                  // null when the library does not export it
    std::vector<NodePtr> arguments_;
};

}  // namespace vellum
