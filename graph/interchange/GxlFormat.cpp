// GXL: a node's or edge's label is its type (the fragment of the type's xlink:href); attributes
// are <attr> elements holding <bool>, <int>, <float> or <string>, and a vector is a <seq> or
// <tup> of numbers.
#include "graph/BooleanAttribute.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "graph/interchange/Formats.h"
#include "graph/interchange/XmlGraphReader.h"

#include <map>

namespace vellum {
namespace {

class GxlReader : public XmlGraphReader {
  public:
    explicit GxlReader(ForeignGraph& graph)
        : XmlGraphReader(graph, {"GXL", "gxl", "from", "to", "isdirected", "edgemode"}) {}

  private:
    void noteLeftOut(const xmlNode* graph) override {
        if (const std::size_t relations = childElements(graph, "rel").size())
            graph_.note(std::to_string(relations) + " relations (<rel>) are left out");
    }

    bool readContents(GraphObject& object, const xmlNode* element, const std::string& name,
                      const char*) override {
        for (const xmlNode* type : childElements(element, "type")) {
            std::string label = attributeOf(type, "href").value_or("");
            if (const auto hash = label.rfind('#'); hash != std::string::npos)
                label.erase(0, hash + 1);
            if (!graph_.setLabel(object, name, label))
                return false;
        }
        for (const xmlNode* attr : childElements(element, "attr")) {
            const std::optional<std::string> attrName = attributeOf(attr, "name");
            const std::vector<xmlNode*> values = childElements(attr);
            if (!attrName || values.empty()) {
                graph_.note("an <attr> without a name or a value is left out");
                continue;
            }
            std::unique_ptr<Attribute> attribute = valueOf(*attrName, values.front());
            if (!attribute)
                continue;
            if (!graph_.addAttribute(object, name, std::move(attribute)))
                return false;
        }
        if (!childElements(element, "graph").empty())
            graph_.note("nested graphs are left out");
        return true;
    }

    std::unique_ptr<Attribute> valueOf(const std::string& name, const xmlNode* value) {
        const std::string_view kind = localName(value);
        const std::string text = textOf(value);
        if (kind == "bool") {
            if (auto truth = truthFrom(text))
                return std::make_unique<BooleanAttribute>(name, *truth);
        } else if (kind == "int") {
            if (auto number = integerFrom(text);
                number && *number >= INT32_MIN && *number <= INT32_MAX)
                return std::make_unique<IntegerAttribute>(name, static_cast<std::int32_t>(*number));
        } else if (kind == "float") {
            if (auto number = realFrom(text))
                return std::make_unique<RealAttribute>(name, *number);
        } else if (kind == "string" || kind == "enum") {
            return std::make_unique<StringAttribute>(name, text);
        } else if (kind == "locator") {
            return std::make_unique<StringAttribute>(name, attributeOf(value, "href").value_or(""));
        } else if (kind == "seq" || kind == "tup") {
            std::vector<double> elements;
            for (const xmlNode* element : childElements(value)) {
                const std::string_view type = localName(element);
                const std::optional<double> number =
                    type == "int" || type == "float" ? realFrom(textOf(element)) : std::nullopt;
                if (!number) {
                    graph_.note("a <" + std::string(kind) +
                                "> that holds more than numbers is left out");
                    return nullptr;
                }
                elements.push_back(*number);
            }
            if (!elements.empty())
                return std::make_unique<VectorAttribute>(name, elements);
            graph_.note("an empty <" + std::string(kind) + "> is left out");
            return nullptr;
        } else {
            graph_.note("<attr> values of the kind <" + std::string(kind) + "> are left out");
            return nullptr;
        }
        graph_.note("a <" + std::string(kind) + "> that holds no " + std::string(kind) +
                    " is read as a string");
        return std::make_unique<StringAttribute>(name, text);
    }
};

class GxlWriter {
  public:
    GxlWriter(std::ostream& out, std::string& refusal) : out_(out), refusal_(refusal) {}

    bool write(const DirectedGraph& graph) {
        out_ << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                "<gxl xmlns:xlink=\"http://www.w3.org/1999/xlink\">\n"
                "  <graph id=\"G\" edgeids=\"true\" edgemode=\"directed\">\n";
        std::map<const DirectedGraphVertex*, std::string> ids;
        for (const DirectedGraphVertex& vertex : graph.vertices()) {
            const std::string id = "n" + std::to_string(ids.size() + 1);
            ids[&vertex] = id;
            out_ << "    <node id=\"" << id << "\">\n";
            if (!writeContents(vertex, foreignNode(id)))
                return false;
            out_ << "    </node>\n";
        }
        std::size_t count = 0;
        for (const DirectedGraphEdge& edge : graph.edges()) {
            const std::string id = "e" + std::to_string(++count);
            const std::string& from = ids[edge.source()];
            const std::string& to = ids[edge.target()];
            out_ << "    <edge id=\"" << id << "\" from=\"" << from << "\" to=\"" << to << "\">\n";
            if (!writeContents(edge, foreignEdge(id, from, to)))
                return false;
            out_ << "    </edge>\n";
        }
        out_ << "  </graph>\n</gxl>\n";
        return true;
    }

  private:
    bool writeContents(const GraphObject& object, const std::string& name) {
        if (!object.label().empty()) {
            const std::optional<std::string> label = xmlEscaped(object.label());
            if (!label)
                return refuse(name, "the label");
            out_ << "      <type xlink:href=\"#" << *label << "\"/>\n";
        }
        for (const Attribute& attribute : object.attributes()) {
            if (isInternalAttribute(attribute))
                continue;
            const std::optional<std::string> attrName = xmlEscaped(attribute.name());
            if (!attrName)
                return refuse(name, "an attribute name");
            out_ << "      <attr name=\"" << *attrName << "\">";
            switch (attribute.type()) {
                case AttributeType::Boolean:
                    out_ << "<bool>"
                         << (static_cast<const BooleanAttribute&>(attribute).value() ? "true"
                                                                                     : "false")
                         << "</bool>";
                    break;
                case AttributeType::Integer:
                    out_ << "<int>" << static_cast<const IntegerAttribute&>(attribute).value()
                         << "</int>";
                    break;
                case AttributeType::Real:
                    out_ << "<float>"
                         << exactRealText(static_cast<const RealAttribute&>(attribute).value())
                         << "</float>";
                    break;
                case AttributeType::String: {
                    const std::optional<std::string> text =
                        xmlEscaped(static_cast<const StringAttribute&>(attribute).value());
                    if (!text)
                        return refuse(name, "the attribute '" + attribute.name() + "'");
                    out_ << "<string>" << *text << "</string>";
                    break;
                }
                case AttributeType::Vector:
                    out_ << "<seq>";
                    for (double element : static_cast<const VectorAttribute&>(attribute).value())
                        out_ << "<float>" << exactRealText(element) << "</float>";
                    out_ << "</seq>";
                    break;
            }
            out_ << "</attr>\n";
        }
        return true;
    }

    bool refuse(const std::string& name, const std::string& what) {
        refusal_ = name + ": " + what + " holds bytes that XML cannot carry";
        return false;
    }

    std::ostream& out_;
    std::string& refusal_;
};

}  // namespace

bool readGxl(const std::string& fileName, ForeignGraph& graph) {
    return GxlReader(graph).read(fileName);
}

bool writeGxl(const DirectedGraph& graph, std::ostream& out, std::string& refusal) {
    return GxlWriter(out, refusal).write(graph);
}

}  // namespace vellum
