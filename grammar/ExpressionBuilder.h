// The two stacks an expression tree is built on while its text is parsed: finished operands, and
// pending operators and conditionals that wait for their operands, plus the unary-pending flag.
// The parser's actions push; reduce folds the top pending entry with the operands it takes. The
// flag is one boolean, not a stack: that is why a unary operator in front of a parenthesis
// applies to the first operand inside it.
#pragma once

#include <variant>
#include <vector>

#include "grammar/ExpressionNodes.h"

namespace vellum {

class ExpressionBuilder {
  public:
    // Trees nested deeper than this are refused: evaluating and destroying a tree recurse once
    // per level, and the machine stack must not run out on any input.
    static constexpr int kMaxDepth = 2000;

    void clear();

    void pushOperand(NodePtr node);
    void pushOperator(Operator op);
    void pushConditional();

    // Folds the top pending entry: a unary operator takes one operand, a binary one the right,
    // then the left, a conditional the else branch, the then branch and the condition (an operand
    // missing from the stack stays null and raises code 1 when evaluated). The result becomes an
    // operand. False when nothing is pending or the tree would nest too deep.
    bool reduce();

    // Moves the top operand into the argument list of the call node right below it. False when
    // there is no such call or the tree would nest too deep.
    bool appendArgument();

    void setUnaryPending() { unaryPending_ = true; }
    // Clears the flag and returns whether it was set.
    bool takeUnaryPending();

    // The built tree: the one operand left when no operator is pending, else null. Empties the
    // stacks either way.
    NodePtr finish();

  private:
    struct Operand {
        NodePtr node;
        int depth = 0;  // levels of the subtree (0 for a missing operand)
    };
    struct ConditionalMark {};
    using Pending = std::variant<Operator, ConditionalMark>;

    Operand popOperand();
    bool pushFolded(NodePtr node, int depth);

    std::vector<Operand> operands_;
    std::vector<Pending> pending_;
    bool unaryPending_ = false;
};

}  // namespace vellum
