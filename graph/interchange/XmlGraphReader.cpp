#include "graph/interchange/XmlGraphReader.h"

namespace vellum {

bool XmlGraphReader::read(const std::string& fileName) {
    XmlTree tree(fileName);
    const xmlNode* root = tree.root();
    if (root == nullptr)
        return graph_.fail(tree.failure());
    if (localName(root) != names_.root)
        return graph_.fail(std::string("the document is no ") + names_.format +
                           ": its root element is <" + std::string(localName(root)) + ">");
    readPreamble(root);
    const std::vector<xmlNode*> graphs = childElements(root, "graph");
    if (graphs.empty())
        return graph_.fail("the document holds no <graph>");
    if (graphs.size() > 1)
        graph_.note(std::to_string(graphs.size() - 1) + " more <graph> elements are left out");
    const xmlNode* graph = graphs.front();
    // GXL also says "defaultundirected".
    const std::string mode = attributeOf(graph, names_.edgeMode).value_or("directed");
    directedByDefault_ = mode.find("undirected") == std::string::npos;
    for (const xmlNode* node : childElements(graph, "node")) {
        const std::optional<std::string> id = attributeOf(node, "id");
        if (!id)
            return graph_.fail("a <node> has no id");
        DirectedGraphVertex* vertex = graph_.addVertex(*id);
        if (!vertex || !readContents(*vertex, node, foreignNode(*id), "node"))
            return false;
    }
    noteLeftOut(graph);
    for (const xmlNode* edge : childElements(graph, "edge"))
        if (!readEdge(edge))
            return false;
    return true;
}

bool XmlGraphReader::readEdge(const xmlNode* element) {
    const std::string id = attributeOf(element, "id").value_or("");
    const std::optional<std::string> source = attributeOf(element, names_.source);
    const std::optional<std::string> target = attributeOf(element, names_.target);
    if (!source || !target)
        return graph_.fail((id.empty() ? std::string("an <edge>") : "the edge '" + id + "'") +
                           " lacks its " + names_.source + " or " + names_.target);
    const std::string name = foreignEdge(id, *source, *target);
    const std::optional<std::string> directed = attributeOf(element, names_.directed);
    if (directed ? *directed == "false" : !directedByDefault_)
        graph_.note("undirected edges are read as directed from source to target");
    DirectedGraphEdge* edge = graph_.addEdge(name, *source, *target);
    return edge && readContents(*edge, element, name, "edge");
}

}  // namespace vellum
