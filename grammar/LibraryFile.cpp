#include "grammar/LibraryFile.h"

#include <link.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>

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
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    std::ifstream in(file, std::ios::binary);
    ElfW(Ehdr) header{};
    if (error || !readRecord(in, &header, sizeof header) || !isNativeObject(header))
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

}  // namespace vellum
