// DOT: written for Graphviz to draw (labels, "color" as #rrggbb, "position" as "pos" in points,
// so that `neato -n` draws Vellum's layout) with every other attribute under its own name, and
// read through Graphviz's own parser (cgraph). Read values are numbers, truth values or vectors
// ("(1 2 3)") when their text is one, else strings.
#include <graphviz/cgraph.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <sstream>

#include "graph/BooleanAttribute.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "graph/interchange/Formats.h"

// cgraph's own, not in its header: empties the scanner's buffer.
extern "C" void aglexbad(void);

namespace vellum {
namespace {

constexpr double kPointsPerUnit = 72.0;
// Where a colour that "#rrggbb" rounds is kept exactly; no attribute of a graph file has this
// name.
constexpr const char* kExactColour = "vellum.color";

// cgraph keeps its parser and error state in globals: one reading at a time.
std::mutex& cgraphLock() {
    static std::mutex lock;
    return lock;
}

struct GraphCloser {
    void operator()(Agraph_t* graph) const { agclose(graph); }
};

std::optional<std::vector<double>> hexColour(std::string_view text) {
    if (text.size() != 7 || text[0] != '#')
        return std::nullopt;
    std::vector<double> rgb;
    for (int i = 0; i < 3; ++i) {
        const std::string pair(text.substr(1 + 2 * i, 2));
        char* end = nullptr;
        const long value = std::strtol(pair.c_str(), &end, 16);
        if (end != pair.c_str() + 2)
            return std::nullopt;
        rgb.push_back(static_cast<double>(value) / 255.0);
    }
    return rgb;
}

std::unique_ptr<Attribute> valueFromText(const std::string& name, const std::string& text) {
    if (auto number = integerFrom(text); number && *number >= INT32_MIN && *number <= INT32_MAX)
        return std::make_unique<IntegerAttribute>(name, static_cast<std::int32_t>(*number));
    if (auto number = realFrom(text))
        return std::make_unique<RealAttribute>(name, *number);
    if (text == "true" || text == "false")
        return std::make_unique<BooleanAttribute>(name, text == "true");
    if (!text.empty() && text.front() == '(')
        if (auto numbers = numbersFrom(text))
            return std::make_unique<VectorAttribute>(name, *numbers);
    return std::make_unique<StringAttribute>(name, text);
}

class DotReader {
  public:
    explicit DotReader(ForeignGraph& graph) : graph_(graph) {}

    bool read(const std::string& fileName) {
        std::ifstream in(fileName, std::ios::binary);
        if (!in)
            return graph_.fail("the file cannot be opened");
        const std::string text((std::istreambuf_iterator<char>(in)),
                               std::istreambuf_iterator<char>());
        if (text.find('\0') != std::string::npos)
            return graph_.fail("the file holds a NUL byte, which is no DOT");
        std::lock_guard<std::mutex> lock(cgraphLock());
        agseterr(AGMAX);  // errors are ours to report
        agreseterrors();
        agreadline(1);
        std::unique_ptr<Agraph_t, GraphCloser> graph(agmemread(text.c_str()));
        // The scanner would start the next reading with what this one left unread (a second
        // graph, the line end after the first), in a buffer that is gone by then.
        aglexbad();
        if (!graph) {
            std::string why;
            if (agerrors() > 0) {
                // A copy for the caller to free.
                if (char* last = aglasterr()) {
                    why = last;
                    std::free(last);
                }
            }
            while (!why.empty() && (why.back() == '\n' || why.back() == ' '))
                why.pop_back();
            return graph_.fail(why.empty() ? "the file holds no DOT graph" : "not DOT: " + why);
        }
        if (!agisdirected(graph.get()))
            graph_.note("undirected edges are read as directed from tail to head");
        if (agfstsubg(graph.get()) != nullptr)
            graph_.note("subgraphs are left out (their nodes and edges are read)");
        return readNodes(graph.get()) && readEdges(graph.get());
    }

