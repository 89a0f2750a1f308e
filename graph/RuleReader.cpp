#include "graph/RuleReader.h"

#include "base/Console.h"
#include "grammar/ParseReport.h"
#include "graph/AttributeExpression.h"
#include "graph/BooleanAttribute.h"
#include "graph/ExpressionCheck.h"
#include "graph/GraphFormat.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/ReaderMessages.h"
#include "graph/RealAttribute.h"
#include "graph/RuleObjectData.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

constexpr const char* kRuleGrammar = R"GRAMMAR(
GRAPHRULE = $LGRAPHRULE $IDENTIFIER <50> "{" RULE "}".
RULE = <51> <0> $LLEFTSIDE GRAPH ANCHOR <52> <0> $LRIGHTSIDE GRAPH <53> [APPCOND].
ANCHOR = $LANCHOR "{" { ASSIGN } "}".
ASSIGN = ($LVERTEX | $LEDGE) $NUMBER $LARROW1 $NUMBER <54>.
GRAPH = "{" VERTICES EDGES "}".
VERTICES = { VERTEX }.
EDGES = { EDGE }.
VERTEX = $LVERTEX [$LREF] $NUMBER <2> [$LREF $NUMBER <14>] ["=" $IDENTIFIER <12>] ["{" [LABEL] {ATTRIBUTE} "}"] .
ATTRIBUTE = BOOLEAN | INTEGER | REAL | STRING | VECTOR.
LABEL = $LLABEL ($IDENTIFIER | $WILDCARD) <11>.
BOOLEAN = $LBOOLEAN $IDENTIFIER "=" ($LTRUE | $LFALSE | $EXPRESSION) <3>.
INTEGER = $LINTEGER $IDENTIFIER "=" ($NUMBER | $EXPRESSION) <4>.
REAL = $LREAL $IDENTIFIER "=" ($NUMBER | $EXPRESSION)<5>.
STRING = $LSTRING $IDENTIFIER "=" ($LLSTRING | $EXPRESSION) <6>.
VECTOR = $LVECTOR $IDENTIFIER <7> "=" "(" { $NUMBER <8>} ")" <9>.
EDGE = $LEDGE $NUMBER ":" $NUMBER $LARROW $NUMBER <10> ["=" $IDENTIFIER <12>] ["{" [LABEL] {ATTRIBUTE} "}"] .
APPCOND = $LAPPCOND "=" $EXPRESSION <13>.
#GRAPHRULE.
)GRAMMAR";

// The action numbers of the grammar above.
enum Action : int {
    kClearGraph = 0,
    kVertex = 2,
    kBoolean = 3,
    kInteger = 4,
    kReal = 5,
    kString = 6,
    kVectorStart = 7,
    kVectorElement = 8,
    kVectorEnd = 9,
    kEdge = 10,
    kLabel = 11,
    kVariable = 12,
    kCondition = 13,
    kReference = 14,
    kRuleName = 50,
    kLeftSide = 51,
    kRightSide = 52,
    kInterfaceEnd = 53,
    kInterfacePair = 54,
};

// Token codes the actions look at.
constexpr int kTrueCode = 4;
constexpr int kFalseCode = 5;
constexpr int kVertexCode = 2;
constexpr int kReferenceCode = 25;
constexpr const char* kNumberAttribute = "__ID__";

// The expression between the brackets of an $EXPRESSION token.
std::string expressionText(std::string_view token) {
    if (token.size() >= 2)
        token = token.substr(1, token.size() - 2);
    return std::string(token);
}

template <typename T>
T* numbered(const std::unordered_map<std::int32_t, T*>& map, std::int32_t number) {
    const auto at = map.find(number);
    return at == map.end() ? nullptr : at->second;
}

}  // namespace

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
    switch (number) {
        case kRuleName:
            return setName();
        case kLeftSide:
            return startLeftSide();
        case kClearGraph:
            return clearCurrentGraph();
        case kRightSide:
            return startRightSide();
        case kInterfaceEnd:
            return resolveInterface();
        case kInterfacePair:
            return addInterfacePair();
        case kVertex:
            return addVertex();
        case kReference:
            return addReference();
        case kVariable:
            return setVariable();
        case kLabel:
            return setLabel();
        case kBoolean:
            return addBoolean();
        case kInteger:
        case kReal:
        case kString:
            return addScalar(number);
        case kVectorStart:
            return startVector();
        case kVectorElement:
            return addVectorElement();
        case kVectorEnd:
            return finishVector();
        case kEdge:
            return addEdge();
        case kCondition:
            return setCondition();
        default:
            console() << "Unkown callback number !!!\n";
            return 0;
    }
}

std::string_view RuleReader::tokenText(std::size_t k) const {
    const TokenRecord* record = token(k);
    return record != nullptr ? std::string_view(record->text) : std::string_view();
}

int RuleReader::tokenCode(std::size_t k) const {
    const TokenRecord* record = token(k);
    return record != nullptr ? record->code : -1;
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

bool RuleReader::clearCurrentGraph() {
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
    const PairKind kind = tokenCode(3) == kVertexCode ? PairKind::Vertex : PairKind::Edge;
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
    const std::int32_t number = integerValue(tokenText(0));
    DirectedGraphVertex* vertex = graph_->createVertex();
    vertex->addAttribute(std::make_unique<IntegerAttribute>(kNumberAttribute, number));
    // A later duplicate does not replace the first.
    if (!verticesOfSide().emplace(number, vertex).second)
        diagnoseToken(Severity::Warning, 0, duplicateNumber("vertex", number));
    current_ = currentVertex_ = vertex;
    if (tokenCode(1) != kReferenceCode)
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
        console() << "You can't reference a node in the left hand side of the rule!!!\n";
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
        console() << "Variables are only allowed on the left hand side of the rule!!!\n";
        diagnoseToken(Severity::Error, 0,
                      "Variables are only allowed on the left hand side of the rule");
        return false;
    }
    if (current_ == nullptr)
        return false;
    vellum::setVariable(*current_, std::string(tokenText(0)));
    return true;
}

