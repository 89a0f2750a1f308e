// What reading GraphML and GXL share: the root element, the first <graph>, its nodes and then
// its edges with their two ends and their direction. A format fills in its own names and what a
// node or an edge holds.
#pragma once

#include <string>

#include "graph/interchange/ForeignGraph.h"
#include "graph/interchange/XmlTree.h"

namespace vellum {

class XmlGraphReader {
  public:
    struct Names {
        const char* format;  // in messages: "GraphML"
        const char* root;    // "graphml"
        const char* source;  // an edge's attributes: "source", "target", "directed"
        const char* target;
        const char* directed;
        const char* edgeMode;  // the graph's attribute that says undirected: "edgedefault"
    };

    XmlGraphReader(ForeignGraph& graph, Names names) : graph_(graph), names_(names) {}
    virtual ~XmlGraphReader() = default;

    // False after failing the graph.
    bool read(const std::string& fileName);

  protected:
    // The root's children before the graph (GraphML's keys).
    virtual void readPreamble(const xmlNode* root) { (void)root; }
    // What a node or an edge holds: its label and attributes; `domain` is "node" or "edge".
    virtual bool readContents(GraphObject& object, const xmlNode* element, const std::string& name,
                              const char* domain) = 0;
    // Notes on the graph's children that are not read (hyperedges, relations).
    virtual void noteLeftOut(const xmlNode* graph) { (void)graph; }

    ForeignGraph& graph_;

  private:
    bool readEdge(const xmlNode* element);

    Names names_;
    bool directedByDefault_ = true;
};

}  // namespace vellum
