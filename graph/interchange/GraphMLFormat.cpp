// GraphML: labels are the data of the key named "label"; attributes are the data of keys
// typed boolean, int, long, float, double or string. A vector is a string of numbers
// separated by blanks under a key whose <desc> says "vector".
#include <map>
#include <tuple>

#include "graph/BooleanAttribute.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "graph/interchange/Formats.h"
#include "graph/interchange/XmlGraphReader.h"

namespace vellum {
namespace {

constexpr const char* kVectorDescription = "vector";

// The vectors of every vertex's look: read as vectors when their text is numbers even without
// the <desc>, which other programs drop when they write a file again.
bool isLookVector(const std::string& name) {
    return name == "position" || name == "orientation" || name == "scale" || name == "color";
}

struct Key {
    std::string name;
    std::string type;  // attr.type; empty for keys of other kinds (yEd's graphics)
    std::string domain;
    bool vector = false;
    std::optional<std::string> fallback;  // the <default>
};

std::string trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

class GraphMLReader : public XmlGraphReader {
  public:
    explicit GraphMLReader(ForeignGraph& graph)
        : XmlGraphReader(graph,
                         {"GraphML", "graphml", "source", "target", "directed", "edgedefault"}) {}

  private:
    void readPreamble(const xmlNode* root) override {
        for (const xmlNode* key : childElements(root, "key"))
            readKey(key);
    }

    void noteLeftOut(const xmlNode* graph) override {
        if (const std::size_t hyperedges = childElements(graph, "hyperedge").size())
            graph_.note(std::to_string(hyperedges) + " hyperedges are left out");
    }

    void readKey(const xmlNode* element) {
        const std::optional<std::string> id = attributeOf(element, "id");
        if (!id)
            return graph_.note("a <key> without an id is left out");
        Key key;
        key.name = attributeOf(element, "attr.name").value_or(*id);
        key.type = attributeOf(element, "attr.type").value_or("");
        key.domain = attributeOf(element, "for").value_or("all");
        if (key.type.empty() && !attributeOf(element, "yfiles.type"))
            key.type = "string";  // GraphML's default
        for (const xmlNode* desc : childElements(element, "desc"))
            key.vector = key.vector || trim(textOf(desc)) == kVectorDescription;
        for (const xmlNode* fallback : childElements(element, "default"))
            key.fallback = textOf(fallback);
        keys_[*id] = key;
    }

    bool appliesTo(const Key& key, const char* domain) const {
        return key.domain == "all" || key.domain == domain;
    }

    // The data of the element and the defaults of its domain's keys it has no data for.
    bool readContents(GraphObject& object, const xmlNode* element, const std::string& name,
                      const char* domain) override {
        std::map<std::string, bool> given;
        for (const xmlNode* data : childElements(element, "data")) {
            const std::string keyId = attributeOf(data, "key").value_or("");
            auto key = keys_.find(keyId);
            if (key == keys_.end()) {
                graph_.note("data of the undeclared key '" + keyId + "' is left out");
                continue;
            }
            given[keyId] = true;
            if (!value(object, name, key->second, data))
                return false;
        }
        for (const auto& [id, key] : keys_)
            if (key.fallback && appliesTo(key, domain) && !given.count(id) &&
                !valueFromText(object, name, key, *key.fallback))
                return false;
        for (const xmlNode* child : childElements(element))
            if (localName(child) == "graph")
                graph_.note("nested graphs are left out");
            else if (localName(child) == "port")
                graph_.note("ports are left out");
        return true;
    }

    bool value(GraphObject& object, const std::string& name, const Key& key, const xmlNode* data) {
        if (key.type.empty() || !childElements(data).empty()) {
            graph_.note("the key '" + key.name + "' holds markup, not a value, and is left out");
            return true;
        }
        return valueFromText(object, name, key, textOf(data));
    }

    bool valueFromText(GraphObject& object, const std::string& name, const Key& key,
                       const std::string& text) {
        if (key.name == "label")
            return graph_.setLabel(object, name, trim(text));
        std::unique_ptr<Attribute> attribute;
        const std::string& type = key.type;
        if (type == "boolean") {
            if (auto truth = truthFrom(text))
                attribute = std::make_unique<BooleanAttribute>(key.name, *truth);
        } else if (type == "int" || type == "long") {
            if (auto number = integerFrom(text);
                number && *number >= INT32_MIN && *number <= INT32_MAX)
                attribute = std::make_unique<IntegerAttribute>(key.name,
                                                               static_cast<std::int32_t>(*number));
        } else if (type == "float" || type == "double") {
            if (auto number = realFrom(text))
                attribute = std::make_unique<RealAttribute>(key.name, *number);
        } else if (type == "string") {
            if (key.vector || isLookVector(key.name)) {
                if (auto numbers = numbersFrom(text))
                    attribute = std::make_unique<VectorAttribute>(key.name, *numbers);
            }
            if (!attribute && !key.vector)
                attribute = std::make_unique<StringAttribute>(key.name, text);
        } else {
            graph_.note("the key '" + key.name + "' of the unknown type '" + type +
                        "' is read as a string");
            attribute = std::make_unique<StringAttribute>(key.name, text);
        }
        if (!attribute) {
            graph_.note("a value of the key '" + key.name + "' that is no " +
                        (key.vector ? std::string("vector") : type) + " is read as a string");
            attribute = std::make_unique<StringAttribute>(key.name, text);
        }
        return graph_.addAttribute(object, name, std::move(attribute));
    }

