#include "graph/GraphFunctions.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "base/Console.h"
#include "grammar/ExpressionFunction.h"
#include "graph/AttributeTransfer.h"
#include "graph/PatternStructure.h"
#include "graph/RuleContext.h"

namespace vellum {
namespace {

enum class Function { OutDegree, InDegree, Edge, Absent, Present };

struct Entry {
    Function function;
    GraphFunction description;
};

const std::vector<Entry>& entries() {
    using A = GraphArgument;
    static const std::vector<Entry> table = {
        {Function::OutDegree, {"outdegree", {A::Vertex, A::Label}, "VARIABLE, LABEL"}},
        {Function::InDegree, {"indegree", {A::Vertex, A::Label}, "VARIABLE, LABEL"}},
        {Function::Edge, {"edge", {A::Vertex, A::Vertex, A::Label}, "VARIABLE, VARIABLE, LABEL"}},
        {Function::Absent, {"absent", {A::Pattern}, "PATTERN"}},
        {Function::Present, {"present", {A::Pattern}, "PATTERN"}},
    };
    return table;
}

const Entry* findEntry(std::string_view name) {
    for (const Entry& entry : entries()) {
        if (entry.description.name == name)
            return &entry;
    }
    return nullptr;
}

Value* integerResult(std::size_t count) {
    const auto capped = std::min<std::size_t>(count, INT32_MAX);
    return newResult(Value::integer(static_cast<std::int32_t>(capped)));
}

// One call: the arguments checked against the function's table entry and the rule's
// variables, then the answer. A problem is reported through the context and gives null.
class GraphFunctionCall {
  public:
    GraphFunctionCall(const Entry& entry, const RuleContext& context, const PatternLoader& load)
        : entry_(entry), context_(context), load_(load) {}

    Value* run(const ValueList& arguments);

  private:
    bool readArguments(const ValueList& arguments);
    DirectedGraphVertex* vertexOf(const std::string& name);
    Value* degree(EdgeDirection direction);
    Value* edge();
    Value* pattern(bool wanted);
    Value* fail(const std::string& problem) const {
        context_.report(callText() + ": " + problem);
        return nullptr;
    }
    std::string callText() const { return "$(graph." + entry_.description.name + ")"; }

