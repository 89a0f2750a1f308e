#include "graph/GraphWriter.h"

#include <charconv>

#include "grammar/Console.h"
#include "grammar/ReplacingFile.h"
#include "graph/BooleanAttribute.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
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
        out << elements[i];
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
                << static_cast<const RealAttribute&>(attribute).value();
            return true;
        case AttributeType::String:
            // No escaping: the text is kept as the file had it between its quotes.
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

void GraphWriter::write(const DirectedGraph& graph) {
    const DefaultFormat format(out_);
    numbers_ = ObjectNumbering(graph.vertexCount());
    out_ << "directed graph\n{\n";
    for (const DirectedGraphVertex& vertex : graph.vertices())
        writeVertex(vertex);
    for (const DirectedGraphEdge& edge : graph.edges())
        writeEdge(edge);
    out_ << "}\n";
}

void GraphWriter::writeVertex(const DirectedGraphVertex& vertex) {
    out_ << "\n\tvertex ";
    writeNumber(out_, numbers_.number(&vertex));
    out_ << " {\n";
    writeContents(vertex);
    out_ << "\t}\n";
}

void GraphWriter::writeEdge(const DirectedGraphEdge& edge) {
    // An endpoint outside the vertex list (taken out while the edge still pointed at it) gets
    // a number of its own, which no vertex of the file has.
    out_ << "\n\tedge ";
    writeNumber(out_, numbers_.number(edge.source()));
    out_ << " -> ";
    writeNumber(out_, numbers_.number(edge.target()));
    out_ << "\n";
    // Internal attributes count here although they are not written.
    if (edge.label().empty() && edge.attributeCount() == 0)
        return;
    out_ << "\t{\n";
    writeContents(edge);
    out_ << "\t}\n";
}

void GraphWriter::writeContents(const GraphObject& object) {
    if (!object.label().empty())
        out_ << "\t\tlabel " << object.label() << "\n";
    for (const Attribute& attribute : object.attributes()) {
        if (isInternalName(attribute.name()) || !hasFileForm(attribute.type()))
            continue;
        out_ << "\t\t";
        writeAttribute(out_, attribute);
        out_ << "\n";
    }
}

bool saveGraph(const DirectedGraph& graph, const std::string& fileName) {
    ReplacingFile file(fileName);
    if (file.open()) {
        GraphWriter(file.stream()).write(graph);
        if (file.commit())
            return true;
    }
    console() << "Could not write the file '" << fileName << "' !!!\n";
    return false;
}

}  // namespace vellum