    std::map<std::string, Key> keys_;
};

const char* graphMLType(AttributeType type) {
    switch (type) {
        case AttributeType::Boolean:
            return "boolean";
        case AttributeType::Integer:
            return "int";
        case AttributeType::Real:
            return "double";
        default:
            return "string";
    }
}

class GraphMLWriter {
  public:
    GraphMLWriter(std::ostream& out, std::string& refusal) : out_(out), refusal_(refusal) {}

    bool write(const DirectedGraph& graph) {
        // Keys first: every (domain, name, type) the graph uses, in the order met.
        keyId("node", "label", AttributeType::String);
        keyId("edge", "label", AttributeType::String);
        for (const DirectedGraphVertex& vertex : graph.vertices())
            declareKeys("node", vertex);
        for (const DirectedGraphEdge& edge : graph.edges())
            declareKeys("edge", edge);
        out_ << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                "<graphml xmlns=\"http://graphml.graphdrawing.org/xmlns\"\n"
                "    xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"\n"
                "    xsi:schemaLocation=\"http://graphml.graphdrawing.org/xmlns "
                "http://graphml.graphdrawing.org/xmlns/1.0/graphml.xsd\">\n";
        for (const auto& line : keyLines_)
            out_ << line;
        out_ << "  <graph id=\"G\" edgedefault=\"directed\">\n";
        std::map<const DirectedGraphVertex*, std::string> ids;
        for (const DirectedGraphVertex& vertex : graph.vertices()) {
            const std::string id = "n" + std::to_string(ids.size() + 1);
            ids[&vertex] = id;
            out_ << "    <node id=\"" << id << "\">\n";
            if (!writeData("node", vertex, foreignNode(id)))
                return false;
            out_ << "    </node>\n";
        }
        // Edges without ids: programs that keep an id as data (NetworkX) would hand it back as
        // an attribute.
        for (const DirectedGraphEdge& edge : graph.edges()) {
            const std::string& source = ids[edge.source()];
            const std::string& target = ids[edge.target()];
            out_ << "    <edge source=\"" << source << "\" target=\"" << target << "\">\n";
            if (!writeData("edge", edge, foreignEdge("", source, target)))
                return false;
            out_ << "    </edge>\n";
        }
        out_ << "  </graph>\n</graphml>\n";
        return true;
    }

  private:
    using KeyOf = std::tuple<std::string, std::string, AttributeType>;

    std::string keyId(const char* domain, const std::string& name, AttributeType type) {
        auto [at, added] = keys_.emplace(KeyOf{domain, name, type}, "");
        if (!added)
            return at->second;
        at->second = "d" + std::to_string(keys_.size() - 1);
        std::string line = "  <key id=\"" + at->second + "\" for=\"" + domain + "\" attr.name=\"" +
                           xmlEscaped(name).value_or("") + "\" attr.type=\"" + graphMLType(type) +
                           "\"";
        line += type == AttributeType::Vector
                    ? std::string(">\n    <desc>") + kVectorDescription + "</desc>\n  </key>\n"
                    : "/>\n";
        keyLines_.push_back(line);
        return at->second;
    }

    void declareKeys(const char* domain, const GraphObject& object) {
        for (const Attribute& attribute : object.attributes())
            if (!isInternalAttribute(attribute))
                keyId(domain, attribute.name(), attribute.type());
    }

    bool writeData(const char* domain, const GraphObject& object, const std::string& name) {
        if (!object.label().empty() &&
            !line(keyId(domain, "label", AttributeType::String), object.label(), name, "label"))
            return false;
        for (const Attribute& attribute : object.attributes()) {
            if (isInternalAttribute(attribute))
                continue;
            if (!xmlEscaped(attribute.name()))
                return refuse(name, "the attribute name '" + attribute.name() + "'");
            if (!line(keyId(domain, attribute.name(), attribute.type()),
                      attributeValueText(attribute, exactRealText, " "), name,
                      "the attribute '" + attribute.name() + "'"))
                return false;
        }
        return true;
    }

    bool line(const std::string& key, const std::string& text, const std::string& name,
              const std::string& what) {
        const std::optional<std::string> escaped = xmlEscaped(text);
        if (!escaped)
            return refuse(name, what);
        out_ << "      <data key=\"" << key << "\">" << *escaped << "</data>\n";
        return true;
    }

    bool refuse(const std::string& name, const std::string& what) {
        refusal_ = name + ": " + what + " holds bytes that XML cannot carry";
        return false;
    }

    std::ostream& out_;
    std::string& refusal_;
    std::map<KeyOf, std::string> keys_;
    std::vector<std::string> keyLines_;
};

}  // namespace

bool readGraphML(const std::string& fileName, ForeignGraph& graph) {
    return GraphMLReader(graph).read(fileName);
}

bool writeGraphML(const DirectedGraph& graph, std::ostream& out, std::string& refusal) {
    return GraphMLWriter(out, refusal).write(graph);
}

}  // namespace vellum
