#include "tests/support/GraphInvariants.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <sstream>
#include <vector>

#include "graph/GraphWriter.h"

namespace vellum::test {
namespace {

// Walks a list forwards and backwards; the two walks must mirror each other and match size().
template <typename View>
bool linkedBothWays(const View& view, std::ostream& problems, const char* what) {
    using Element = std::remove_reference_t<decltype(*view.begin())>;
    std::vector<Element*> forward;
    for (auto& element : view)
        forward.push_back(&element);
    std::vector<Element*> backward;
    auto at = view.end();
    while (at != view.begin() && backward.size() <= forward.size()) {
        --at;
        backward.push_back(&*at);
    }
    std::reverse(backward.begin(), backward.end());
    const bool ok = forward == backward && forward.size() == view.size();
    if (!ok)
        problems << what << ": forward/backward walks or size() disagree\n";
    return ok;
}

template <typename View, typename T>
std::size_t occurrences(const View& view, const T* element) {
    return static_cast<std::size_t>(
        std::count_if(view.begin(), view.end(), [&](const auto& e) { return &e == element; }));
}

void checkEdge(const DirectedGraph& graph, const DirectedGraphEdge& edge,
               const std::set<const DirectedGraphVertex*>& vertices, std::ostream& problems) {
    if (!graph.contains(edge))
        problems << "an edge of the edge list is not contained\n";
    // An endpoint outside the vertex list must be one that removeVertexOnly() took out.
    for (const DirectedGraphVertex* end : {edge.source(), edge.target()}) {
        if (vertices.count(end) == 0 && end->inGraph())
            problems << "an edge has an endpoint outside the vertex list\n";
    }
    if (occurrences(edge.source()->outgoing(), &edge) != 1)
        problems << "an edge is not exactly once in its source's outgoing list\n";
    if (occurrences(edge.target()->incoming(), &edge) != 1)
        problems << "an edge is not exactly once in its target's incoming list\n";
}

void checkVertex(const DirectedGraphVertex& vertex, const std::set<const DirectedGraphEdge*>& edges,
                 std::ostream& problems) {
    linkedBothWays(vertex.incoming(), problems, "incoming list");
    linkedBothWays(vertex.outgoing(), problems, "outgoing list");
    for (const DirectedGraphEdge& edge : vertex.outgoing()) {
        if (edge.source() != &vertex || edges.count(&edge) == 0)
            problems << "an outgoing entry is not a graph edge leaving the vertex\n";
    }
    for (const DirectedGraphEdge& edge : vertex.incoming()) {
        const bool lingeringLoop = !edge.inGraph() && edge.isLoop();
        if (edge.target() != &vertex || (edges.count(&edge) == 0 && !lingeringLoop))
            problems << "an incoming entry is neither a graph edge nor a lingering loop\n";
        if (lingeringLoop && occurrences(vertex.outgoing(), &edge) != 0)
            problems << "a lingering loop is still in the outgoing list\n";
    }
    if (vertex.inDegree() != vertex.incoming().size() ||
        vertex.outDegree() != vertex.outgoing().size())
        problems << "degrees disagree with the lists\n";
}

// Serials grow along a list: they are what orders occurrences by list position.
template <typename View>
void serialsIncrease(const View& view, std::ostream& problems, const char* what) {
    std::uint64_t previous = 0;
    for (const auto& element : view) {
        if (element.serial() <= previous)
            problems << what << ": serials do not increase along the list\n";
        previous = element.serial();
    }
}

// Every element is listed under its own label, and the per-label counts add up.
template <typename Elements, typename ByLabel, typename Count>
void checkLabels(const Elements& elements, ByLabel byLabel, Count count, std::ostream& problems) {
    std::set<std::string> labels;
    for (const auto& element : elements) {
        labels.insert(element.label());
        if (occurrences(byLabel(element.label()), &element) != 1)
            problems << "an element is not listed once under its label '" << element.label()
                     << "'\n";
    }
    std::size_t total = 0;
    for (const std::string& label : labels) {
        const auto listed = byLabel(label);
        linkedBothWays(listed, problems, "label list");
        total += count(label);
        for (const auto& element : listed) {
            if (element.label() != label || !element.inGraph())
                problems << "the label list of '" << label << "' holds a stranger\n";
        }
    }
    if (total != elements.size())
        problems << "per-label counts do not add up to the element count\n";
}

// Each vertex's edge counts by label, as the graph gives them, against a walk of its edges.
void checkIncidentCounts(const DirectedGraph& graph, std::ostream& problems) {
    std::set<std::string> labels = {"(no such label)"};
    for (const DirectedGraphEdge& edge : graph.edges())
        labels.insert(edge.label());
    for (const DirectedGraphVertex& vertex : graph.vertices()) {
        std::size_t out = 0;
        std::size_t in = 0;
        for (const std::string& label : labels) {
            std::size_t labelledOut = 0;
            std::size_t labelledIn = 0;
            for (const DirectedGraphEdge& edge : graph.edgesWithLabel(label)) {
                labelledOut += edge.source() == &vertex;
                labelledIn += edge.target() == &vertex;
            }
            if (graph.outgoingCount(vertex, label) != labelledOut ||
                graph.incomingCount(vertex, label) != labelledIn)
                problems << "edge counts by the label '" << label << "' are wrong\n";
            out += labelledOut;
            in += labelledIn;
        }
        if (graph.outgoingCount(vertex) != out || graph.incomingCount(vertex) != in)
            problems << "edge counts of a vertex are wrong\n";
    }
}

}  // namespace

::testing::AssertionResult graphIsConsistent(const DirectedGraph& graph) {
    std::ostringstream problems;
    linkedBothWays(graph.vertices(), problems, "vertex list");
    linkedBothWays(graph.edges(), problems, "edge list");
    serialsIncrease(graph.vertices(), problems, "vertex list");
    serialsIncrease(graph.edges(), problems, "edge list");
    std::set<const DirectedGraphVertex*> vertices;
    for (const DirectedGraphVertex& vertex : graph.vertices()) {
        if (!graph.contains(vertex) || !vertices.insert(&vertex).second)
            problems << "a vertex of the list is not contained or listed twice\n";
    }
    std::set<const DirectedGraphEdge*> edges;
    for (const DirectedGraphEdge& edge : graph.edges()) {
        if (!edges.insert(&edge).second)
            problems << "an edge is listed twice\n";
        checkEdge(graph, edge, vertices, problems);
    }
    for (const DirectedGraphVertex* vertex : vertices)
        checkVertex(*vertex, edges, problems);
    if (vertices.size() != graph.vertexCount() || edges.size() != graph.edgeCount())
        problems << "element counts disagree with the lists\n";
    checkLabels(
        graph.vertices(), [&](const std::string& l) { return graph.verticesWithLabel(l); },
        [&](const std::string& l) { return graph.vertexCount(l); }, problems);
    checkLabels(
        graph.edges(), [&](const std::string& l) { return graph.edgesWithLabel(l); },
        [&](const std::string& l) { return graph.edgeCount(l); }, problems);
    checkIncidentCounts(graph, problems);
    if (problems.str().empty())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << problems.str();
}

std::string textOf(const DirectedGraph& graph) {
    std::ostringstream out;
    GraphWriter(out).write(graph);
    return out.str();
}

}  // namespace vellum::test
