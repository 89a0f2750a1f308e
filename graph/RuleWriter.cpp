#include "graph/RuleWriter.h"

#include "grammar/Console.h"
#include "grammar/ReplacingFile.h"
#include "graph/AttributeExpression.h"
#include "graph/GlobMatch.h"
#include "graph/GraphWriter.h"
#include "graph/RuleObjectData.h"

namespace vellum {
namespace {

// Reals in the stream's default format (six significant digits) whatever the caller's stream
// was set to; restored afterwards.
class DefaultRealFormat {
  public:
    explicit DefaultRealFormat(std::ostream& out)
        : out_(out), flags_(out.flags()), precision_(out.precision()) {
        out.flags(std::ios_base::dec | std::ios_base::skipws);
        out.precision(6);
    }
    ~DefaultRealFormat() {
        out_.flags(flags_);
        out_.precision(precision_);
    }
    DefaultRealFormat(const DefaultRealFormat&) = delete;
    DefaultRealFormat& operator=(const DefaultRealFormat&) = delete;

  private:
    std::ostream& out_;
    std::ios_base::fmtflags flags_;
    std::streamsize precision_;
};

void writeVariable(std::ostream& out, const GraphObject& object) {
    const std::string& variable = variableOf(object);
    if (!variable.empty())
        out << " = " << variable;
}

}  // namespace

long RuleWriter::number(const GraphObject* object) {
    return object != nullptr ? numbers_.number(object) : 0;
}

void RuleWriter::write(const DirectedGraphRule& rule) {
    const DefaultRealFormat format(out_);
    const DirectedGraph& left = rule.leftSide();
    const DirectedGraph& right = rule.rightSide();
    numbers_ = ObjectNumbering(left.vertexCount() + left.edgeCount() + right.vertexCount() +
                               right.edgeCount());
    out_ << "directed graphrule " << rule.name() << "\n{\n";
    writeSection("left-hand side", left);
    writeInterface(rule.interface());
    writeSection("right-hand side", right);
    if (!rule.condition().empty())
        out_ << "\tapplication condition = [" << rule.condition() << "]\n";
    out_ << "}\n";
}

void RuleWriter::writeSection(const char* title, const DirectedGraph& side) {
    out_ << "\t" << title << "\n\t{\n";
    for (const DirectedGraphVertex& vertex : side.vertices())
        writeVertex(vertex);
    for (const DirectedGraphEdge& edge : side.edges())
        writeEdge(edge);
    out_ << "\t}\n";
}

void RuleWriter::writeVertex(const DirectedGraphVertex& vertex) {
    out_ << "\n\t\tvertex " << number(&vertex);
    writeVariable(out_, vertex);
    out_ << "\n";
    if (vertex.label().empty() && vertex.attributeCount() == 0)
        return;
    // The blank before the brace is how the format has always looked.
    out_ << " \t\t{\n";
    writeContents(vertex);
    out_ << "\t\t}\n";
}

void RuleWriter::writeEdge(const DirectedGraphEdge& edge) {
    out_ << "\t\tedge " << number(&edge) << " : " << number(edge.source()) << " -> "
         << number(edge.target());
    writeVariable(out_, edge);
    out_ << "\n";
    if (edge.label().empty() && edge.attributeCount() == 0)
        return;
    out_ << "\t\t{\n";
    writeContents(edge);
    out_ << "\t\t}\n";
}

void RuleWriter::writeInterface(const GraphMorphism& interface) {
    out_ << "\n\tinterface\n\t{\n";
    for (const VertexPair& pair : interface.vertexPairs())
        out_ << "\t\tvertex " << number(pair.left) << " <-> " << number(pair.right) << "\n";
    for (const EdgePair& pair : interface.edgePairs())
        out_ << "\t\tedge " << number(pair.left) << " <-> " << number(pair.right) << "\n";
    out_ << "\t}\n";
}

void RuleWriter::writeContents(const GraphObject& object) {
    if (!object.label().empty())
        out_ << "\t\t\tlabel " << object.label() << "\n";
    for (const Attribute& attribute : object.attributes()) {
        if (isInternalName(attribute.name()) || !GraphWriter::hasFileForm(attribute.type()))
            continue;
        out_ << "\t\t\t";
        writeAttribute(attribute);
        out_ << "\n";
    }
}

void RuleWriter::writeAttribute(const Attribute& attribute) {
    const std::string* expression = expressionOf(attribute);
    if (expression == nullptr || attribute.type() == AttributeType::Vector) {
        GraphWriter::writeAttribute(out_, attribute);
        return;
    }
    out_ << attributeKeyword(attribute.type()) << " " << attribute.name() << " = [" << *expression
         << "]";
}

bool saveRule(const DirectedGraphRule& rule, const std::string& fileName) {
    ReplacingFile file(fileName);
    if (file.open()) {
        RuleWriter(file.stream()).write(rule);
        if (file.commit())
            return true;
    }
    console() << "Could not write the file '" << fileName << "' !!!\n";
    return false;
}

}  // namespace vellum
