#include "grammar/ExpressionNodes.h"

#include <functional>

#include "grammar/ExpressionException.h"

namespace vellum {

Value evaluateOperand(const ExpressionNode* node, const Environment& environment) {
    if (node == nullptr)
        throw exprException(exprException::kMissing);
    std::unique_ptr<Value> value = node->evaluate(environment);
    if (!value)
        throw exprException(exprException::kMissing);
    return std::move(*value);
}

void ExpressionNode::collectCalls(std::vector<const CallNode*>&) const {}

std::unique_ptr<Value> ConstantNode::evaluate(const Environment&) const {
    return std::make_unique<Value>(value_);
}

std::unique_ptr<Value> VariableNode::evaluate(const Environment& environment) const {
    std::unique_ptr<Value> value = environment.lookup(name_);
    if (!value)
        throw exprException(exprException::kUnbound, Value::string(name_));
    return value;
}

std::unique_ptr<Value> OperatorNode::evaluate(const Environment& environment) const {
    if (!left_ || (!isUnary(op_) && !right_))
        throw exprException(exprException::kMissing);
    const Value left = evaluateOperand(left_.get(), environment);
    if (isUnary(op_))
        return std::make_unique<Value>(applyUnary(op_, left));
    const Value right = evaluateOperand(right_.get(), environment);
    return std::make_unique<Value>(applyBinary(op_, left, right));
}

void OperatorNode::collectCalls(std::vector<const CallNode*>& calls) const {
    for (const NodePtr& operand : {std::cref(left_), std::cref(right_)}) {
        if (operand.get())
            operand.get()->collectCalls(calls);
    }
}

std::unique_ptr<Value> ConditionalNode::evaluate(const Environment& environment) const {
    if (!condition_ || !then_ || !else_)
        throw exprException(exprException::kMissing);
    const Value condition = evaluateOperand(condition_.get(), environment);
    if (!condition.is(ValueType::Boolean))
        throw exprException(exprException::kConditionNotBoolean, condition);
    return condition.asBoolean() ? then_->evaluate(environment) : else_->evaluate(environment);
}

void ConditionalNode::collectCalls(std::vector<const CallNode*>& calls) const {
    for (const NodePtr& part : {std::cref(condition_), std::cref(then_), std::cref(else_)}) {
        if (part.get())
            part.get()->collectCalls(calls);
    }
}

}  // namespace vellum
