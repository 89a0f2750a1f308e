#include "graph/GraphTextReader.h"

#include "base/Console.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphFormat.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/ReaderMessages.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {

int GraphTextReader::onGraphAction(GraphAction action) {
    switch (action) {
        case GraphAction::ClearGraph:
            return clearGraph();
        case GraphAction::Vertex:
            return addVertex();
        case GraphAction::Boolean:
            return addAttribute(AttributeType::Boolean);
        case GraphAction::Integer:
            return addAttribute(AttributeType::Integer);
        case GraphAction::Real:
            return addAttribute(AttributeType::Real);
        case GraphAction::String:
            return addAttribute(AttributeType::String);
        case GraphAction::VectorStart:
            return startVector();
        case GraphAction::VectorElement:
            return addVectorElement();
        case GraphAction::VectorEnd:
            return finishVector();
        case GraphAction::Edge:
            return addEdge();
        case GraphAction::Label:
            return setLabel();
        case GraphAction::GraphName:
            break;
    }
    return unknownAction();
}

std::string GraphTextReader::innerText(std::string_view token) {
    if (token.size() >= 2)
        token = token.substr(1, token.size() - 2);
    return std::string(token);
}

DirectedGraphVertex* GraphTextReader::addNumberedVertex(DirectedGraph& graph,
                                                        VertexNumbers& numbers) {
    const std::int32_t number = integerValue(tokenText(0));
    DirectedGraphVertex* vertex = graph.createVertex();
    vertex->addAttribute(std::make_unique<IntegerAttribute>(kNumberAttribute, number));
    // A later duplicate does not replace the first.
    if (!numbers.emplace(number, vertex).second)
        diagnoseToken(Severity::Warning, 0, duplicateNumber("vertex", number));
    current_ = vertex;
    return vertex;
}

bool GraphTextReader::findEndpoints(const VertexNumbers& numbers, DirectedGraphVertex*& source,
                                    DirectedGraphVertex*& target) const {
    const std::int32_t sourceNumber = integerValue(tokenText(2));
    const std::int32_t targetNumber = integerValue(tokenText(0));
    source = numbered(numbers, sourceNumber);
    target = numbered(numbers, targetNumber);
    if (source == nullptr)
        reportMissingVertex(2, sourceNumber);
    if (target == nullptr)
        reportMissingVertex(0, targetNumber);
    return source != nullptr && target != nullptr;
}

void GraphTextReader::reportMissingVertex(std::size_t token, std::int32_t number) const {
    console() << missingVertex(number) << "!!!\n";
    diagnoseToken(Severity::Error, token, missingVertex(number));
}

bool GraphTextReader::addValueAttribute(AttributeType type) {
    if (current_ == nullptr)
        return false;
    const int code = tokenCode(0);
    if (type == AttributeType::Boolean && code != kTrueToken && code != kFalseToken)
        return false;
    std::string name(tokenText(1));
    const std::string_view value = tokenText(0);
    noteAttribute(tokenSpan(1).first, name);
    std::unique_ptr<Attribute> attribute;
    switch (type) {
        case AttributeType::Boolean:
            attribute = std::make_unique<BooleanAttribute>(name, code == kTrueToken);
            break;
        case AttributeType::Integer:
            attribute = std::make_unique<IntegerAttribute>(name, integerValue(value));
            break;
        case AttributeType::Real:
            attribute = std::make_unique<RealAttribute>(name, realValue(value));
            break;
        default:
            attribute = std::make_unique<StringAttribute>(name, innerText(value));
            break;
    }
    current_->addAttribute(std::move(attribute));
    return true;
}

bool GraphTextReader::startVector() {
    vectorName_ = std::string(tokenText(0));
    vectorNameAt_ = tokenSpan(0).first;
    vectorElements_.clear();
    return true;
}

bool GraphTextReader::addVectorElement() {
    vectorElements_.push_back(realValue(tokenText(0)));
    return true;
}

bool GraphTextReader::finishVector() {
    if (current_ == nullptr)
        return false;
    noteAttribute(vectorNameAt_, vectorName_);
    current_->addAttribute(std::make_unique<VectorAttribute>(vectorName_, vectorElements_));
    return true;
}

bool GraphTextReader::setLabel() {
    if (current_ == nullptr)
        return false;
    current_->setLabel(tokenText(0));
    return true;
}

}  // namespace vellum
