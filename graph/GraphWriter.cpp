#include "graph/GraphWriter.h"

#include <charconv>

#include "base/Console.h"
#include "base/ReplacingFile.h"
#include "graph/BooleanAttribute.h"
#include "graph/DefaultStreamFormat.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

// Integers without the stream's formatting machinery: the vertex and edge lines of large
// graphs are mostly numbers.
void appendInteger(std::string& out, long value) {
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, static_cast<std::size_t>(result.ptr - digits));
}

void appendVector(std::string& out, const std::vector<double>& elements) {
    out += '(';
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0)
            out += ' ';
        out += realText(elements[i]);
    }
    out += ')';
}

// How much text gathers before it goes to the stream.
constexpr std::size_t kPendingText = 1 << 16;

}  // namespace

bool GraphWriter::hasFileForm(AttributeType type) {
    const int code = static_cast<int>(type);
    return code >= static_cast<int>(AttributeType::Boolean) &&
           code <= static_cast<int>(AttributeType::Vector);
}

bool GraphWriter::writeAttribute(std::ostream& out, const Attribute& attribute) {
    std::string text;
    if (!appendAttribute(text, attribute))
        return false;
    out << text;
    return true;
}

bool GraphWriter::appendAttribute(std::string& out, const Attribute& attribute) {
    const auto line = [&out, &attribute](const char* keyword) {
        out += keyword;
        out += attribute.name();
        out += " = ";
    };
    switch (attribute.type()) {
        case AttributeType::Boolean:
            line("boolean ");
            out += static_cast<const BooleanAttribute&>(attribute).value() ? "true" : "false";
            return true;
        case AttributeType::Integer:
            line("integer ");
            appendInteger(out, static_cast<const IntegerAttribute&>(attribute).value());
            return true;
        case AttributeType::Real:
            line("real ");
            out += realText(static_cast<const RealAttribute&>(attribute).value());
            return true;
        case AttributeType::String:
            // No escaping: the text is kept as the file had it between its quotes (backslash
            // escapes included), which FileSpelling has made sure reads back.
            line("string ");
            out += '"';
            out += static_cast<const StringAttribute&>(attribute).value();
            out += '"';
            return true;
        case AttributeType::Vector:
            line("vector ");
            appendVector(out, static_cast<const VectorAttribute&>(attribute).value());
            return true;
    }
    return false;
}

std::string elementName(const std::string& kindAndNumbers, const GraphObject& object) {
    if (object.label().empty())
        return kindAndNumbers;
    return kindAndNumbers + " (label '" + FileSpelling::shown(object.label()) + "')";
}

std::string GraphWriter::Element::text() const {
    if (target < 0)
        return "vertex " + std::to_string(source);
    return "edge " + std::to_string(source) + " -> " + std::to_string(target);
}

bool GraphWriter::write(const DirectedGraph& graph) {
    const DefaultStreamFormat format(out_);
    numbers_ = ObjectNumbering(graph.vertexCount());
    refusal_.clear();
    acceptedLabel_ = nullptr;
    pending_.clear();
    pending_.reserve(kPendingText + 4096);
    pending_ += "directed graph\n{\n";
    // The numbers sit at scattered places of a large table, and an edge's endpoints anywhere
    // in memory: what the element kAhead places further needs is fetched while this one is
    // written.
    constexpr int kAhead = 16;
    auto vertexAhead = graph.vertices().begin();
    for (int i = 0; i < kAhead && vertexAhead != graph.vertices().end(); ++i)
        ++vertexAhead;
    for (const DirectedGraphVertex& vertex : graph.vertices()) {
        if (vertexAhead != graph.vertices().end()) {
            numbers_.prefetch(&*vertexAhead);
            ++vertexAhead;
        }
        if (!writeVertex(vertex))
            return false;
    }
    auto edgeAhead = graph.edges().begin();
    for (int i = 0; i < kAhead && edgeAhead != graph.edges().end(); ++i)
        ++edgeAhead;
    for (const DirectedGraphEdge& edge : graph.edges()) {
        if (edgeAhead != graph.edges().end()) {
            numbers_.prefetch(edgeAhead->source());
            numbers_.prefetch(edgeAhead->target());
            ++edgeAhead;
        }
        if (!writeEdge(edge))
            return false;
    }
    pending_ += "}\n";
    flush();
    return true;
}

