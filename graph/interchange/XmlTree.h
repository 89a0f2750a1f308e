// Reading and writing the XML of GraphML and GXL. Reading goes through libxml2 without network
// access, DTD loading or entity expansion, and hands out elements by their local names (the
// namespaces of GraphML and yEd are not looked at). Writing escapes text and refuses what XML
// 1.0 cannot carry.
#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class XmlTree {
  public:
    // Parses the file; failure() says why when root() is null.
    explicit XmlTree(const std::string& fileName);
    ~XmlTree();
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;

    xmlNode* root() const;
    const std::string& failure() const { return failure_; }

  private:
    xmlDoc* document_ = nullptr;
    std::string failure_;
};

// The element's local name ("node" for "y:node" too).
std::string_view localName(const xmlNode* element);
// The child elements, all or those of one local name, in document order.
std::vector<xmlNode*> childElements(const xmlNode* parent, std::string_view name = {});
// An attribute's value by its local name; none when absent.
std::optional<std::string> attributeOf(const xmlNode* element, const char* name);
// The text the element holds, its children's included.
std::string textOf(const xmlNode* element);

// Text escaped for an attribute value or element content; none when it holds bytes that XML
// cannot carry (control characters other than tab, line feed and carriage return, or bytes
// that are no UTF-8).
std::optional<std::string> xmlEscaped(std::string_view text);

}  // namespace vellum
