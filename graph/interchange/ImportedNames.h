// The gate between a foreign graph file and a Vellum graph: every label, attribute name and
// value read from GraphML, GXL or DOT passes here, so that an imported graph can always be
// saved as a graph file. Refusing names the element and the reason; renaming changes the text
// into one a graph file spells and keeps a line for each change.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graph/Attribute.h"
#include "graph/FileSpelling.h"

namespace vellum {

class ImportedNames {
  public:
    explicit ImportedNames(bool rename) : rename_(rename) {}

    // The label to give `element` ("node 'n3'", say); none when refused.
    std::optional<std::string> label(const std::string& element, std::string_view text);
    // The attribute, its name and value made spellable; null when refused.
    std::unique_ptr<Attribute> attribute(const std::string& element,
                                         std::unique_ptr<Attribute> attribute);

    // The first refusal: "node 'n3': the label 'a b' REASON"; empty while none.
    const std::string& refusal() const { return refusal_; }
    // Whether renaming would have avoided the first refusal.
    bool renamable() const { return renamable_; }
    // One line per renaming, in reading order.
    const std::vector<std::string>& changes() const { return changes_; }

    // `text` turned into an identifier that no keyword begins: other characters become "_", and
    // "x" goes in front where it must.
    static std::string identifierFrom(std::string_view text);

  private:
    bool refuse(const std::string& element, const std::string& what, const std::string& reason,
                bool renamable);
    std::optional<std::string> identifier(const std::string& element, const std::string& what,
                                          std::string_view text, bool isLabel);

    bool rename_;
    FileSpelling spelling_{FileSpelling::Format::Graph};
    std::string refusal_;
    bool renamable_ = false;
    std::vector<std::string> changes_;
};

}  // namespace vellum
