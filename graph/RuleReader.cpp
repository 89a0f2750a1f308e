#include "graph/RuleReader.h"

#include "base/Console.h"
#include "grammar/ParseReport.h"
#include "graph/AttributeExpression.h"
#include "graph/BooleanAttribute.h"
#include "graph/ExpressionCheck.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/ReaderMessages.h"
#include "graph/RealAttribute.h"
#include "graph/RuleFormat.h"
#include "graph/RuleObjectData.h"
#include "graph/StringAttribute.h"

namespace vellum {
namespace {}  // namespace

RuleReader::RuleReader() {
    loadGrammar(kRuleGrammar, kRuleTokens);
    // Long reals, strings and expressions: what the rule writer writes reads back.
    for (int code : {kNumberToken, kStringToken, kExpressionToken})
        scanner().setLengthBound(code, kMaxLiteralToken);
}

void RuleReader::reset(DirectedGraphRule& rule) {
    rule_ = &rule;
    side_ = Side::None;
    graph_ = nullptr;
    current_ = nullptr;
    currentVertex_ = nullptr;
    pairs_.clear();
    leftVertices_.clear();
    rightVertices_.clear();
    leftEdges_.clear();
    rightEdges_.clear();
}

bool RuleReader::read(const std::string& fileName, DirectedGraphRule& rule) {
    reset(rule);
    nameOffset_ = 0;
    std::string excerpt;
    long position = 0;
    const bool ok = parseFile(fileName, kExcerptBefore, kExcerptAfter, excerpt, position);
    if (ok)
        removeNumbers();
    reset(rule);
    rule_ = nullptr;
    if (!ok) {
        reportSyntaxError("File", fileName, position, lineNumber(), excerpt);
        return false;
    }
    return true;
}

void RuleReader::removeNumbers() {
    for (DirectedGraph* side : {&rule_->editLeftSide(), &rule_->editRightSide()}) {
        for (DirectedGraphVertex& vertex : side->vertices())
            vertex.removeAttribute(kNumberAttribute);
        for (DirectedGraphEdge& edge : side->edges())
            edge.removeAttribute(kNumberAttribute);
    }
}

int RuleReader::onAction(int number) {
    switch (static_cast<RuleAction>(number)) {
        case RuleAction::RuleName:
            return setName();
        case RuleAction::LeftSide:
            return startLeftSide();
        case RuleAction::RightSide:
            return startRightSide();
        case RuleAction::InterfaceEnd:
            return resolveInterface();
        case RuleAction::InterfacePair:
            return addInterfacePair();
        case RuleAction::Reference:
            return addReference();
        case RuleAction::Variable:
            return setVariable();
        case RuleAction::Condition:
            return setCondition();
    }
    return onGraphAction(static_cast<GraphAction>(number));
}

bool RuleReader::isExpression(std::size_t k) const {
    return tokenCode(k) == kExpressionToken;
}

bool RuleReader::setName() {
    rule_->setName(std::string(tokenText(0)));
    nameOffset_ = tokenSpan(0).first;
    return true;
}

bool RuleReader::startLeftSide() {
    side_ = Side::Left;
    graph_ = &rule_->editLeftSide();
    rule_->editInterface().clear();
    pairs_.clear();
    return true;
}

bool RuleReader::clearGraph() {
    if (graph_ == nullptr)
        return false;
    graph_->clear();
    current_ = nullptr;
    currentVertex_ = nullptr;
    verticesOfSide().clear();
    edgesOfSide().clear();
    return true;
}

bool RuleReader::startRightSide() {
    side_ = Side::Right;
    graph_ = &rule_->editRightSide();
    current_ = nullptr;
    currentVertex_ = nullptr;
    return true;
}

bool RuleReader::addInterfacePair() {
    const PairKind kind = tokenCode(3) == kVertexToken ? PairKind::Vertex : PairKind::Edge;
    pairs_.push_back({kind, integerValue(tokenText(2)), integerValue(tokenText(0)),
                      tokenSpan(2).first, tokenSpan(0).first});
    return true;
}

bool RuleReader::resolveInterface() {
    // A number that names no object leaves that side of the pair empty, without a message.
    GraphMorphism& interface = rule_->editInterface();
    interface.clear();
    for (const NumberPair& pair : pairs_) {
        if (pair.kind == PairKind::Vertex) {
            DirectedGraphVertex* left = numbered(leftVertices_, pair.left);
            DirectedGraphVertex* right = numbered(rightVertices_, pair.right);
            interface.addVertexPair(left, right);
            checkInterfaceNumber(pair.kind, left != nullptr, pair.left, pair.leftAt, "left");
            checkInterfaceNumber(pair.kind, right != nullptr, pair.right, pair.rightAt, "right");
        } else {
            DirectedGraphEdge* left = numbered(leftEdges_, pair.left);
            DirectedGraphEdge* right = numbered(rightEdges_, pair.right);
            interface.addEdgePair(left, right);
            checkInterfaceNumber(pair.kind, left != nullptr, pair.left, pair.leftAt, "left");
            checkInterfaceNumber(pair.kind, right != nullptr, pair.right, pair.rightAt, "right");
        }
    }
    return true;
}

void RuleReader::checkInterfaceNumber(PairKind kind, bool found, std::int32_t number, long at,
                                      const char* side) const {
    if (found)
        return;
    const char* what = kind == PairKind::Vertex ? "vertex" : "edge";
    diagnose(Severity::Warning, fileName(), at,
             std::string("the interface names ") + what + " '" + std::to_string(number) +
                 "', which the " + side + "-hand side does not have");
}

bool RuleReader::addVertex() {
    if (graph_ == nullptr)
        return false;
    DirectedGraphVertex* vertex = addNumberedVertex(*graph_, verticesOfSide());
    currentVertex_ = vertex;
    if (tokenCode(1) != kReferenceToken)
        return true;
    if (side_ == Side::Left) {
        setForcedReference(*vertex, true);
        return true;
    }
    console() << "WARNING!!!\n"
              << "You can't force a reference to a node on the right hand side of the rule!\n"
              << "Ignoring this time...\n";
    diagnoseToken(Severity::Warning, 1,
                  "You can't force a reference to a node on the right hand side of the rule: "
                  "the '@' is ignored");
    return true;
}

bool RuleReader::addReference() {
    if (side_ != Side::Right) {
        console() << ruleMessages::referenceOnLeft << "\n";
        diagnoseToken(Severity::Error, 1,
                      "You can't reference a node in the left hand side of the rule");
        return false;
    }
    const std::int32_t number = integerValue(tokenText(0));
    DirectedGraphVertex* left = numbered(leftVertices_, number);
    if (left == nullptr) {
        console() << "Could not resolve the reference to vertex with the number '" << number
                  << "' !!!\n";
        diagnoseToken(Severity::Error, 0,
                      "Could not resolve the reference to vertex with the number '" +
                          std::to_string(number) + "'");
        return false;
    }
    if (currentVertex_ == nullptr)
        return false;
    setReference(*currentVertex_, left);
    return true;
}

bool RuleReader::setVariable() {
    if (side_ != Side::Left) {
        console() << ruleMessages::variableOnRight << "\n";
        diagnoseToken(Severity::Error, 0,
                      "Variables are only allowed on the left hand side of the rule");
        return false;
    }
    if (current_ == nullptr)
        return false;
    vellum::setVariable(*current_, std::string(tokenText(0)));
    return true;
}

bool RuleReader::addAttribute(AttributeType type) {
    if (isExpression(0))
        return addExpressionAttribute(type);
    return addValueAttribute(type);
}

bool RuleReader::addExpressionAttribute(AttributeType type) {
    if (side_ != Side::Right) {
        console() << ruleMessages::expressionOnLeft << "\n";
        diagnoseToken(Severity::Error, 0,
                      "Expressions are only allowed on the right hand side of the rule");
        return false;
    }
    if (!rule_->hasVariables()) {
        console() << ruleMessages::noVariables << "\n";
        diagnoseToken(Severity::Error, 0,
                      "No variables defined: an expression reads the variables of the "
                      "left-hand side");
        return false;
    }
    if (current_ == nullptr)
        return false;
    std::string name(tokenText(1));
    std::unique_ptr<Attribute> attribute;
    switch (type) {
        case AttributeType::Boolean:
            attribute = std::make_unique<BooleanAttribute>(name, false);
            break;
        case AttributeType::Integer:
            attribute = std::make_unique<IntegerAttribute>(name, 0);
            break;
        case AttributeType::Real:
            attribute = std::make_unique<RealAttribute>(name, 0.0);
            break;
        default:
            attribute = std::make_unique<StringAttribute>(name, std::string());
            break;
    }
    const std::string text = innerText(tokenText(0));
    checkExpression(text, 0, "the expression of the attribute '" + name + "'");
    setExpression(*attribute, text);
    current_->addAttribute(std::move(attribute));
    return true;
}

void RuleReader::noteAttribute(long at, const std::string& name) {
    if (side_ != Side::Left)
        return;
    diagnose(Severity::Warning, fileName(), at,
             "the attribute '" + name +
                 "' of a left-hand-side element does not restrict matching (only the label "
                 "does); test it in the application condition");
}

void RuleReader::checkExpression(const std::string& text, std::size_t token,
                                 const std::string& subject) const {
    if (Diagnostics::current() == nullptr)
        return;  // building expressions costs: only where someone collects the findings
    const std::vector<RuleVariable> variables = declaredVariables(rule_->leftSide());
    const ExpressionProblem problem =
        vellum::checkExpression(text, variables, patternLoader_ ? &patternLoader_ : nullptr);
    if (problem.reason.empty())
        return;
    // The text starts one character after the token's "[".
    diagnose(Severity::Error, fileName(), tokenSpan(token).first + 1 + problem.offset,
             subject + " " + problem.reason);
}

bool RuleReader::addEdge() {
    if (graph_ == nullptr)
        return false;
    const std::int32_t number = integerValue(tokenText(3));
    DirectedGraphVertex* source = nullptr;
    DirectedGraphVertex* target = nullptr;
    if (!findEndpoints(verticesOfSide(), source, target))
        return false;
    DirectedGraphEdge* edge = graph_->createEdge(source, target);
    if (edge == nullptr)
        return false;
    edge->addAttribute(std::make_unique<IntegerAttribute>(kNumberAttribute, number));
    if (!edgesOfSide().emplace(number, edge).second)
        diagnoseToken(Severity::Warning, 3, duplicateNumber("edge", number));
    current_ = edge;
    return true;
}

bool RuleReader::setCondition() {
    const std::string text = innerText(tokenText(0));
    checkExpression(text, 0, "the application condition");
    rule_->setCondition(text);
    return true;
}

std::unique_ptr<DirectedGraphRule> loadRule(const std::string& fileName) {
    auto rule = std::make_unique<DirectedGraphRule>();
    RuleReader reader;
    if (!reader.read(fileName, *rule))
        return nullptr;
    return rule;
}

}  // namespace vellum