bool RuleReader::setLabel() {
    if (current_ == nullptr)
        return false;
    current_->setLabel(tokenText(0));
    return true;
}

bool RuleReader::addBoolean() {
    if (isExpression(0))
        return addExpressionAttribute(kBoolean);
    const int code = tokenCode(0);
    if (current_ == nullptr || (code != kTrueCode && code != kFalseCode))
        return false;
    warnLeftAttribute(tokenSpan(1).first, std::string(tokenText(1)));
    current_->addAttribute(
        std::make_unique<BooleanAttribute>(std::string(tokenText(1)), code == kTrueCode));
    return true;
}

bool RuleReader::addScalar(int action) {
    if (isExpression(0))
        return addExpressionAttribute(action);
    if (current_ == nullptr)
        return false;
    std::string name(tokenText(1));
    const std::string_view value = tokenText(0);
    warnLeftAttribute(tokenSpan(1).first, name);
    if (action == kInteger) {
        current_->addAttribute(std::make_unique<IntegerAttribute>(name, integerValue(value)));
    } else if (action == kReal) {
        current_->addAttribute(std::make_unique<RealAttribute>(name, realValue(value)));
    } else {
        // The value is what stands between the quotes, as written.
        const std::string_view text =
            value.size() >= 2 ? value.substr(1, value.size() - 2) : std::string_view();
        current_->addAttribute(std::make_unique<StringAttribute>(name, std::string(text)));
    }
    return true;
}

bool RuleReader::addExpressionAttribute(int action) {
    if (side_ != Side::Right) {
        console() << "Expressions are only allowed on the right hand side of the rule!!!\n";
        diagnoseToken(Severity::Error, 0,
                      "Expressions are only allowed on the right hand side of the rule");
        return false;
    }
    if (!rule_->hasVariables()) {
        console() << "No variables defined!!!\n";
        diagnoseToken(Severity::Error, 0,
                      "No variables defined: an expression reads the variables of the "
                      "left-hand side");
        return false;
    }
    if (current_ == nullptr)
        return false;
    std::string name(tokenText(1));
    std::unique_ptr<Attribute> attribute;
    switch (action) {
        case kBoolean:
            attribute = std::make_unique<BooleanAttribute>(name, false);
            break;
        case kInteger:
            attribute = std::make_unique<IntegerAttribute>(name, 0);
            break;
        case kReal:
            attribute = std::make_unique<RealAttribute>(name, 0.0);
            break;
        default:
            attribute = std::make_unique<StringAttribute>(name, std::string());
            break;
    }
    const std::string text = expressionText(tokenText(0));
    checkExpression(text, 0, "the expression of the attribute '" + name + "'");
    setExpression(*attribute, text);
    current_->addAttribute(std::move(attribute));
    return true;
}

void RuleReader::warnLeftAttribute(long at, const std::string& name) const {
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
    std::vector<std::string> variables;
    const DirectedGraph& left = rule_->leftSide();
    for (const DirectedGraphVertex& vertex : left.vertices()) {
        if (!variableOf(vertex).empty())
            variables.push_back(variableOf(vertex));
    }
    for (const DirectedGraphEdge& edge : left.edges()) {
        if (!variableOf(edge).empty())
            variables.push_back(variableOf(edge));
    }
    const ExpressionProblem problem = vellum::checkExpression(text, variables);
    if (problem.reason.empty())
        return;
    // The text starts one character after the token's "[".
    diagnose(Severity::Error, fileName(), tokenSpan(token).first + 1 + problem.offset,
             subject + " " + problem.reason);
}

bool RuleReader::startVector() {
    vectorName_ = std::string(tokenText(0));
    vectorNameAt_ = tokenSpan(0).first;
    vectorElements_.clear();
    return true;
}

bool RuleReader::addVectorElement() {
    vectorElements_.push_back(realValue(tokenText(0)));
    return true;
}

bool RuleReader::finishVector() {
    if (current_ == nullptr)
        return false;
    warnLeftAttribute(vectorNameAt_, vectorName_);
    current_->addAttribute(std::make_unique<VectorAttribute>(vectorName_, vectorElements_));
    return true;
}

bool RuleReader::addEdge() {
    if (graph_ == nullptr)
        return false;
    const std::int32_t number = integerValue(tokenText(3));
    const std::int32_t sourceNumber = integerValue(tokenText(2));
    const std::int32_t targetNumber = integerValue(tokenText(0));
    DirectedGraphVertex* source = numbered(verticesOfSide(), sourceNumber);
    DirectedGraphVertex* target = numbered(verticesOfSide(), targetNumber);
    if (source == nullptr)
        reportMissingVertex(2, sourceNumber);
    if (target == nullptr)
        reportMissingVertex(0, targetNumber);
    if (source == nullptr || target == nullptr)
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

void RuleReader::reportMissingVertex(std::size_t token, std::int32_t number) const {
    console() << "Vertex with number '" << number << "' not found!!!\n";
    diagnoseToken(Severity::Error, token, missingVertex(number));
}

bool RuleReader::setCondition() {
    const std::string text = expressionText(tokenText(0));
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
