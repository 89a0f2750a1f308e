#include "base/LibraryFile.h"

#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace vellum {

namespace {

bool readRecord(std::ifstream& in, void* record, std::size_t size) {
    return static_cast<bool>(
        in.read(static_cast<char*>(record), static_cast<std::streamsize>(size)));
}

bool isNativeObject(const ElfW(Ehdr) & header) {
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32) &&
           header.e_phentsize == sizeof(ElfW(Phdr));
}

}  // namespace

bool isCutShortLibrary(const std::string& file) {
    std::error_code error;
    // Not opened unless regular: a named pipe would block the open.
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error)
        return false;
    std::ifstream in(file, std::ios::binary);
    ElfW(Ehdr) header{};
    if (!readRecord(in, &header, sizeof header) || !isNativeObject(header))
        return false;
    const std::uintmax_t tableEnd =
        static_cast<std::uintmax_t>(header.e_phoff) + header.e_phnum * sizeof(ElfW(Phdr));
    if (header.e_phoff > size || tableEnd > size)
        return true;
    in.seekg(static_cast<std::streamoff>(header.e_phoff));
    for (int i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) segment{};
        if (!readRecord(in, &segment, sizeof segment))
            return true;
        if (segment.p_type == PT_LOAD &&
            (segment.p_offset > size || segment.p_filesz > size - segment.p_offset))
            return true;
    }
    return false;
}

std::string findOnLibraryPath(const std::string& name) {
    const char* path = std::getenv("LD_LIBRARY_PATH");
    if (path == nullptr)
        return {};
    std::string_view rest = path;
    while (true) {
        const std::size_t colon = rest.find(':');
        const std::string folder(rest.substr(0, colon));
        const std::string file = (folder.empty() ? std::string(".") : folder) + "/" + name;
        std::error_code error;
        if (std::filesystem::is_regular_file(file, error))
            return file;
        if (colon == std::string_view::npos)
            return {};
        rest.remove_prefix(colon + 1);
    }
}

}  // namespace vellum
