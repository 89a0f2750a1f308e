// Test support: PNG files read back with libpng itself (the header, the text chunks in file
// order, the rows), to check what Vellum's PNG writer wrote. A test target using it links
// PNG::PNG.
#pragma once

#include <png.h>

#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vellum::test {

struct PngContents {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bitDepth = 0;
    int colourType = 0;
    int interlace = 0;
    std::vector<std::pair<std::string, std::string>> texts;  // key and text, in file order
    std::vector<int> textCompressions;
    std::vector<std::uint8_t> pixels;
};

// Fills `contents` from an opened read structure; one frame without destructible objects,
// since a libpng error longjmps back to its start.
inline bool decodePng(png_structp png, png_infop info, PngContents& contents) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_read_info(png, info);
    png_get_IHDR(png, info, &contents.width, &contents.height, &contents.bitDepth,
                 &contents.colourType, &contents.interlace, nullptr, nullptr);
    const std::size_t rowBytes = png_get_rowbytes(png, info);
    contents.pixels.resize(rowBytes * contents.height);
    for (png_uint_32 y = 0; y < contents.height; ++y)
        png_read_row(png, contents.pixels.data() + y * rowBytes, nullptr);
    png_read_end(png, info);
    png_textp texts = nullptr;
    const int count = png_get_text(png, info, &texts, nullptr);
    for (int i = 0; i < count; ++i) {
        contents.texts.emplace_back(texts[i].key, texts[i].text);
        contents.textCompressions.push_back(texts[i].compression);
    }
    return true;
}

// False when the file cannot be opened or is no PNG file libpng reads.
inline bool readPng(const std::string& fileName, PngContents& contents) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fileName.c_str(), "rb"),
                                                               std::fclose);
    if (!file)
        return false;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool read = false;
    if (info != nullptr) {
        png_init_io(png, file.get());
        read = decodePng(png, info, contents);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return read;
}

}  // namespace vellum::test
