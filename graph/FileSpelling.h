// What graph and rule files can spell. The writers ask before they write a label, a name, a
// value or an expression, so that every file they write reads back as it was: each check gives
// an empty text when the item reads back unchanged, else the reason, ending in "in a graph file"
// or "in a rule file". Names are checked with the format's own scanner, which also finds those
// that begin with a keyword ("vertexA" reads as "vertex" and "A").
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "grammar/TokenScanner.h"
#include "graph/Attribute.h"

namespace vellum {

class FileSpelling {
  public:
    enum class Format { Graph, Rule };
    explicit FileSpelling(Format format);

    // A label: an identifier; in rule files also "*", the wildcard.
    std::string label(std::string_view text);
    // An attribute name, the rule's name or a variable: an identifier.
    std::string name(std::string_view text);
    // An attribute's name and plain value (reals finite, strings within their quotes, vectors
    // not empty in graph files).
    std::string attribute(const Attribute& attribute);
    // The text between the brackets of an expression (rule files).
    std::string expression(std::string_view text) const;

    // The format named as the reasons name it: "graph file" or "rule file".
    const char* fileName() const;
    // `text` fit for a one-line message: bytes outside printable ASCII as "\xNN", cut after 40
    // characters with "...".
    static std::string shown(std::string_view text);

  private:
    std::string identifier(std::string_view text, const char* what);
    std::string real(double value) const;
    std::string quoted(std::string_view text, char close, bool printableOnly,
                       const char* what) const;

    Format format_;
    TokenScanner scanner_;
    std::unordered_map<std::string, std::string> verdicts_;  // identifiers checked so far
};

}  // namespace vellum