  private:
    bool readNodes(Agraph_t* graph) {
        // Without a "label" anywhere, Graphviz shows names; so does Vellum then.
        const bool labelled = agattr(graph, AGNODE, const_cast<char*>("label"), nullptr) != nullptr;
        for (Agnode_t* node = agfstnode(graph); node; node = agnxtnode(graph, node)) {
            const std::string id = agnameof(node);
            DirectedGraphVertex* vertex = graph_.addVertex(id);
            if (!vertex)
                return false;
            const std::string name = foreignNode(id);
            const std::string label = valueOf(node, "label");
            if (!graph_.setLabel(*vertex, name, !labelled || label == "\\N" ? id : label))
                return false;
            std::optional<std::string> pos;
            bool hasPosition = false;
            Values values;
            for (Agsym_t* sym = agnxtattr(graph, AGNODE, nullptr); sym;
                 sym = agnxtattr(graph, AGNODE, sym)) {
                const std::string key = sym->name;
                const std::string value = agxget(node, sym);
                if (key == "label" || value.empty())
                    continue;
                if (key == "pos") {
                    pos = value;
                    continue;
                }
                hasPosition = hasPosition || key == "position";
                values.emplace_back(key, value);
            }
            if (!addAll(*vertex, name, values))
                return false;
            // Graphviz's place, when Vellum's own is not there.
            if (pos && !hasPosition) {
                if (auto xy = numbersFrom(pos->substr(0, pos->find('!'))); xy && xy->size() >= 2) {
                    std::vector<double> at{(*xy)[0] / kPointsPerUnit, (*xy)[1] / kPointsPerUnit,
                                           xy->size() > 2 ? (*xy)[2] / kPointsPerUnit : 0.0};
                    if (!graph_.addAttribute(*vertex, name,
                                             std::make_unique<VectorAttribute>("position", at)))
                        return false;
                } else {
                    graph_.note("a \"pos\" that is no point is left out");
                }
            }
        }
        return true;
    }

    bool readEdges(Agraph_t* graph) {
        // In the order they were written, which is the order of their sequence numbers.
        std::vector<Agedge_t*> edges;
        for (Agnode_t* node = agfstnode(graph); node; node = agnxtnode(graph, node))
            for (Agedge_t* edge = agfstout(graph, node); edge; edge = agnxtout(graph, edge))
                edges.push_back(edge);
        std::sort(edges.begin(), edges.end(),
                  [](Agedge_t* a, Agedge_t* b) { return AGSEQ(a) < AGSEQ(b); });
        for (Agedge_t* edge : edges) {
            const std::string tail = agnameof(agtail(edge));
            const std::string head = agnameof(aghead(edge));
            const std::string name = foreignEdge("", tail, head);
            DirectedGraphEdge* made = graph_.addEdge(name, tail, head);
            if (!made || !graph_.setLabel(*made, name, valueOf(edge, "label")))
                return false;
            Values values;
            for (Agsym_t* sym = agnxtattr(graph, AGEDGE, nullptr); sym;
                 sym = agnxtattr(graph, AGEDGE, sym)) {
                const std::string key = sym->name;
                const std::string value = agxget(edge, sym);
                // "key" holds the name cgraph gives parallel edges.
                if (key != "label" && key != "key" && !value.empty())
                    values.emplace_back(key, value);
            }
            if (!addAll(*made, name, values))
                return false;
        }
        return true;
    }

    static std::string valueOf(void* object, const char* key) {
        char* value = agget(object, const_cast<char*>(key));
        return value ? value : "";
    }

    using Values = std::vector<std::pair<std::string, std::string>>;

    // The exact colour, when the writer kept it, stands for Graphviz's rounded one.
    bool addAll(GraphObject& object, const std::string& name, const Values& values) {
        const bool exactColour = std::any_of(values.begin(), values.end(), [](const auto& value) {
            return value.first == kExactColour;
        });
        for (const auto& [key, value] : values) {
            std::unique_ptr<Attribute> attribute;
            if (key == kExactColour) {
                if (auto rgb = numbersFrom(value))
                    attribute = std::make_unique<VectorAttribute>("color", *rgb);
            } else if (key == "color") {
                if (exactColour)
                    continue;
                if (auto rgb = hexColour(value))
                    attribute = std::make_unique<VectorAttribute>("color", *rgb);
            }
            if (!attribute)
                attribute = valueFromText(key, value);
            if (!graph_.addAttribute(object, name, std::move(attribute)))
                return false;
        }
        return true;
    }

    ForeignGraph& graph_;
};

// A DOT string: double quotes escaped. DOT keeps other backslashes as they are, so a
// backslash before a double quote or at the end cannot be written; none for those, line
// breaks and NUL.
std::optional<std::string> quoted(std::string_view text) {
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\0' || c == '\r' || c == '\n')
            return std::nullopt;
        if (c == '\\' && (i + 1 == text.size() || text[i + 1] == '"'))
            return std::nullopt;
        if (c == '"')
            out += '\\';
        out += c;
    }
    return out + "\"";
}

std::string realDotText(double value) {
    std::string text = exactRealText(value);
    // A real that looks like an integer would read back as one.
    if (text.find_first_of(".eEn") == std::string::npos)
        text += ".0";
    return text;
}

class DotWriter {
  public:
    DotWriter(std::ostream& out, std::string& refusal) : out_(out), refusal_(refusal) {}

