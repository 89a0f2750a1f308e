# Writes OUTPUT, a C++ source that holds each icon file ICON_DIR/NAME.svg (NAMES: comma-separated)
# as a raw string literal, looked up by name with iconFile() (ToolIconFiles.h).
#   cmake -DICON_DIR=... -DNAMES=a,b -DOUTPUT=... -P GenerateToolIcons.cmake
string(REPLACE "," ";" names "${NAMES}")
set(delimiter "vellum_svg")
set(entries "")
foreach(name IN LISTS names)
    file(READ "${ICON_DIR}/${name}.svg" text)
    string(FIND "${text}" ")${delimiter}\"" clash)
    if(NOT clash EQUAL -1)
        message(FATAL_ERROR "${name}.svg contains the literal's end marker )${delimiter}\"")
    endif()
    string(APPEND entries "    {\"${name}\", R\"${delimiter}(${text})${delimiter}\"},\n")
endforeach()

file(WRITE "${OUTPUT}" "// Generated from gui/icons/*.svg by GenerateToolIcons.cmake: edit the drawings, not this file.
#include \"gui/icons/ToolIconFiles.h\"

namespace vellum {
namespace {

struct IconFile {
    std::string_view name;
    std::string_view svg;
};

const IconFile iconFiles[] = {
${entries}};

}  // namespace

std::string_view iconFile(std::string_view name) {
    for (const IconFile& file : iconFiles) {
        if (file.name == name) {
            return file.svg;
        }
    }
    return {};
}

}  // namespace vellum
")