    const Entry& entry_;
    const RuleContext& context_;
    const PatternLoader& load_;
    // The arguments' texts, and the vertices of those that name variables, in order (no
    // function takes more than three arguments).
    static constexpr std::size_t kMostArguments = 3;
    std::array<std::string, kMostArguments> texts_;
    std::array<DirectedGraphVertex*, kMostArguments> vertices_{};
};

Value* GraphFunctionCall::run(const ValueList& arguments) {
    if (!readArguments(arguments))
        return nullptr;
    switch (entry_.function) {
        case Function::OutDegree:
            return degree(EdgeDirection::Outgoing);
        case Function::InDegree:
            return degree(EdgeDirection::Incoming);
        case Function::Edge:
            return edge();
        case Function::Absent:
            return pattern(false);
        case Function::Present:
            return pattern(true);
    }
    return nullptr;
}

bool GraphFunctionCall::readArguments(const ValueList& arguments) {
    const std::vector<GraphArgument>& kinds = entry_.description.arguments;
    std::size_t vertices = 0;
    if (arguments.size() != kinds.size()) {
        fail("takes " + std::to_string(kinds.size()) + " argument" +
             (kinds.size() == 1 ? "" : "s") + " (" + entry_.description.usage + "), not " +
             std::to_string(arguments.size()));
        return false;
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!arguments[i].is(ValueType::String)) {
            fail("argument " + std::to_string(i + 1) + " is " + valueTypeName(arguments[i].type()) +
                 ", not a string");
            return false;
        }
        texts_[i] = argumentText(arguments[i].asString());
        if (kinds[i] != GraphArgument::Vertex)
            continue;
        vertices_[vertices] = vertexOf(texts_[i]);
        if (vertices_[vertices++] == nullptr)
            return false;
    }
    return true;
}

DirectedGraphVertex* GraphFunctionCall::vertexOf(const std::string& name) {
    const int index = context_.variableIndex(name);
    if (index < 0) {
        fail("the rule declares no variable '" + name + "'");
        return nullptr;
    }
    if (context_.variables()[static_cast<std::size_t>(index)].vertex == nullptr) {
        fail("the variable '" + name + "' is an edge, not a vertex");
        return nullptr;
    }
    GraphObject* object = context_.bound()[static_cast<std::size_t>(index)];
    if (object == nullptr || !context_.host().contains(*object)) {
        fail("the variable '" + name + "' stands for a vertex that the step deletes");
        return nullptr;
    }
    return static_cast<DirectedGraphVertex*>(object);
}

Value* GraphFunctionCall::degree(EdgeDirection direction) {
    const DirectedGraph& host = context_.host();
    const DirectedGraphVertex& vertex = *vertices_[0];
    const std::string& label = texts_[1];
    const bool out = direction == EdgeDirection::Outgoing;
    if (isWildcard(label))
        return integerResult(out ? host.outgoingCount(vertex) : host.incomingCount(vertex));
    return integerResult(out ? host.outgoingCount(vertex, label)
                             : host.incomingCount(vertex, label));
}

Value* GraphFunctionCall::edge() {
    const DirectedGraph& host = context_.host();
    const DirectedGraphVertex& from = *vertices_[0];
    const DirectedGraphVertex& to = *vertices_[1];
    const std::string& label = texts_[2];
    const bool any = isWildcard(label);
    auto fits = [&](const DirectedGraphEdge& edge) {
        return edge.inGraph() && edge.source() == &from && edge.target() == &to &&
               (any || edge.label() == label);
    };
    // Counts say at once when either end has no such edge; else the shorter list is walked.
    const std::size_t out = any ? host.outgoingCount(from) : host.outgoingCount(from, label);
    const std::size_t in = any ? host.incomingCount(to) : host.incomingCount(to, label);
    bool found = false;
    if (out > 0 && in > 0) {
        if (from.outDegree() <= to.inDegree()) {
            const auto edges = from.outgoing();
            found = std::any_of(edges.begin(), edges.end(), fits);
        } else {
            const auto edges = to.incoming();
            found = std::any_of(edges.begin(), edges.end(), fits);
        }
    }
    return newResult(Value::boolean(found));
}

Value* GraphFunctionCall::pattern(bool wanted) {
    std::string problem;
    PatternCondition* pattern =
        context_.patterns().find(texts_[0], context_.variables(), load_, problem);
    if (pattern == nullptr)
        return fail(problem);
    const std::vector<GraphObject*>& bound = context_.bound();
    for (int variable : pattern->namedVariables()) {
        GraphObject* object = bound[static_cast<std::size_t>(variable)];
        if (object == nullptr || !context_.host().contains(*object)) {
            return fail("the pattern '" + texts_[0] + "' names the variable '" +
                        context_.variables()[static_cast<std::size_t>(variable)].name +
                        "', whose object the step deletes");
        }
    }
    const bool occurs = pattern->occurs(context_.host(), bound);
    return newResult(Value::boolean(occurs == wanted));
}

}  // namespace

const GraphFunction* findGraphFunction(std::string_view name) {
    const Entry* entry = findEntry(name);
    return entry == nullptr ? nullptr : &entry->description;
}

std::string argumentText(const std::string& held) {
    std::optional<std::string> contents = quotedPieces(held);
    return contents ? *contents : held;
}

Value* callGraphFunction(std::string_view name, const ValueList& arguments,
                         const Environment& environment, const PatternLoader& load) noexcept {
    try {
        const Entry* entry = findEntry(name);
        const auto* context = dynamic_cast<const RuleContext*>(environment.context());
        if (entry == nullptr || context == nullptr) {
            console() << "$(graph." << name << ")"
                      << (entry == nullptr ? " is no function of the library"
                                           : " works only in the expressions of a rule that "
                                             "is being applied")
                      << "\n";
            return nullptr;
        }
        return GraphFunctionCall(*entry, *context, load).run(arguments);
    } catch (...) {
        // Out of memory, most likely; a library function must not throw.
        return nullptr;
    }
}

}  // namespace vellum