    bool write(const DirectedGraph& graph) {
        out_ << "digraph G {\n";
        std::map<const DirectedGraphVertex*, std::string> ids;
        for (const DirectedGraphVertex& vertex : graph.vertices()) {
            const std::string id = "n" + std::to_string(ids.size() + 1);
            ids[&vertex] = id;
            out_ << "  " << id << " [";
            if (!writeContents(vertex, foreignNode(id), true))
                return false;
            out_ << "];\n";
        }
        for (const DirectedGraphEdge& edge : graph.edges()) {
            const std::string& tail = ids[edge.source()];
            const std::string& head = ids[edge.target()];
            out_ << "  " << tail << " -> " << head << " [";
            if (!writeContents(edge, foreignEdge("", tail, head), false))
                return false;
            out_ << "];\n";
        }
        out_ << "}\n";
        return true;
    }

  private:
    bool writeContents(const GraphObject& object, const std::string& name, bool vertex) {
        const std::optional<std::string> label = quoted(object.label());
        if (!label)
            return refuse(name, "the label");
        out_ << "label=" << *label;
        for (const Attribute& attribute : object.attributes()) {
            if (isInternalAttribute(attribute))
                continue;
            const std::optional<std::string> key = quoted(attribute.name());
            if (!key)
                return refuse(name, "an attribute name");
            std::optional<std::string> value;
            switch (attribute.type()) {
                // Quoted: DOT's numerals have no exponent.
                case AttributeType::Boolean:
                    value = static_cast<const BooleanAttribute&>(attribute).value() ? "\"true\""
                                                                                    : "\"false\"";
                    break;
                case AttributeType::Integer:
                    value =
                        "\"" +
                        std::to_string(static_cast<const IntegerAttribute&>(attribute).value()) +
                        "\"";
                    break;
                case AttributeType::Real:
                    value = "\"" +
                            realDotText(static_cast<const RealAttribute&>(attribute).value()) +
                            "\"";
                    break;
                case AttributeType::String:
                    value = quoted(static_cast<const StringAttribute&>(attribute).value());
                    if (!value)
                        return refuse(name, "the attribute '" + attribute.name() + "'");
                    break;
                case AttributeType::Vector: {
                    const auto& elements = static_cast<const VectorAttribute&>(attribute).value();
                    if (attribute.name() == "color" && colour(elements))
                        continue;
                    if (vertex && attribute.name() == "position" && elements.size() >= 2)
                        out_ << ", pos=\"" << exactRealText(elements[0] * kPointsPerUnit) << ","
                             << exactRealText(elements[1] * kPointsPerUnit) << "\"";
                    value = "\"(" + vectorText(elements) + ")\"";
                    break;
                }
            }
            out_ << ", " << *key << "=" << *value;
        }
        return true;
    }

    // A colour of three parts between 0 and 1 as Graphviz's "#rrggbb"; false for other vectors.
    bool colour(const std::vector<double>& rgb) {
        if (rgb.size() != 3 ||
            std::any_of(rgb.begin(), rgb.end(), [](double c) { return !(c >= 0 && c <= 1); }))
            return false;
        char text[8];
        std::snprintf(text, sizeof text, "#%02x%02x%02x",
                      static_cast<unsigned>(std::lround(rgb[0] * 255)),
                      static_cast<unsigned>(std::lround(rgb[1] * 255)),
                      static_cast<unsigned>(std::lround(rgb[2] * 255)));
        out_ << ", color=\"" << text << "\"";
        if (hexColour(text) != rgb)
            out_ << ", \"" << kExactColour << "\"=\"(" << vectorText(rgb) << ")\"";
        return true;
    }

    bool refuse(const std::string& name, const std::string& what) {
        refusal_ = name + ": " + what +
                   " holds a line break, a NUL byte, or a backslash at its end or before a double "
                   "quote, which DOT cannot carry";
        return false;
    }

    std::ostream& out_;
    std::string& refusal_;
};

}  // namespace

bool readDot(const std::string& fileName, ForeignGraph& graph) {
    return DotReader(graph).read(fileName);
}

bool writeDot(const DirectedGraph& graph, std::ostream& out, std::string& refusal) {
    return DotWriter(out, refusal).write(graph);
}

}  // namespace vellum
