// Test support: every detail of a graph as one text, so that two graphs built different ways can
// be compared exactly: the vertices and edges in list order with their labels, all attributes
// (internal ones too) with their types and exact values, and each vertex's incoming and outgoing
// lists in their order. Unlike the file text, nothing is rounded or left out.
#pragma once

#include <cstdio>
#include <string>
#include <unordered_map>

#include "graph/BooleanAttribute.h"
#include "graph/DirectedGraph.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum::test {

namespace snapshot_detail {

inline void appendReal(std::string& out, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%a", value);
    out += text;
}

// Strings and names byte by byte, so that control bytes and quotes cannot blur the text.
inline void appendQuoted(std::string& out, const std::string& text) {
    out += '"';
    for (unsigned char c : text) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02x", c);
        out += hex;
    }
    out += '"';
}

inline void appendObject(std::string& out, const GraphObject& object) {
    out += " label=";
    appendQuoted(out, object.label());
    for (const Attribute& attribute : object.attributes()) {
        out += ' ';
        appendQuoted(out, attribute.name());
        out += ':';
        switch (attribute.type()) {
            case AttributeType::Boolean:
                out += static_cast<const BooleanAttribute&>(attribute).value() ? "b1" : "b0";
                break;
            case AttributeType::Integer:
                out +=
                    'i' + std::to_string(static_cast<const IntegerAttribute&>(attribute).value());
                break;
            case AttributeType::Real:
                out += 'r';
                appendReal(out, static_cast<const RealAttribute&>(attribute).value());
                break;
            case AttributeType::String:
                out += 's';
                appendQuoted(out, static_cast<const StringAttribute&>(attribute).value());
                break;
            case AttributeType::Vector:
                out += 'v';
                for (double element : static_cast<const VectorAttribute&>(attribute).value()) {
                    out += ',';
                    appendReal(out, element);
                }
                break;
        }
    }
}

}  // namespace snapshot_detail

inline std::string snapshotOf(const DirectedGraph& graph) {
    std::unordered_map<const GraphObject*, std::size_t> index;
    std::size_t next = 0;
    for (const DirectedGraphVertex& vertex : graph.vertices())
        index.emplace(&vertex, next++);
    for (const DirectedGraphEdge& edge : graph.edges())
        index.emplace(&edge, next++);
    const auto numberOf = [&index](const GraphObject* object) {
        const auto at = index.find(object);
        return at == index.end() ? std::string("?") : std::to_string(at->second);
    };
    std::string out;
    for (const DirectedGraphVertex& vertex : graph.vertices()) {
        out += "vertex " + numberOf(&vertex);
        snapshot_detail::appendObject(out, vertex);
        out += " in";
        for (const DirectedGraphEdge& edge : vertex.incoming())
            out += ' ' + numberOf(&edge);
        out += " out";
        for (const DirectedGraphEdge& edge : vertex.outgoing())
            out += ' ' + numberOf(&edge);
        out += '\n';
    }
    for (const DirectedGraphEdge& edge : graph.edges()) {
        out += "edge " + numberOf(&edge) + ' ' + numberOf(edge.source()) + "->" +
               numberOf(edge.target());
        snapshot_detail::appendObject(out, edge);
        out += '\n';
    }
    return out;
}

}  // namespace vellum::test
