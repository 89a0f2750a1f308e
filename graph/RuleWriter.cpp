#include "graph/RuleWriter.h"

#include "base/Console.h"
#include "base/ReplacingFile.h"
#include "graph/AttributeExpression.h"
#include "graph/DefaultStreamFormat.h"
#include "graph/GlobMatch.h"
#include "graph/GraphWriter.h"
#include "graph/RuleObjectData.h"

namespace vellum {

long RuleWriter::number(const GraphObject* object) {
    return object != nullptr ? numbers_.number(object) : 0;
}

bool RuleWriter::refuse(const std::string& element, const std::string& problem) {
    refusal_ = where_ + element + ": " + problem;
    return false;
}

bool RuleWriter::write(const DirectedGraphRule& rule) {
    const DefaultStreamFormat format(out_);
    const DirectedGraph& left = rule.leftSide();
    const DirectedGraph& right = rule.rightSide();
    numbers_ = ObjectNumbering(left.vertexCount() + left.edgeCount() + right.vertexCount() +
                               right.edgeCount());
    refusal_.clear();
    hasVariables_ = rule.hasVariables();
    where_.clear();
    std::string problem = spelling_.name(rule.name());
    if (!problem.empty())
        return refuse("rule name '" + FileSpelling::shown(rule.name()) + "'", problem);
    where_ = "rule '" + rule.name() + "', ";
    out_ << "directed graphrule " << rule.name() << "\n{\n";
    side_ = Side::Left;
    if (!writeSection("left-hand side", left) || !writeInterface(rule))
        return false;
    side_ = Side::Right;
    if (!writeSection("right-hand side", right))
        return false;
    if (!rule.condition().empty()) {
        problem = spelling_.expression(rule.condition());
        if (!problem.empty())
            return refuse("application condition", problem);
        out_ << "\tapplication condition = [" << rule.condition() << "]\n";
    }
    out_ << "}\n";
    return true;
}

bool RuleWriter::writeSection(const char* title, const DirectedGraph& side) {
    out_ << "\t" << title << "\n\t{\n";
    const std::string where = where_;
    where_ += title + std::string(", ");
    for (const DirectedGraphVertex& vertex : side.vertices()) {
        if (!writeVertex(vertex))
            return false;
    }
    for (const DirectedGraphEdge& edge : side.edges()) {
        if (!writeEdge(side, edge))
            return false;
    }
    where_ = where;
    out_ << "\t}\n";
    return true;
}

bool RuleWriter::writeVariable(const GraphObject& object, const std::string& element) {
    const std::string& variable = variableOf(object);
    if (variable.empty())
        return true;
    std::string problem = spelling_.name(variable);
    if (problem.empty() && side_ == Side::Right)
        problem = "a variable can only stand on the left-hand side in a rule file";
    if (!problem.empty())
        return refuse(element + ", variable '" + FileSpelling::shown(variable) + "'", problem);
    out_ << " = " << variable;
    return true;
}

bool RuleWriter::writeVertex(const DirectedGraphVertex& vertex) {
    const long own = number(&vertex);
    const std::string element = "vertex " + std::to_string(own);
    out_ << "\n\t\tvertex " << own;
    if (!writeVariable(vertex, element))
        return false;
    out_ << "\n";
    if (vertex.label().empty() && vertex.attributeCount() == 0)
        return true;
    // The blank before the brace is how the format has always looked.
    out_ << " \t\t{\n";
    if (!writeContents(vertex, element))
        return false;
    out_ << "\t\t}\n";
    return true;
}

bool RuleWriter::writeEdge(const DirectedGraph& side, const DirectedGraphEdge& edge) {
    const long own = number(&edge);
    const long source = number(edge.source());
    const long target = number(edge.target());
    const std::string element = "edge " + std::to_string(own);
    if (!side.contains(*edge.source()) || !side.contains(*edge.target()))
        return refuse(element, "an edge must join two vertices of its side in a rule file");
    out_ << "\t\tedge " << own << " : " << source << " -> " << target;
    if (!writeVariable(edge, element))
        return false;
    out_ << "\n";
    if (edge.label().empty() && edge.attributeCount() == 0)
        return true;
    out_ << "\t\t{\n";
    if (!writeContents(edge, element))
        return false;
    out_ << "\t\t}\n";
    return true;
}

bool RuleWriter::writeInterface(const DirectedGraphRule& rule) {
    // A pair naming an object outside its side would be read back with that side empty.
    const auto outside = [](const DirectedGraph& side, const GraphObject* object) {
        return object != nullptr && !side.contains(*object);
    };
    out_ << "\n\tinterface\n\t{\n";
    for (const VertexPair& pair : rule.interface().vertexPairs()) {
        const std::string line = "vertex " + std::to_string(number(pair.left)) + " <-> " +
                                 std::to_string(number(pair.right));
        if (outside(rule.leftSide(), pair.left) || outside(rule.rightSide(), pair.right))
            return refuse("interface, " + line,
                          "a pair must name vertices of the rule in a rule file");
        out_ << "\t\t" << line << "\n";
    }
    for (const EdgePair& pair : rule.interface().edgePairs()) {
        const std::string line = "edge " + std::to_string(number(pair.left)) + " <-> " +
                                 std::to_string(number(pair.right));
        if (outside(rule.leftSide(), pair.left) || outside(rule.rightSide(), pair.right))
            return refuse("interface, " + line,
                          "a pair must name edges of the rule in a rule file");
        out_ << "\t\t" << line << "\n";
    }
    out_ << "\t}\n";
    return true;
}

bool RuleWriter::writeContents(const GraphObject& object, const std::string& element) {
    if (!object.label().empty()) {
        const std::string problem = spelling_.label(object.label());
        if (!problem.empty())
            return refuse(element + ", label '" + FileSpelling::shown(object.label()) + "'",
                          problem);
        out_ << "\t\t\tlabel " << object.label() << "\n";
    }
    for (const Attribute& attribute : object.attributes()) {
        if (isInternalName(attribute.name()) || !GraphWriter::hasFileForm(attribute.type()))
            continue;
        out_ << "\t\t\t";
        if (!writeAttribute(attribute, elementName(element, object)))
            return false;
        out_ << "\n";
    }
    return true;
}

std::string RuleWriter::expressionProblem(const Attribute& attribute,
                                          const std::string& expression) {
    std::string problem = spelling_.name(attribute.name());
    if (!problem.empty())
        return problem;
    if (attribute.type() == AttributeType::Vector)
        return "a vector cannot carry an expression in a rule file";
    if (side_ == Side::Left)
        return "an expression can only stand on the right-hand side in a rule file";
    if (!hasVariables_)
        return "an expression needs a variable on the left-hand side in a rule file";
    return spelling_.expression(expression);
}

bool RuleWriter::writeAttribute(const Attribute& attribute, const std::string& element) {
    const std::string* expression = expressionOf(attribute);
    const std::string problem = expression != nullptr ? expressionProblem(attribute, *expression)
                                                      : spelling_.attribute(attribute);
    if (!problem.empty())
        return refuse(element + ", attribute '" + FileSpelling::shown(attribute.name()) + "'",
                      problem);
    if (expression == nullptr) {
        GraphWriter::writeAttribute(out_, attribute);
        return true;
    }
    out_ << attributeKeyword(attribute.type()) << " " << attribute.name() << " = [" << *expression
         << "]";
    return true;
}

bool saveRule(const DirectedGraphRule& rule, const std::string& fileName) {
    ReplacingFile file(fileName);
    if (file.open()) {
        RuleWriter writer(file.stream());
        if (!writer.write(rule))
            console() << writer.refusal() << "\n";
        else if (file.commit())
            return true;
    }
    console() << "Could not write the file '" << fileName << "' !!!\n";
    return false;
}

}  // namespace vellum
