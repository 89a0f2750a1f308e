#include "graph/FileSpelling.h"

#include <cmath>
#include <cstdio>

#include "grammar/Cache.h"
#include "graph/GraphFormat.h"
#include "graph/RealAttribute.h"
#include "graph/RuleFormat.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

bool isPrintable(unsigned char c) {
    return c >= 32 && c < 127;
}

// What the scanner's escape takes after a backslash: any character of 32 or more as a signed
// byte.
bool isEscapable(char c) {
    return static_cast<signed char>(c) >= 32;
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isIdentifier(std::string_view text) {
    if (text.empty() || !isLetter(text[0]))
        return false;
    for (char c : text) {
        if (!isLetter(c) && !(c >= '0' && c <= '9') && c != '_')
            return false;
    }
    return true;
}

std::string byteText(unsigned char c) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02x", c);
    return text;
}

}  // namespace

FileSpelling::FileSpelling(Format format) : format_(format) {
    scanner_.loadDefinitions(format == Format::Graph ? std::string_view(kGraphTokens)
                                                     : std::string_view(kRuleTokens));
}

const char* FileSpelling::fileName() const {
    return format_ == Format::Graph ? "graph file" : "rule file";
}

std::string FileSpelling::shown(std::string_view text) {
    constexpr std::size_t kShown = 40;
    std::string result;
    for (std::size_t i = 0; i < text.size() && i < kShown; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (isPrintable(c)) {
            result.push_back(static_cast<char>(c));
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", c);
            result += escaped;
        }
    }
    if (text.size() > kShown)
        result += "...";
    return result;
}

std::string FileSpelling::label(std::string_view text) {
    if (format_ == Format::Rule && text == "*")
        return {};
    return identifier(text, "a label");
}

std::string FileSpelling::name(std::string_view text) {
    return identifier(text, "a name");
}

std::string FileSpelling::identifier(std::string_view text, const char* what) {
    std::string key(text);
    auto known = verdicts_.find(key);
    if (known == verdicts_.end()) {
        // The verdict without its subject, which differs between labels and names.
        std::string verdict;
        if (!isIdentifier(text)) {
            verdict = "must be an identifier (a letter, then letters, digits or '_')";
        } else if (text.size() > kMaxTokenText) {
            verdict = "cannot be longer than " + std::to_string(kMaxTokenText) + " characters";
        } else {
            Cache source;
            source.attach(key.c_str());
            scanner_.reset(&source);
            const int code = scanner_.nextToken();
            if (code != kIdentifierToken)
                verdict = "cannot begin with the keyword '" + scanner_.text() + "'";
            else if (scanner_.text() != key)
                verdict = "does not read back as one identifier";
            scanner_.reset(nullptr);
        }
        known = verdicts_.emplace(std::move(key), std::move(verdict)).first;
    }
    if (known->second.empty())
        return {};
    return std::string(what) + " " + known->second + " in a " + fileName();
}

std::string FileSpelling::attribute(const Attribute& attribute) {
    std::string problem = name(attribute.name());
    if (!problem.empty())
        return problem;
    switch (attribute.type()) {
        case AttributeType::Real:
            return real(static_cast<const RealAttribute&>(attribute).value());
        case AttributeType::String:
            return quoted(static_cast<const StringAttribute&>(attribute).value(), '"', true,
                          "a string");
        case AttributeType::Vector: {
            const std::vector<double>& elements =
                static_cast<const VectorAttribute&>(attribute).value();
            // The rule grammar takes "()", the graph grammar wants a number.
            if (elements.empty() && format_ == Format::Graph)
                return std::string("a vector cannot be empty in a ") + fileName();
            for (double element : elements) {
                problem = real(element);
                if (!problem.empty())
                    return problem;
            }
            return {};
        }
        default:
            return {};
    }
}

std::string FileSpelling::expression(std::string_view text) const {
    // Expressions may span lines; only what ends them early, or a zero byte, is refused.
    return quoted(text, ']', false, "an expression");
}

std::string FileSpelling::real(double value) const {
    if (std::isnan(value))
        return std::string("a real cannot be not-a-number (NaN) in a ") + fileName();
    if (std::isinf(value))
        return std::string("a real cannot be infinite in a ") + fileName();
    return {};
}

// Walks the text as the reader's quoted token does: a backslash takes the next character with
// it, and `close` ends the token. The text reads back unchanged when that walk ends exactly
// after it.
std::string FileSpelling::quoted(std::string_view text, char close, bool printableOnly,
                                 const char* what) const {
    const std::string where = std::string(" in a ") + fileName();
    if (text.size() + 2 > kMaxLiteralToken) {
        return std::string(what) + " cannot be longer than " +
               std::to_string(kMaxLiteralToken - 2) + " characters" + where;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == 0 || (printableOnly && !isPrintable(c)))
            return std::string(what) + " cannot hold the byte " + byteText(c) + where;
        if (c == '\\') {
            if (i + 1 == text.size())
                return std::string(what) + " cannot end in an unpaired backslash" + where;
            if (isEscapable(text[i + 1]) && (!printableOnly || isPrintable(text[i + 1])))
                ++i;
            continue;
        }
        if (c == static_cast<unsigned char>(close)) {
            return std::string(what) + " cannot hold " +
                   (close == '"' ? "a double quote" : "a ']'") + " without a backslash before it" +
                   where;
        }
    }
    return {};
}

}  // namespace vellum
