#include "graph/interchange/XmlTree.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <cstring>
#include <memory>

namespace vellum {

XmlTree::XmlTree(const std::string& fileName) {
    std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                         xmlFreeParserCtxt);
    if (!context) {
        failure_ = "out of memory";
        return;
    }
    // No network, no external DTD, no entity substitution; errors are ours to report.
    document_ = xmlCtxtReadFile(context.get(), fileName.c_str(), nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    if (document_ == nullptr || xmlDocGetRootElement(document_) == nullptr) {
        const xmlError* error = xmlCtxtGetLastError(context.get());
        if (error != nullptr && error->message != nullptr) {
            std::string message = error->message;
            while (!message.empty() && (message.back() == '\n' || message.back() == ' '))
                message.pop_back();
            failure_ =
                "not well-formed XML in line " + std::to_string(error->line) + ": " + message;
        } else {
            failure_ = "not an XML document";
        }
    }
}

XmlTree::~XmlTree() {
    if (document_ != nullptr)
        xmlFreeDoc(document_);
}

xmlNode* XmlTree::root() const {
    return failure_.empty() && document_ ? xmlDocGetRootElement(document_) : nullptr;
}

std::string_view localName(const xmlNode* element) {
    return element && element->name ? reinterpret_cast<const char*>(element->name) : "";
}

std::vector<xmlNode*> childElements(const xmlNode* parent, std::string_view name) {
    std::vector<xmlNode*> found;
    for (xmlNode* child = parent->children; child != nullptr; child = child->next)
        if (child->type == XML_ELEMENT_NODE && (name.empty() || localName(child) == name))
            found.push_back(child);
    return found;
}

std::optional<std::string> attributeOf(const xmlNode* element, const char* name) {
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (std::strcmp(reinterpret_cast<const char*>(attribute->name), name) != 0)
            continue;
        xmlChar* value = xmlNodeListGetString(element->doc, attribute->children, 1);
        std::string text = value ? reinterpret_cast<const char*>(value) : "";
        xmlFree(value);
        return text;
    }
    return std::nullopt;
}

std::string textOf(const xmlNode* element) {
    xmlChar* content = xmlNodeGetContent(element);
    std::string text = content ? reinterpret_cast<const char*>(content) : "";
    xmlFree(content);
    return text;
}

std::optional<std::string> xmlEscaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            // A whole UTF-8 sequence, or nothing.
            const int length = c >= 0xf0 && c < 0xf5 ? 4 : c >= 0xe0 ? 3 : c >= 0xc2 ? 2 : 0;
            if (length == 0 || c >= 0xf5 || i + length > text.size())
                return std::nullopt;
            for (int k = 1; k < length; ++k)
                if ((static_cast<unsigned char>(text[i + k]) & 0xc0) != 0x80)
                    return std::nullopt;
            // No overlong forms, surrogates or code points beyond U+10FFFF.
            const auto second = static_cast<unsigned char>(text[i + 1]);
            if ((c == 0xe0 && second < 0xa0) || (c == 0xed && second >= 0xa0) ||
                (c == 0xf0 && second < 0x90) || (c == 0xf4 && second >= 0x90))
                return std::nullopt;
            out.append(text.substr(i, length));
            i += length - 1;
            continue;
        }
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\t':
                out += "&#9;";
                break;
            case '\n':
                out += "&#10;";
                break;
            case '\r':
                out += "&#13;";
                break;
            default:
                if (c < 0x20 || c == 0x7f)
                    return std::nullopt;
                out += static_cast<char>(c);
        }
    }
    return out;
}

}  // namespace vellum
