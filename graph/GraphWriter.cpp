#include "graph/GraphWriter.h"

#include <charconv>

#include "base/Console.h"
#include "base/ReplacingFile.h"
#include "graph/BooleanAttribute.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

// The stream's default format for doubles (six significant digits), whatever the caller's
// stream was set to; restored afterwards.
class DefaultFormat {
  public:
    explicit DefaultFormat(std::ostream& out)
        : out_(out), flags_(out.flags()), precision_(out.precision()) {
        out.flags(std::ios_base::dec | std::ios_base::skipws);
        out.precision(6);
    }
    ~DefaultFormat() {
        out_.flags(flags_);
        out_.precision(precision_);
    }
    DefaultFormat(const DefaultFormat&) = delete;
    DefaultFormat& operator=(const DefaultFormat&) = delete;

  private:
    std::ostream& out_;
    std::ios_base::fmtflags flags_;
    std::streamsize precision_;
};

// Integers without the stream's formatting machinery: the vertex and edge lines of large
// graphs are mostly numbers.
void writeNumber(std::ostream& out, long value) {
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    out.write(digits, result.ptr - digits);
}

void writeVector(std::ostream& out, const std::vector<double>& elements) {
    out << "(";
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0)
            out << ' ';
        out << realText(elements[i]);
    }
    out << ")";
}

}  // namespace

bool GraphWriter::hasFileForm(AttributeType type) {
    const int code = static_cast<int>(type);
    return code >= static_cast<int>(AttributeType::Boolean) &&
           code <= static_cast<int>(AttributeType::Vector);
}

bool GraphWriter::writeAttribute(std::ostream& out, const Attribute& attribute) {
    switch (attribute.type()) {
        case AttributeType::Boolean:
            out << "boolean " << attribute.name() << " = "
                << (static_cast<const BooleanAttribute&>(attribute).value() ? "true" : "false");
            return true;
        case AttributeType::Integer:
            out << "integer " << attribute.name() << " = "
                << static_cast<const IntegerAttribute&>(attribute).value();
            return true;
        case AttributeType::Real:
            out << "real " << attribute.name() << " = "
                << realText(static_cast<const RealAttribute&>(attribute).value());
            return true;
        case AttributeType::String:
            // No escaping: the text is kept as the file had it between its quotes (backslash
            // escapes included), which FileSpelling has made sure reads back.
            out << "string " << attribute.name() << " = \""
                << static_cast<const StringAttribute&>(attribute).value() << '"';
            return true;
        case AttributeType::Vector:
            out << "vector " << attribute.name() << " = ";
            writeVector(out, static_cast<const VectorAttribute&>(attribute).value());
            return true;
    }
    return false;
}

std::string elementName(const std::string& kindAndNumbers, const GraphObject& object) {
    if (object.label().empty())
        return kindAndNumbers;
    return kindAndNumbers + " (label '" + FileSpelling::shown(object.label()) + "')";
}

bool GraphWriter::write(const DirectedGraph& graph) {
    const DefaultFormat format(out_);
    numbers_ = ObjectNumbering(graph.vertexCount());
    refusal_.clear();
    out_ << "directed graph\n{\n";
    for (const DirectedGraphVertex& vertex : graph.vertices()) {
        if (!writeVertex(vertex))
            return false;
    }
    for (const DirectedGraphEdge& edge : graph.edges()) {
        if (!writeEdge(graph, edge))
            return false;
    }
    out_ << "}\n";
    return true;
}

bool GraphWriter::refuse(const std::string& element, const std::string& problem) {
    refusal_ = element + ": " + problem;
    return false;
}

bool GraphWriter::writeVertex(const DirectedGraphVertex& vertex) {
    const long number = numbers_.number(&vertex);
    out_ << "\n\tvertex ";
    writeNumber(out_, number);
    out_ << " {\n";
    if (!writeContents(vertex, "vertex " + std::to_string(number)))
        return false;
    out_ << "\t}\n";
    return true;
}

bool GraphWriter::writeEdge(const DirectedGraph& graph, const DirectedGraphEdge& edge) {
    const long source = numbers_.number(edge.source());
    const long target = numbers_.number(edge.target());
    const std::string element = "edge " + std::to_string(source) + " -> " + std::to_string(target);
    // An endpoint taken out of the vertex list while the edge still pointed at it has no vertex
    // line, so the edge line would name a vertex that the file lacks.
    if (!graph.contains(*edge.source()) || !graph.contains(*edge.target()))
        return refuse(element, "an edge must join two vertices of the graph in a graph file");
    out_ << "\n\tedge ";
    writeNumber(out_, source);
    out_ << " -> ";
    writeNumber(out_, target);
    out_ << "\n";
    // Internal attributes count here although they are not written.
    if (edge.label().empty() && edge.attributeCount() == 0)
        return true;
    out_ << "\t{\n";
    if (!writeContents(edge, element))
        return false;
    out_ << "\t}\n";
    return true;
}

bool GraphWriter::writeContents(const GraphObject& object, const std::string& element) {
    if (!object.label().empty()) {
        const std::string problem = spelling_.label(object.label());
        if (!problem.empty())
            return refuse(element + ", label '" + FileSpelling::shown(object.label()) + "'",
                          problem);
        out_ << "\t\tlabel " << object.label() << "\n";
    }
    for (const Attribute& attribute : object.attributes()) {
        if (isInternalName(attribute.name()) || !hasFileForm(attribute.type()))
            continue;
        const std::string problem = spelling_.attribute(attribute);
        if (!problem.empty()) {
            return refuse(elementName(element, object) + ", attribute '" +
                              FileSpelling::shown(attribute.name()) + "'",
                          problem);
        }
        out_ << "\t\t";
        writeAttribute(out_, attribute);
        out_ << "\n";
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
