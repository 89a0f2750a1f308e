// The icon drawings the build embeds from gui/icons/*.svg (ToolIconFiles.cpp is generated from
// them; see GenerateToolIcons.cmake). Internal to the icons library: ToolIcons.h is the interface.
#pragma once

#include <string_view>

namespace vellum {

// The SVG text of the file NAME.svg (NAME without folder or extension), or empty when the build
// embedded no such file.
std::string_view iconFile(std::string_view name);

}  // namespace vellum
