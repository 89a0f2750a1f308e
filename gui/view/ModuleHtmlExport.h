// A Koral module as an HTML page: its text with the highlighting's categories as font markup,
// and every name of a rule of the class DirectedGraph shown as the picture of that rule, written
// as a PNG file beside the page. The module editor and `vellum-cli html` export with it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "koral/ModuleHighlighter.h"

namespace vellum {

// The page of `text`, whose highlighting is `spans`, titled after `htmlPath`. A Name span for
// which `pictured` says yes becomes the image element of the rule of that name instead of its
// text. Line feeds become line breaks, tabs three non-breaking spaces, "<" and ">" entities.
std::string modulePage(const std::string& text, const std::vector<HighlightSpan>& spans,
                       const std::string& htmlPath,
                       const std::function<bool(const std::string& name)>& pictured);

// Where the picture of the rule `name` goes, relative to the page: "a.b" gives "a/b.png".
std::string rulePicturePath(const std::string& name);

struct ModuleHtmlResult {
    bool ok = false;
    std::vector<std::string> written;  // the pictures, then the page
    std::string error;                 // why the page was not written
};

// Writes the page of `text` to `htmlFile` with the pictures of the rules it names: each name
// that findRule() knows for "DirectedGraph" (along "koralGraphRules", which the caller sets) is
// drawn as the rule's picture into rulePicturePath(name) under the page's folder, folders made
// as needed. A picture that cannot be drawn or written is said on the console and the name stays
// text. The page replaces an existing file only once fully written.
ModuleHtmlResult exportModuleHtml(const std::string& text, const std::string& htmlFile);

// The size of the rule pictures; the page shows them at half this size.
constexpr int kRulePictureWidth = 502;
constexpr int kRulePictureHeight = 200;

}  // namespace vellum
