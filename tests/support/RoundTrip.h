// Random graphs and rules built through the API, and the comparison of one with what a file
// gave back, for the write-and-read-back property test and the fuzz_roundtrip target. A Draw
// makes every choice (a seeded generator in the test, the input bytes in the fuzz target). The
// builder knows by construction whether it put in something the format cannot spell, so both
// directions are checked: a save is refused exactly when it should be.
#pragma once

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "graph/AttributeExpression.h"
#include "graph/BooleanAttribute.h"
#include "graph/DirectedGraph.h"
#include "graph/DirectedGraphRule.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/RuleObjectData.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum::test {

// A source of choices: next(n) is in [0, n).
class Draw {
  public:
    virtual ~Draw() = default;
    virtual unsigned next(unsigned n) = 0;
};

enum class FileKind { Graph, Rule };

class RandomBuilder {
  public:
    RandomBuilder(Draw& draw, FileKind kind) : draw_(draw), kind_(kind) {}

    // True once anything was put in that the file cannot carry.
    bool unwritable() const { return unwritable_; }

    void fillGraph(DirectedGraph& graph, bool rightSide = false) {
        const unsigned vertices = draw_.next(5);
        std::vector<DirectedGraphVertex*> made;
        for (unsigned i = 0; i < vertices; ++i) {
            made.push_back(graph.createVertex());
            fillObject(*made.back(), rightSide);
        }
        for (unsigned i = made.empty() ? 0 : draw_.next(5); i > 0; --i) {
            // One statement per draw: the order of arguments is the compiler's choice.
            DirectedGraphVertex* source = made[draw_.next(vertices)];
            DirectedGraphVertex* target = made[draw_.next(vertices)];
            DirectedGraphEdge* edge = graph.createEdge(source, target);
            fillObject(*edge, rightSide);
        }
    }

    std::unique_ptr<DirectedGraphRule> rule() {
        auto rule = std::make_unique<DirectedGraphRule>();
        rule->setName(name());
        fillGraph(rule->editLeftSide());
        fillGraph(rule->editRightSide(), true);
        for (unsigned i = draw_.next(3); i > 0; --i)
            pairUp(*rule);
        if (draw_.next(2) == 0)
            rule->setCondition(quoted(']'));
        // Expressions need a variable on the left, checked when the whole rule is known.
        if (hasExpression_ && !rule->hasVariables())
            unwritable_ = true;
        return rule;
    }

  private:
    void pairUp(DirectedGraphRule& rule) {
        auto vertexAt = [this](DirectedGraph& side) -> DirectedGraphVertex* {
            const unsigned pick = draw_.next(static_cast<unsigned>(side.vertexCount()) + 1);
            unsigned index = 0;
            for (DirectedGraphVertex& vertex : side.vertices()) {
                if (pick == index++)
                    return &vertex;
            }
            return nullptr;
        };
        DirectedGraphVertex* left = vertexAt(rule.editLeftSide());
        DirectedGraphVertex* right = vertexAt(rule.editRightSide());
        rule.editInterface().addVertexPair(left, right);
    }

    void fillObject(GraphObject& object, bool rightSide) {
        object.setLabel(label());
        if (kind_ == FileKind::Rule && draw_.next(rightSide ? 16 : 3) == 0) {
            setVariable(object, name(true));
            if (rightSide && !variableOf(object).empty())
                unwritable_ = true;
        }
        for (unsigned i = draw_.next(5); i > 0; --i)
            addAttribute(object, rightSide);
    }

    void addAttribute(GraphObject& object, bool rightSide) {
        const std::string attributeName = draw_.next(8) == 0 ? "__internal__" : name();
        if (object.findAttribute(attributeName) != nullptr || isInternalName(attributeName)) {
            object.addAttribute(std::make_unique<IntegerAttribute>(attributeName, 1));
            return;  // a second of one name is dropped; internal ones are never written
        }
        const bool nameUnwritable = unwritable_;
        std::unique_ptr<Attribute> attribute;
        switch (draw_.next(5)) {
            case 0:
                attribute = std::make_unique<BooleanAttribute>(attributeName, draw_.next(2) == 1);
                break;
            case 1:
                attribute = std::make_unique<IntegerAttribute>(attributeName, integer());
                break;
            case 2:
                attribute = std::make_unique<RealAttribute>(attributeName, real());
                break;
            case 3:
                attribute = std::make_unique<StringAttribute>(attributeName, quoted('"'));
                break;
            default: {
                std::vector<double> elements(draw_.next(4));
                for (double& element : elements)
                    element = real();
                if (elements.empty() && kind_ == FileKind::Graph)
                    unwritable_ = true;
                attribute = std::make_unique<VectorAttribute>(attributeName, elements);
            }
        }
        if (kind_ == FileKind::Rule && draw_.next(rightSide ? 3 : 24) == 0) {
            unwritable_ = nameUnwritable;  // the expression is written, not the value
            setExpression(*attribute, quoted(']'));
            hasExpression_ = true;
            if (!rightSide || attribute->type() == AttributeType::Vector)
                unwritable_ = true;
        }
        object.addAttribute(std::move(attribute));
    }

