#include "gui/view/ModuleHtmlExport.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "base/Console.h"
#include "base/ReplacingFile.h"
#include "graph/RuleReader.h"
#include "gui/view/PngWriter.h"
#include "gui/view/ScenePicture.h"
#include "koral/FileSearch.h"
#include "koral/RuleCache.h"

namespace vellum {
namespace {

constexpr const char* kRuleGraphClass = "DirectedGraph";

void appendCharacter(std::string& page, char c) {
    switch (c) {
        case '\n':
            page += "<BR>\n";
            return;
        case '\t':
            page += "&nbsp;&nbsp;&nbsp;";
            return;
        case '<':
            page += "&lt;";
            return;
        case '>':
            page += "&gt;";
            return;
        default:
            page += c;
    }
}

void appendText(std::string& page, const std::string& text, long from, long to) {
    for (long at = from; at < to; ++at)
        appendCharacter(page, text[static_cast<std::size_t>(at)]);
}

const char* openingMarkup(HighlightCategory category) {
    switch (category) {
        case HighlightCategory::Comment:
            return "<I><FONT COLOR=\"#006600\">";
        case HighlightCategory::Number:
            return "<FONT COLOR=\"#660000\">";
        case HighlightCategory::Name:
            return "<FONT COLOR=\"#0000FF\">";
        case HighlightCategory::Keyword:
            return "<B>";
        case HighlightCategory::Condition:
            return "<B><FONT COLOR=\"#666666\">";
    }
    return "";
}

const char* closingMarkup(HighlightCategory category) {
    switch (category) {
        case HighlightCategory::Comment:
            return "</FONT></I>";
        case HighlightCategory::Number:
        case HighlightCategory::Name:
            return "</FONT>";
        case HighlightCategory::Keyword:
            return "</B>";
        case HighlightCategory::Condition:
            return "</FONT></B>";
    }
    return "";
}

// Draws the rule `name` into `file`; false, said on the console, when it cannot.
bool writeRulePicture(const std::string& name, const std::string& file) {
    const std::string ruleFile =
        findFile(RuleCache::fileName(name, kRuleGraphClass), "koralGraphRules");
    // The picture works on the rule's sides, so it draws a copy of its own.
    const std::unique_ptr<DirectedGraphRule> rule = ruleFile.empty() ? nullptr : loadRule(ruleFile);
    std::string error = "its file could not be read";
    std::optional<TPXimage> picture;
    if (rule)
        picture = rulePicture(*rule, kRulePictureWidth, kRulePictureHeight, error);
    std::error_code made;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), made);
    if (picture && !writePng(*picture, file))
        error = "'" + file + "' could not be written";
    else if (picture)
        return true;
    console() << "No picture of rule '" << name << "': " << error << "!!!\n";
    return false;
}

}  // namespace

std::string rulePicturePath(const std::string& name) {
    std::string path = name;
    std::replace(path.begin(), path.end(), '.', '/');
    return path + ".png";
}

std::string modulePage(const std::string& text, const std::vector<HighlightSpan>& spans,
                       const std::string& htmlPath,
                       const std::function<bool(const std::string& name)>& pictured) {
    std::string page =
        "<HTML>\n"
        "<HEAD>\n"
        "<META NAME=\"AUTHOR\" CONTENT=\"The Vellum developers\">\n"
        "\t<META NAME=\"GENERATOR\" CONTENT=\"Vellum MOD2HTML v1\">\n"
        "\t<TITLE>Koral module '" +
        htmlPath +
        "'</TITLE>\n"
        "\t</HEAD>\n"
        "<BODY>\n"
        "<FONT FACE=\"Arial,Helvetica\">\n";
    long at = 0;
    for (const HighlightSpan& span : spans) {
        appendText(page, text, at, span.first);
        if (span.category == HighlightCategory::Name && pictured(span.name)) {
            page += "<IMG SRC=\"" + rulePicturePath(span.name) + "\" ALT=\"" + span.name +
                    "\" NOSAVE HEIGHT=100 WIDTH=251 ALIGN=ABSCENTER>";
        } else {
            page += openingMarkup(span.category);
            appendText(page, text, span.first, span.last + 1);
            page += closingMarkup(span.category);
        }
        at = span.last + 1;
    }
    appendText(page, text, at, static_cast<long>(text.size()));
    // The closing tags stand on lines of their own.
    if (!text.empty() && text.back() != '\n')
        page += "\n";
    page += "</FONT>\n</HTML>\n";
    return page;
}

ModuleHtmlResult exportModuleHtml(const std::string& text, const std::string& htmlFile) {
    ModuleHtmlResult result;
    const std::vector<HighlightSpan> spans = highlightModule(text);
    const std::filesystem::path folder = std::filesystem::path(htmlFile).parent_path();
    std::map<std::string, bool> pictures;  // by rule name: whether its picture was written
    for (const HighlightSpan& span : spans) {
        if (span.category != HighlightCategory::Name || pictures.count(span.name) != 0)
            continue;
        bool written = false;
        if (findRule(span.name, kRuleGraphClass) != nullptr) {
            const std::string file = (folder / rulePicturePath(span.name)).string();
            written = writeRulePicture(span.name, file);
            if (written)
                result.written.push_back(file);
        }
        pictures[span.name] = written;
    }
    const std::string page =
        modulePage(text, spans, htmlFile, [&pictures](const std::string& name) {
            const auto found = pictures.find(name);
            return found != pictures.end() && found->second;
        });
    ReplacingFile out(htmlFile);
    if (!out.open()) {
        result.error = out.failure();
        return result;
    }
    out.stream() << page;
    if (!out.commit()) {
        result.error = out.failure();
        return result;
    }
    result.written.push_back(htmlFile);
    result.ok = true;
    return result;
}

}  // namespace vellum
