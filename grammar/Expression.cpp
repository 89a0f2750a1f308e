#include "grammar/Expression.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "base/Console.h"
#include "grammar/ExpressionGrammar.h"

namespace vellum {
namespace {

// A number token is digits with an optional fraction; integers must fit in 32 bits.
std::unique_ptr<ConstantNode> numberConstant(const std::string& text) {
    const char* first = text.data();
    const char* last = first + text.size();
    if (text.find('.') != std::string::npos) {
        double real = 0;
        const auto [end, error] = std::from_chars(first, last, real);
        if (error != std::errc() || end != last)
            return nullptr;
        return std::make_unique<ConstantNode>(Value::real(real));
    }
    std::int32_t integer = 0;
    const auto [end, error] = std::from_chars(first, last, integer);
    if (error != std::errc() || end != last)
        return nullptr;
    return std::make_unique<ConstantNode>(Value::integer(integer));
}

// Action numbers the grammar does not use, accepted with no effect.
constexpr int kFirstReservedAction = 15;
constexpr int kLastReservedAction = 19;

Operator relationFor(int code) {
    switch (code) {
        case kTokenLessEqual:
            return Operator::LessEqual;
        case kTokenGreaterEqual:
            return Operator::GreaterEqual;
        case kTokenLess:
            return Operator::Less;
        default:
            return Operator::Greater;
    }
}

}  // namespace

Expression::Expression() {
    loadGrammar(kExpressionGrammar, kExpressionTokens);
}

Expression::Expression(const std::string& text) : Expression() {
    setText(text);
}

Expression::~Expression() = default;

void Expression::setText(const std::string& text) {
    root_.reset();
    variableNames_.clear();
    builder_.clear();
    failure_ = exprException::kMalformed;
    failureValue_.reset();
    const bool parsed = parseString(text);
    NodePtr root = builder_.finish();
    if (!parsed || !root) {
        variableNames_.clear();
        throw exprException(failure_, std::move(failureValue_));
    }
    root_ = std::move(root);
}

std::unique_ptr<Value> Expression::evaluate(const Environment& environment) const {
    if (!root_)
        return nullptr;
    return root_->evaluate(environment);
}

std::vector<CallSite> Expression::calls() const {
    std::vector<const CallNode*> nodes;
    if (root_)
        root_->collectCalls(nodes);
    std::vector<CallSite> sites;
    sites.reserve(nodes.size());
    for (const CallNode* node : nodes)
        sites.push_back(node->site());
    return sites;
}

std::unique_ptr<Value> Expression::evaluateOnce(const std::string& text,
                                                const Environment& environment) {
    setText(text);
    // The tree goes whether or not evaluation throws.
    struct DropTree {
        NodePtr& root;
        std::vector<std::string>& names;
        ~DropTree() {
            root.reset();
            names.clear();
        }
    } drop{root_, variableNames_};
    return evaluate(environment);
}

int Expression::push(Operator op) {
    builder_.pushOperator(op);
    return 1;
}

int Expression::pushVariable() {
    std::string name(tokenText(0));
    if (std::find(variableNames_.begin(), variableNames_.end(), name) == variableNames_.end())
        variableNames_.push_back(name);
    builder_.pushOperand(std::make_unique<VariableNode>(std::move(name)));
    return 1;
}

int Expression::pushNumber() {
    auto constant = numberConstant(std::string(tokenText(0)));
    if (!constant)
        return 0;  // an integer beyond 32 bits: not a well-formed expression
    builder_.pushOperand(std::move(constant));
    return 1;
}

int Expression::pushCall() {
    const std::string text(tokenText(0));
    auto call = CallNode::load(text);
    if (!call) {
        failure_ = exprException::kLibraryNotLoaded;
        failureValue_ = Value::string(splitCallText(text).library);
        return 0;
    }
    builder_.pushOperand(std::move(call));
    return 1;
}

int Expression::reduce() {
    return builder_.reduce() ? 1 : 0;
}

int Expression::onAction(int number) {
    if (number >= kFirstReservedAction && number <= kLastReservedAction)
        return 1;
    switch (static_cast<ExpressionAction>(number)) {
        case ExpressionAction::Or:
            return push(Operator::Or);
        case ExpressionAction::And:
            return push(Operator::And);
        case ExpressionAction::Equality:
            return push(tokenCode(0) == kTokenEqual ? Operator::Equal : Operator::NotEqual);
        case ExpressionAction::Relation:
            return push(relationFor(tokenCode(0)));
        case ExpressionAction::Additive:
            return push(tokenCode(0) == kTokenPlus ? Operator::Add : Operator::Subtract);
        case ExpressionAction::Multiplicative:
            return push(tokenCode(0) == kTokenTimes ? Operator::Multiply : Operator::Divide);
        case ExpressionAction::Unary:
            builder_.setUnaryPending();
            return push(tokenCode(0) == kTokenMinus ? Operator::Negate : Operator::Not);
        case ExpressionAction::Variable:
            return pushVariable();
        case ExpressionAction::Number:
            return pushNumber();
        case ExpressionAction::String:
            builder_.pushOperand(
                std::make_unique<ConstantNode>(Value::string(std::string(tokenText(0)))));
            return 1;
        case ExpressionAction::Boolean:
            builder_.pushOperand(
                std::make_unique<ConstantNode>(Value::boolean(tokenCode(0) == kTokenTrue)));
            return 1;
        case ExpressionAction::Conditional:
            builder_.pushConditional();
            return 1;
        case ExpressionAction::Call:
            return pushCall();
        case ExpressionAction::Argument:
            return builder_.appendArgument() ? 1 : 0;
        case ExpressionAction::Reduce:
            return reduce();
        case ExpressionAction::ReduceUnary:
            return builder_.takeUnaryPending() ? reduce() : 1;
    }
    return unknownAction();
}

}  // namespace vellum
