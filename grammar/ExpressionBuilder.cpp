#include "grammar/ExpressionBuilder.h"

#include <algorithm>

#include "grammar/ExpressionCall.h"

namespace vellum {

void ExpressionBuilder::clear() {
    operands_.clear();
    pending_.clear();
    unaryPending_ = false;
}

void ExpressionBuilder::pushOperand(NodePtr node) {
    operands_.push_back({std::move(node), 1});
}

void ExpressionBuilder::pushOperator(Operator op) {
    pending_.emplace_back(op);
}

void ExpressionBuilder::pushConditional() {
    pending_.emplace_back(ConditionalMark{});
}

ExpressionBuilder::Operand ExpressionBuilder::popOperand() {
    if (operands_.empty())
        return {};
    Operand top = std::move(operands_.back());
    operands_.pop_back();
    return top;
}

bool ExpressionBuilder::pushFolded(NodePtr node, int depth) {
    if (depth > kMaxDepth)
        return false;
    operands_.push_back({std::move(node), depth});
    return true;
}

bool ExpressionBuilder::reduce() {
    if (pending_.empty())
        return false;
    const Pending top = pending_.back();
    pending_.pop_back();
    if (std::holds_alternative<ConditionalMark>(top)) {
        Operand otherwise = popOperand();
        Operand then = popOperand();
        Operand condition = popOperand();
        const int depth = 1 + std::max({condition.depth, then.depth, otherwise.depth});
        return pushFolded(
            std::make_unique<ConditionalNode>(std::move(condition.node), std::move(then.node),
                                              std::move(otherwise.node)),
            depth);
    }
    const Operator op = std::get<Operator>(top);
    Operand right = isUnary(op) ? Operand{} : popOperand();
    Operand left = popOperand();
    const int depth = 1 + std::max(left.depth, right.depth);
    return pushFolded(
        std::make_unique<OperatorNode>(op, std::move(left.node), std::move(right.node)), depth);
}

bool ExpressionBuilder::appendArgument() {
    if (operands_.size() < 2)
        return false;
    Operand& below = operands_[operands_.size() - 2];
    auto* call = dynamic_cast<CallNode*>(below.node.get());
    if (call == nullptr)
        return false;
    Operand argument = popOperand();
    below.depth = std::max(below.depth, argument.depth + 1);
    call->appendArgument(std::move(argument.node));
    return below.depth <= kMaxDepth;
}

bool ExpressionBuilder::takeUnaryPending() {
    const bool was = unaryPending_;
    unaryPending_ = false;
    return was;
}

NodePtr ExpressionBuilder::finish() {
    NodePtr root;
    if (operands_.size() == 1 && pending_.empty())
        root = std::move(operands_.back().node);
    clear();
    return root;
}

}  // namespace vellum
