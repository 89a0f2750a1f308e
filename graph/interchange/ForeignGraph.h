// What the readers of GraphML, GXL and DOT share: the graph being built with the foreign ids of
// its vertices, every label and attribute passed through ImportedNames, the notes on what was
// read differently or left out (each distinct note once, with its count), and the values'
// texts as numbers. Vertices come first, then the edges that join them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/interchange/ImportedNames.h"

namespace vellum {

class ForeignGraph {
  public:
    ForeignGraph(DirectedGraph& graph, bool rename, const char* format);

    // Null, after fail(), for an id met before.
    DirectedGraphVertex* addVertex(const std::string& id);
    // Null, after fail(), when an end is no vertex read before.
    DirectedGraphEdge* addEdge(const std::string& element, const std::string& source,
                               const std::string& target);
    bool setLabel(GraphObject& object, const std::string& element, std::string_view label);
    bool addAttribute(GraphObject& object, const std::string& element,
                      std::unique_ptr<Attribute> attribute);

    void note(const std::string& text);
    bool fail(const std::string& text);
    bool failed() const { return !failure_.empty(); }
    // The failure was a refusal that renaming would have avoided.
    bool renamable() const { return renamable_; }

    // Writes the failure, or the renamings and notes, to the console as lines that begin with
    // the format and the file; true when nothing failed. On failure the graph is emptied.
    bool finish(const std::string& fileName);

  private:
    bool refusedName();

    DirectedGraph& graph_;
    ImportedNames names_;
    const char* format_;
    std::unordered_map<std::string, DirectedGraphVertex*> vertices_;
    std::vector<std::string> noteOrder_;
    std::map<std::string, std::size_t> noteCounts_;
    std::string failure_;
    bool renamable_ = false;
};

// How an element is named in messages: "node 'n3'", "edge 'e1' (n1 -> n2)".
std::string foreignNode(const std::string& id);
std::string foreignEdge(const std::string& id, const std::string& source,
                        const std::string& target);

// The whole text as a number of the kind, or none: decimal integers (with "-"), reals as
// strtod in the C locale reads them, truth values "true"/"false" (any case) and "1"/"0".
std::optional<std::int64_t> integerFrom(std::string_view text);
std::optional<double> realFrom(std::string_view text);
std::optional<bool> truthFrom(std::string_view text);
// Numbers separated by blanks or commas, optionally in parentheses: "(1 2 3)", "1,2".
std::optional<std::vector<double>> numbersFrom(std::string_view text);
// The shortest text that reads back as the same double.
std::string exactRealText(double value);

}  // namespace vellum