void GraphWriter::flush() {
    out_.write(pending_.data(), static_cast<std::streamsize>(pending_.size()));
    pending_.clear();
}

void GraphWriter::appendNumber(long value) {
    appendInteger(pending_, value);
}

bool GraphWriter::refuse(const std::string& element, const std::string& problem) {
    // The text goes out as far as it came, as a stream written piece by piece would have it.
    flush();
    refusal_ = element + ": " + problem;
    return false;
}

bool GraphWriter::writeVertex(const DirectedGraphVertex& vertex) {
    const long number = numbers_.number(&vertex);
    pending_ += "\n\tvertex ";
    appendNumber(number);
    pending_ += " {\n";
    if (!writeContents(vertex, Element{number}))
        return false;
    pending_ += "\t}\n";
    if (pending_.size() >= kPendingText)
        flush();
    return true;
}

bool GraphWriter::writeEdge(const DirectedGraphEdge& edge) {
    long source = numbers_.find(edge.source());
    long target = numbers_.find(edge.target());
    // Every vertex of the graph got its number with its line. An endpoint without one was taken
    // out of the vertex list while the edge still pointed at it, so the edge line would name a
    // vertex that the file lacks. The numbers tell without reading the endpoints, which lie all
    // over memory in a large graph.
    if (source == 0 || target == 0) {
        source = numbers_.number(edge.source());
        target = numbers_.number(edge.target());
        return refuse(Element{source, target}.text(),
                      "an edge must join two vertices of the graph in a graph file");
    }
    pending_ += "\n\tedge ";
    appendNumber(source);
    pending_ += " -> ";
    appendNumber(target);
    pending_ += '\n';
    // Internal attributes count here although they are not written.
    if (edge.label().empty() && edge.attributeCount() == 0)
        return true;
    pending_ += "\t{\n";
    if (!writeContents(edge, Element{source, target}))
        return false;
    pending_ += "\t}\n";
    if (pending_.size() >= kPendingText)
        flush();
    return true;
}

bool GraphWriter::writeContents(const GraphObject& object, const Element& element) {
    const std::string& label = object.label();
    if (!label.empty()) {
        if (&label != acceptedLabel_) {
            const std::string problem = spelling_.label(label);
            if (!problem.empty())
                return refuse(element.text() + ", label '" + FileSpelling::shown(label) + "'",
                              problem);
            acceptedLabel_ = &label;
        }
        pending_ += "\t\tlabel ";
        pending_ += label;
        pending_ += '\n';
    }
    if (object.attributeCount() == 0)
        return true;
    for (const Attribute& attribute : object.attributes()) {
        if (isInternalName(attribute.name()) || !hasFileForm(attribute.type()))
            continue;
        const std::string problem = spelling_.attribute(attribute);
        if (!problem.empty()) {
            return refuse(elementName(element.text(), object) + ", attribute '" +
                              FileSpelling::shown(attribute.name()) + "'",
                          problem);
        }
        pending_ += "\t\t";
        appendAttribute(pending_, attribute);
        pending_ += '\n';
    }
    return true;
}

bool saveGraph(const DirectedGraph& graph, const std::string& fileName) {
    ReplacingFile file(fileName);
    if (file.open()) {
        GraphWriter writer(file.stream());
        if (!writer.write(graph))
            console() << writer.refusal() << "\n";
        else if (file.commit())
            return true;
    }
    console() << "Could not write the file '" << fileName << "' !!!\n";
    return false;
}

}  // namespace vellum
