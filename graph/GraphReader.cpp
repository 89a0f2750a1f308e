#include "graph/GraphReader.h"

#include "base/Console.h"
#include "grammar/ParseReport.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphFormat.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/ReaderMessages.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

// The action numbers of the grammar above.
enum Action : int {
    kClearGraph = 0,
    kGraphName = 1,
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
};

constexpr int kTrueCode = 4;
constexpr int kFalseCode = 5;
constexpr const char* kNumberAttribute = "__ID__";

}  // namespace

GraphReader::GraphReader() {
    loadGrammar(kGraphGrammar, kGraphTokens);
    // Long reals and strings: what the graph writer writes reads back.
    for (int code : {kNumberToken, kStringToken})
        scanner().setLengthBound(code, kMaxLiteralToken);
}

bool GraphReader::read(const std::string& fileName, DirectedGraph& graph) {
    graph_ = &graph;
    current_ = nullptr;
    vertexByNumber_.clear();
    std::string excerpt;
    long position = 0;
    const bool ok = parseFile(fileName, kExcerptBefore, kExcerptAfter, excerpt, position);
    vertexByNumber_.clear();
    current_ = nullptr;
    graph_ = nullptr;
    if (!ok) {
        reportSyntaxError("File", fileName, position, lineNumber(), excerpt);
        return false;
    }
    for (DirectedGraphVertex& vertex : graph.vertices())
        vertex.removeAttribute(kNumberAttribute);
    return true;
}

int GraphReader::onAction(int number) {
    switch (number) {
        case kClearGraph:
            startGraph();
            return 1;
        case kGraphName:
            return 1;  // the name in the file is not kept
        case kVertex:
            return addVertex();
        case kBoolean:
            return addBoolean();
        case kInteger:
            return addInteger();
        case kReal:
            return addReal();
        case kString:
            return addString();
        case kVectorStart:
            return startVector();
        case kVectorElement:
            return addVectorElement();
        case kVectorEnd:
            return finishVector();
        case kEdge:
            return addEdge();
        case kLabel:
            return setLabel();
        default:
            console() << "Unkown callback number !!!\n";
            return 0;
    }
}

std::string_view GraphReader::tokenText(std::size_t k) const {
    const TokenRecord* token = tokenAt(k);
    return token != nullptr ? std::string_view(token->text) : std::string_view();
}

void GraphReader::startGraph() {
    graph_->clear();
    current_ = nullptr;
    vertexByNumber_.clear();
}

bool GraphReader::addVertex() {
    const std::int32_t number = integerValue(tokenText(0));
    DirectedGraphVertex* vertex = graph_->createVertex();
    vertex->addAttribute(std::make_unique<IntegerAttribute>(kNumberAttribute, number));
    // A later duplicate does not replace the first.
    if (!vertexByNumber_.emplace(number, vertex).second)
        diagnoseToken(Severity::Warning, 0, duplicateNumber("vertex", number));
    current_ = vertex;
    return true;
}

bool GraphReader::addBoolean() {
    const TokenRecord* value = tokenAt(0);
    if (current_ == nullptr || value == nullptr)
        return false;
    if (value->code != kTrueCode && value->code != kFalseCode)
        return false;
    const bool truth = value->code == kTrueCode;
    current_->addAttribute(std::make_unique<BooleanAttribute>(std::string(tokenText(1)), truth));
    return true;
}

bool GraphReader::addInteger() {
    if (current_ == nullptr)
        return false;
    current_->addAttribute(
        std::make_unique<IntegerAttribute>(std::string(tokenText(1)), integerValue(tokenText(0))));
    return true;
}

bool GraphReader::addReal() {
    if (current_ == nullptr)
        return false;
    current_->addAttribute(
        std::make_unique<RealAttribute>(std::string(tokenText(1)), realValue(tokenText(0))));
    return true;
}

bool GraphReader::addString() {
    if (current_ == nullptr)
        return false;
    // The token includes its quotes; the value is what stands between them, as written.
    std::string_view text = tokenText(0);
    if (text.size() >= 2)
        text = text.substr(1, text.size() - 2);
    current_->addAttribute(
        std::make_unique<StringAttribute>(std::string(tokenText(1)), std::string(text)));
    return true;
}

bool GraphReader::startVector() {
    vectorName_ = std::string(tokenText(0));
    vectorElements_.clear();
    return true;
}

bool GraphReader::addVectorElement() {
    vectorElements_.push_back(realValue(tokenText(0)));
    return true;
}

bool GraphReader::finishVector() {
    if (current_ == nullptr)
        return false;
    current_->addAttribute(std::make_unique<VectorAttribute>(vectorName_, vectorElements_));
    return true;
}

DirectedGraphVertex* GraphReader::vertexNumbered(std::int32_t number) const {
    const auto at = vertexByNumber_.find(number);
    return at == vertexByNumber_.end() ? nullptr : at->second;
}

bool GraphReader::addEdge() {
    const std::int32_t sourceNumber = integerValue(tokenText(2));
    const std::int32_t targetNumber = integerValue(tokenText(0));
    DirectedGraphVertex* source = vertexNumbered(sourceNumber);
    DirectedGraphVertex* target = vertexNumbered(targetNumber);
    if (source == nullptr)
        reportMissingVertex(2, sourceNumber);
    if (target == nullptr)
        reportMissingVertex(0, targetNumber);
    if (source == nullptr || target == nullptr)
        return false;
    current_ = graph_->createEdge(source, target);
    return current_ != nullptr;
}

void GraphReader::reportMissingVertex(std::size_t token, std::int32_t number) const {
    console() << "Vertex with number '" << number << "' not found!!!\n";
    diagnoseToken(Severity::Error, token, missingVertex(number));
}

bool GraphReader::setLabel() {
    if (current_ == nullptr)
        return false;
    current_->setLabel(tokenText(0));
    return true;
}

bool loadGraph(const std::string& fileName, DirectedGraph& graph) {
    // Read aside, so that a file that fails halfway costs the caller nothing.
    DirectedGraph loaded;
    GraphReader reader;
    if (!reader.read(fileName, loaded))
        return false;
    graph.swap(loaded);
    return true;
}

std::unique_ptr<DirectedGraph> loadGraph(const std::string& fileName) {
    auto graph = std::make_unique<DirectedGraph>();
    if (!loadGraph(fileName, *graph))
        return nullptr;
    return graph;
}

}  // namespace vellum
