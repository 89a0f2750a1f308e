#include "grammar/Expression.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "base/Console.h"
#include "grammar/ExpressionCall.h"
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
    loadGrammar(expressionGrammarText(), expressionTokenText());
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

int Expression::latestCode() const {
    const TokenRecord* token = tokenAt(0);
    return token == nullptr ? -1 : token->code;
}

std::string Expression::latestText() const {
    const TokenRecord* token = tokenAt(0);
    return token == nullptr ? std::string() : token->text;
}

int Expression::push(Operator op) {
    builder_.pushOperator(op);
    return 1;
}

int Expression::pushVariable() {
    std::string name = latestText();
    if (std::find(variableNames_.begin(), variableNames_.end(), name) == variableNames_.end())
        variableNames_.push_back(name);
    builder_.pushOperand(std::make_unique<VariableNode>(std::move(name)));
    return 1;
}

int Expression::pushNumber() {
    auto constant = numberConstant(latestText());
    if (!constant)
        return 0;  // an integer beyond 32 bits: not a well-formed expression
    builder_.pushOperand(std::move(constant));
    return 1;
}

int Expression::pushCall() {
    const std::string text = latestText();
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
    switch (number) {
        case 1:
            return push(Operator::Or);
        case 2:
            return push(Operator::And);
        case 3:
            return push(latestCode() == kTokenEqual ? Operator::Equal : Operator::NotEqual);
        case 4:
            return push(relationFor(latestCode()));
        case 5:
            return push(latestCode() == kTokenPlus ? Operator::Add : Operator::Subtract);
        case 6:
            return push(latestCode() == kTokenTimes ? Operator::Multiply : Operator::Divide);
        case 7:
            builder_.setUnaryPending();
            return push(latestCode() == kTokenMinus ? Operator::Negate : Operator::Not);
        case 8:
            return pushVariable();
        case 9:
            return pushNumber();
        case 10:
            builder_.pushOperand(std::make_unique<ConstantNode>(Value::string(latestText())));
            return 1;
        case 11:
            builder_.pushOperand(
                std::make_unique<ConstantNode>(Value::boolean(latestCode() == kTokenTrue)));
            return 1;
        case 12:
            builder_.pushConditional();
            return 1;
        case 13:
            return pushCall();
        case 14:
            return builder_.appendArgument() ? 1 : 0;
        case 15:
        case 16:
        case 17:
        case 18:
        case 19:
            return 1;
        case 20:
            return reduce();
        case 21:
            return builder_.takeUnaryPending() ? reduce() : 1;
        default:
            console() << "Unkown callback number !!!\n";
            return 0;
    }
}

}  // namespace vellum
