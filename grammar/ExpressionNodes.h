// The nodes of a built expression tree: constants, variables, operators and conditionals (library
// calls are in ExpressionCall.h). Each node owns its children and evaluates to a new value for the
// caller to own, or to nothing (only a library function yields nothing); errors are thrown as
// exprException. Internal to the expression object, which builds and owns the tree.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "grammar/ExpressionEnvironment.h"
#include "grammar/ExpressionOperator.h"
#include "grammar/Value.h"

namespace vellum {

class CallNode;

class ExpressionNode {
  public:
    virtual ~ExpressionNode() = default;
    // A new value, or null for nothing. Throws exprException.
    virtual std::unique_ptr<Value> evaluate(const Environment& environment) const = 0;
    // Appends the library calls of the subtree in written order (a call before the calls in its
    // arguments), for tools that check calls without making them.
    virtual void collectCalls(std::vector<const CallNode*>& calls) const;
};

using NodePtr = std::unique_ptr<ExpressionNode>;

// The value of an operand that must be there: throws exprException code 1 when the node is
// missing or evaluates to nothing.
Value evaluateOperand(const ExpressionNode* node, const Environment& environment);

class ConstantNode final : public ExpressionNode {
  public:
    explicit ConstantNode(Value value) : value_(std::move(value)) {}
    std::unique_ptr<Value> evaluate(const Environment& environment) const override;
    const Value& value() const { return value_; }

  private:
    Value value_;
};

// A name, dots included ("x.y"), looked up when evaluated: unbound raises code 5.
class VariableNode final : public ExpressionNode {
  public:
    explicit VariableNode(std::string name) : name_(std::move(name)) {}
    std::unique_ptr<Value> evaluate(const Environment& environment) const override;

  private:
    std::string name_;
};

// Both operands are always evaluated, left first: && and || do not short-circuit.
class OperatorNode final : public ExpressionNode {
  public:
    // A unary operator uses only `left`; a missing operand raises code 1 when evaluated.
    OperatorNode(Operator op, NodePtr left, NodePtr right)
        : op_(op), left_(std::move(left)), right_(std::move(right)) {}
    std::unique_ptr<Value> evaluate(const Environment& environment) const override;
    void collectCalls(std::vector<const CallNode*>& calls) const override;

  private:
    Operator op_;
    NodePtr left_;
    NodePtr right_;
};

// condition ? then : else, evaluating only the branch chosen.
class ConditionalNode final : public ExpressionNode {
  public:
    ConditionalNode(NodePtr condition, NodePtr thenBranch, NodePtr elseBranch)
        : condition_(std::move(condition)),
          then_(std::move(thenBranch)),
          else_(std::move(elseBranch)) {}
    std::unique_ptr<Value> evaluate(const Environment& environment) const override;
    void collectCalls(std::vector<const CallNode*>& calls) const override;

  private:
    NodePtr condition_;
    NodePtr then_;
    NodePtr else_;
};

}  // namespace vellum
