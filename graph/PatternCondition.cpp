#include "graph/PatternCondition.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "graph/RuleObjectData.h"

namespace vellum {
namespace {

// The index of the first variable of that name (as bindVariables binds it), or -1.
int variableIndex(const std::vector<RuleVariable>& variables, std::string_view name) {
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (variables[i].name == name)
            return static_cast<int>(i);
    }
    return -1;
}

// Why the pattern's element cannot carry its variable name; empty when it can (or has none).
std::string nameProblem(const GraphObject& element, const std::vector<RuleVariable>& variables,
                        std::set<std::string>& seen) {
    const std::string& name = variableOf(element);
    if (name.empty())
        return {};
    const bool vertex = element.kind() == GraphObjectKind::Vertex;
    const int index = variableIndex(variables, name);
    if (index < 0)
        return "names the variable '" + name + "', which the rule does not declare";
    if (!seen.insert(name).second)
        return "names the variable '" + name + "' twice";
    const bool declaredVertex = variables[static_cast<std::size_t>(index)].vertex != nullptr;
    if (vertex != declaredVertex) {
        return std::string("names ") + (vertex ? "a vertex" : "an edge") + " '" + name +
               "', which is " + (declaredVertex ? "a vertex" : "an edge") + " in the rule";
    }
    return {};
}

// Whether every vertex of the pattern is joined by edges (either way) to a named vertex or to
// an end of a named edge.
bool joinedToNamed(const DirectedGraph& pattern) {
    std::vector<const DirectedGraphVertex*> reached;
    auto reach = [&reached](const DirectedGraphVertex* vertex) {
        if (std::find(reached.begin(), reached.end(), vertex) == reached.end())
            reached.push_back(vertex);
    };
    for (const DirectedGraphVertex& vertex : pattern.vertices()) {
        if (!variableOf(vertex).empty())
            reach(&vertex);
    }
    for (const DirectedGraphEdge& edge : pattern.edges()) {
        if (!variableOf(edge).empty()) {
            reach(edge.source());
            reach(edge.target());
        }
    }
    for (std::size_t next = 0; next < reached.size(); ++next) {
        for (const DirectedGraphEdge& edge : reached[next]->outgoing())
            reach(edge.target());
        for (const DirectedGraphEdge& edge : reached[next]->incoming())
            reach(edge.source());
    }
    return reached.size() == pattern.vertexCount();
}

}  // namespace

std::string PatternCondition::problemOf(const DirectedGraph& pattern,
                                        const std::vector<RuleVariable>& variables) {
    if (pattern.vertexCount() == 0)
        return "has no left-hand vertices";
    std::set<std::string> seen;
    for (const DirectedGraphVertex& vertex : pattern.vertices()) {
        if (std::string problem = nameProblem(vertex, variables, seen); !problem.empty())
            return problem;
    }
    for (const DirectedGraphEdge& edge : pattern.edges()) {
        if (std::string problem = nameProblem(edge, variables, seen); !problem.empty())
            return problem;
    }
    if (seen.empty())
        return "names none of the rule's variables, so it would be searched for in the whole graph";
    if (!joinedToNamed(pattern)) {
        return "has a vertex that no edge joins to a named one, so it would be searched for in "
               "the whole graph";
    }
    return {};
}

std::unique_ptr<PatternCondition> PatternCondition::prepare(
    std::unique_ptr<DirectedGraphRule> rule, const std::vector<RuleVariable>& variables,
    std::string& problem) {
    problem = problemOf(rule->leftSide(), variables);
    if (!problem.empty())
        return nullptr;
    return std::unique_ptr<PatternCondition>(new PatternCondition(std::move(rule), variables));
}

namespace {

std::vector<int> seededVertices(const PatternStructure& structure) {
    std::vector<int> seeded;
    auto seed = [&seeded](int vertex) {
        if (std::find(seeded.begin(), seeded.end(), vertex) == seeded.end())
            seeded.push_back(vertex);
    };
    for (std::size_t i = 0; i < structure.vertexCount(); ++i) {
        if (!variableOf(*structure.vertices()[i]).empty())
            seed(static_cast<int>(i));
    }
    for (const PatternEdge& edge : structure.edges()) {
        if (!variableOf(*edge.edge).empty()) {
            seed(edge.source);
            seed(edge.target);
        }
    }
    return seeded;
}

}  // namespace

PatternCondition::PatternCondition(std::unique_ptr<DirectedGraphRule> rule,
                                   const std::vector<RuleVariable>& variables)
    : rule_(std::move(rule)),
      structure_(rule_->editLeftSide()),
      plan_(SearchPlan::seeded(structure_, seededVertices(structure_))) {
    for (const PatternEdge& edge : structure_.edges())
        edgeVariables_.push_back(variableIndex(variables, variableOf(*edge.edge)));
    for (int vertex : seededVertices(structure_)) {
        VertexSeed seed;
        seed.vertex = vertex;
        const auto& name = variableOf(*structure_.vertices()[static_cast<std::size_t>(vertex)]);
        seed.variable = name.empty() ? -1 : variableIndex(variables, name);
        for (std::size_t i = 0; seed.variable < 0 && i < edgeVariables_.size(); ++i) {
            const PatternEdge& edge = structure_.edges()[i];
            if (edgeVariables_[i] >= 0 && (edge.source == vertex || edge.target == vertex)) {
                seed.edgeVariable = edgeVariables_[i];
                seed.source = edge.source == vertex;
            }
        }
        vertexSeeds_.push_back(seed);
    }
    for (const VertexSeed& seed : vertexSeeds_) {
        if (seed.variable >= 0)
            named_.push_back(seed.variable);
    }
    for (int variable : edgeVariables_) {
        if (variable >= 0)
            named_.push_back(variable);
    }
    seeds_.vertices.assign(structure_.vertexCount(), nullptr);
    seeds_.edges.assign(structure_.edges().size(), nullptr);
}

bool PatternCondition::occurs(DirectedGraph& host, const std::vector<GraphObject*>& bound) {
    auto object = [&bound](int variable) {
        return variable >= 0 && static_cast<std::size_t>(variable) < bound.size()
                   ? bound[static_cast<std::size_t>(variable)]
                   : nullptr;
    };
    for (std::size_t i = 0; i < edgeVariables_.size(); ++i)
        seeds_.edges[i] = static_cast<DirectedGraphEdge*>(object(edgeVariables_[i]));
    for (const VertexSeed& seed : vertexSeeds_) {
        DirectedGraphVertex* image = nullptr;
        if (seed.variable >= 0) {
            image = static_cast<DirectedGraphVertex*>(object(seed.variable));
        } else if (auto* edge = static_cast<DirectedGraphEdge*>(object(seed.edgeVariable))) {
            image = seed.source ? edge->source() : edge->target();
        }
        if (image == nullptr || !host.contains(*image))
            return false;
        seeds_.vertices[static_cast<std::size_t>(seed.vertex)] = image;
    }
    labels_.resolve(structure_, host);
    OccurrenceSearch search(structure_, plan_, host, labels_, buffers_, &seeds_);
    return search.next(found_);
}

}  // namespace vellum
