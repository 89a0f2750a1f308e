// The one form in which every file reader reports a syntax error on the console:
//   File 'NAME' contains errors near position P in line L
//   Dump 'EXCERPT' !!!
// with line feeds, tabs and carriage returns of the excerpt shown as \n, \t and \r.
#pragma once

#include <string>
#include <string_view>

namespace vellum {

// The excerpt with its control characters made visible.
std::string escapeExcerpt(std::string_view excerpt);

// Writes the two lines to the console. `kind` is "File" for graphs and rules, "Module" for
// modules.
void reportSyntaxError(std::string_view kind, std::string_view name, long position, int line,
                       std::string_view excerpt);

// Characters around the error position that readers show.
constexpr long kExcerptBefore = 6;
constexpr long kExcerptAfter = 16;

}  // namespace vellum