    std::int32_t integer() {
        const std::int32_t values[] = {0, -1, INT_MAX, INT_MIN};
        const unsigned pick = draw_.next(6);
        return pick < 4 ? values[pick] : static_cast<std::int32_t>(draw_.next(1u << 31)) - 7;
    }

    double real() {
        const double values[] = {0.0,
                                 -0.0,
                                 DBL_MAX,
                                 -DBL_MAX,
                                 DBL_MIN,
                                 std::numeric_limits<double>::denorm_min(),
                                 -0.00001,
                                 1e16,
                                 1234567.0,
                                 0.1 + 0.2,
                                 std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()};
        constexpr unsigned kValues = sizeof values / sizeof values[0];
        const unsigned pick = draw_.next(kValues + 2);
        double value = 0;
        if (pick < kValues) {
            value = values[pick];
        } else {
            // Any bit pattern: every exponent, sign and mantissa.
            std::uint64_t bits = 0;
            for (int i = 0; i < 4; ++i)
                bits = (bits << 16) | draw_.next(1u << 16);
            static_assert(sizeof bits == sizeof value);
            std::memcpy(&value, &bits, sizeof value);
        }
        if (!std::isfinite(value))
            unwritable_ = true;
        return value;
    }

    // An identifier, or something the reader would not take for one.
    // An empty label or variable is none, which is fine.
    std::string name(bool emptyIsNone = false) {
        switch (draw_.next(32)) {
            case 0:
                unwritable_ = true;
                return keywordPrefixed();
            case 1: {
                std::string text = nonIdentifier();
                unwritable_ = unwritable_ || !(emptyIsNone && text.empty());
                return text;
            }
            case 2:
                return "N" + std::string(126, 'x');  // the longest identifier
            case 3:
                unwritable_ = true;
                return "N" + std::string(127, 'x');
            default:
                return identifier();
        }
    }

    // As name(), also empty (no label) and the wildcard.
    std::string label() {
        switch (draw_.next(8)) {
            case 0:
                return {};
            case 1:
                if (kind_ == FileKind::Graph)
                    unwritable_ = true;
                return "*";
            default:
                return name(true);
        }
    }

    // Starts with an upper-case letter, which no keyword does.
    std::string identifier() {
        static const char kTail[] =
            "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
        std::string text(1, static_cast<char>('A' + draw_.next(26)));
        for (unsigned i = draw_.next(8); i > 0; --i)
            text.push_back(kTail[draw_.next(sizeof kTail - 1)]);
        return text;
    }

    std::string keywordPrefixed() {
        static const char* const kKeywords[] = {"vertex", "edge",   "label",  "true",  "false",
                                                "real",   "string", "vector", "input", "interface"};
        const unsigned count = kind_ == FileKind::Graph ? 8 : 10;  // the last two: rules only
        return kKeywords[draw_.next(count)] + identifier();
    }

    std::string nonIdentifier() {
        static const char* const kTexts[] = {"", "1a", "a b", "_x", "a-b", "\xc3\xa9t\xc3\xa9"};
        return kTexts[draw_.next(6)];
    }

    // A text to stand between the quotes (`close` '"') or the brackets (']'): printable text
    // whose quotes, brackets and backslashes carry a backslash, sometimes every printable
    // character, sometimes long, and sometimes spoilt in one way.
    std::string quoted(char close) {
        std::string text;
        const unsigned shape = draw_.next(4);
        const unsigned length = shape == 0                         ? 95
                                : shape == 1 && draw_.next(8) == 0 ? 70000
                                                                   : draw_.next(12);
        for (unsigned i = 0; i < length; ++i) {
            const char c = static_cast<char>(shape == 0 ? 32 + i : 32 + draw_.next(95));
            if (c == '"' || c == ']' || c == '\\')
                text.push_back('\\');
            text.push_back(c);
        }
        if (text.size() > 65534) {
            text.resize(65533 + draw_.next(2));  // at the bound, or one over
            if (text.back() == '\\')
                text.back() = 'b';
            if (text.size() > 65534)
                unwritable_ = true;
        }
        switch (draw_.next(24)) {
            case 0:  // a closing character with no backslash
                text.insert(0, 1, close);
                unwritable_ = true;
                break;
            case 1:  // the other closing character, harmless here
                text.insert(0, 1, close == '"' ? ']' : '"');
                break;
            case 2:
                text.push_back('\\');
                unwritable_ = true;
                break;
            case 3: {
                // A control or non-ASCII byte: strings refuse it, expressions only a zero.
                const unsigned char byte =
                    draw_.next(2) == 0 ? draw_.next(32) : 127 + draw_.next(129);
                text.push_back(static_cast<char>(byte));
                if (close == '"' || byte == 0)
                    unwritable_ = true;
                break;
            }
            default:
                break;
        }
        return text;
    }

    Draw& draw_;
    FileKind kind_;
    bool unwritable_ = false;
    bool hasExpression_ = false;
};

// The value a real has after a file: what the stream's default format (six significant digits)
// denotes.
inline double afterFile(double value) {
    std::ostringstream text;
    text << value;
    return std::strtod(text.str().c_str(), nullptr);
}

// Empty when `read` is `original` as a file keeps it: labels, variables, attributes but the
// internal ones (expressions instead of the values they stand for), structure by list positions;
// else what differs.
inline std::string objectDifference(const GraphObject& original, const GraphObject& read) {
    if (original.label() != read.label())
        return "label";
    if (variableOf(original) != variableOf(read))
        return "variable";
    std::vector<const Attribute*> kept;
    for (const Attribute& attribute : original.attributes()) {
        if (!isInternalName(attribute.name()))
            kept.push_back(&attribute);
    }
    if (kept.size() != read.attributeCount())
        return "attribute count";
    auto other = read.attributes().begin();
    for (const Attribute* attribute : kept) {
        const Attribute& copy = *other;
        ++other;
        if (copy.name() != attribute->name() || copy.type() != attribute->type())
            return "attribute " + attribute->name();
        const std::string* expression = expressionOf(*attribute);
        const std::string* copied = expressionOf(copy);
        if (expression != nullptr || copied != nullptr) {
            if (expression == nullptr || copied == nullptr || *expression != *copied)
                return "expression of " + attribute->name();
            continue;
        }
        bool same = true;
        if (attribute->type() == AttributeType::Real) {
            same = afterFile(static_cast<const RealAttribute*>(attribute)->value()) ==
                   static_cast<const RealAttribute&>(copy).value();
        } else if (attribute->type() == AttributeType::Vector) {
            const auto& x = static_cast<const VectorAttribute*>(attribute)->value();
            const auto& y = static_cast<const VectorAttribute&>(copy).value();
            same = x.size() == y.size();
            for (std::size_t i = 0; same && i < x.size(); ++i)
                same = afterFile(x[i]) == y[i];
        } else {
            same = attribute->equals(copy);
        }
        if (!same)
            return "value of " + attribute->name();
    }
    return {};
}

// Positions of a graph's vertices and edges in list order, -1 for null.
template <typename T, typename List>
int positionIn(List list, const T* object) {
    int at = 0;
    for (const T& item : list) {
        if (&item == object)
            return at;
        ++at;
    }
    return -1;
}

inline std::string graphDifference(const DirectedGraph& original, const DirectedGraph& read) {
    if (original.vertexCount() != read.vertexCount() || original.edgeCount() != read.edgeCount())
        return "counts";
    auto vertex = read.vertices().begin();
    for (const DirectedGraphVertex& x : original.vertices()) {
        const std::string difference = objectDifference(x, *vertex++);
        if (!difference.empty())
            return "vertex: " + difference;
    }
    auto edge = read.edges().begin();
    for (const DirectedGraphEdge& x : original.edges()) {
        const DirectedGraphEdge& y = *edge++;
        if (positionIn(original.vertices(), x.source()) !=
                positionIn(read.vertices(), y.source()) ||
            positionIn(original.vertices(), x.target()) != positionIn(read.vertices(), y.target()))
            return "edge ends";
        const std::string difference = objectDifference(x, y);
        if (!difference.empty())
            return "edge: " + difference;
    }
    return {};
}

inline std::string ruleDifference(const DirectedGraphRule& original,
                                  const DirectedGraphRule& read) {
    if (original.name() != read.name())
        return "name";
    if (original.condition() != read.condition())
        return "condition";
    std::string difference = graphDifference(original.leftSide(), read.leftSide());
    if (difference.empty())
        difference = graphDifference(original.rightSide(), read.rightSide());
    if (!difference.empty())
        return difference;
    const auto& x = original.interface().vertexPairs();
    const auto& y = read.interface().vertexPairs();
    if (x.size() != y.size())
        return "interface size";
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (positionIn(original.leftSide().vertices(), x[i].left) !=
                positionIn(read.leftSide().vertices(), y[i].left) ||
            positionIn(original.rightSide().vertices(), x[i].right) !=
                positionIn(read.rightSide().vertices(), y[i].right))
            return "interface pair";
    }
    return {};
}

}  // namespace vellum::test
