#include "gui/view/PngWriter.h"

#include <png.h>

#include <csetjmp>
#include <ostream>

#include "base/ReplacingFile.h"

// The version comes from the CMake project, in the "v2 r5" form of the program's banner.
#define VELLUM_STRINGIFY_(x) #x
#define VELLUM_STRINGIFY(x) VELLUM_STRINGIFY_(x)

namespace vellum {

namespace {

constexpr char kTitleKey[] = "Title";
constexpr char kTitle[] = "graphrule";
constexpr char kSourceKey[] = "Source";
constexpr char kSource[] = "Vellum v" VELLUM_STRINGIFY(VELLUM_VERSION_MAJOR) " r" VELLUM_STRINGIFY(
    VELLUM_VERSION_MINOR) "\nCopyright (c) 2026 the Vellum developers";

// libpng reports an error by calling this, which must not return: back to the setjmp in
// encode(), without the message (the caller reports).
[[noreturn]] void jumpBack(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

void writeBytes(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::ostream*>(png_get_io_ptr(png));
    if (!out->write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(length)))
        png_error(png, "write failed");
}

// The file is flushed when it is committed.
void flushNothing(png_structp) {}

// A libpng write structure with its info structure, destroyed together.
class PngWriteStruct {
  public:
    PngWriteStruct()
        : m_png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning)),
          m_info(m_png != nullptr ? png_create_info_struct(m_png) : nullptr) {}
    ~PngWriteStruct() {
        if (m_png != nullptr)
            png_destroy_write_struct(&m_png, &m_info);
    }
    PngWriteStruct(const PngWriteStruct&) = delete;
    PngWriteStruct& operator=(const PngWriteStruct&) = delete;

    bool created() const { return m_png != nullptr && m_info != nullptr; }
    png_structp png() const { return m_png; }
    png_infop info() const { return m_info; }

  private:
    png_structp m_png;
    png_infop m_info;
};

png_text textChunk(const char* key, const char* text) {
    png_text chunk{};
    chunk.compression = PNG_TEXT_COMPRESSION_NONE;
    // libpng copies both and changes neither.
    chunk.key = const_cast<png_charp>(key);
    chunk.text = const_cast<png_charp>(text);
    return chunk;
}

// The whole encoding, in one frame that holds no object with a destructor, since a libpng
// error longjmps back to its start. False on any libpng error.
bool encode(png_structp png, png_infop info, const TPXimage& image) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width()),
                 static_cast<png_uint_32>(image.height()), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_text texts[] = {textChunk(kTitleKey, kTitle), textChunk(kSourceKey, kSource)};
    png_set_text(png, info, texts, 2);
    png_write_info(png, info);
    const std::size_t rowBytes = static_cast<std::size_t>(image.width()) * 3;
    for (int y = 0; y < image.height(); ++y)
        png_write_row(png, image.pixels().data() + static_cast<std::size_t>(y) * rowBytes);
    png_write_end(png, info);
    return true;
}

}  // namespace

bool writePng(const TPXimage& image, const std::string& fileName) {
    if (image.type() != TPXimage::Type::Colour || !image.complete())
        return false;
    ReplacingFile file(fileName);
    if (!file.open())
        return false;
    PngWriteStruct png;
    if (!png.created())
        return false;
    png_set_write_fn(png.png(), &file.stream(), writeBytes, flushNothing);
    return encode(png.png(), png.info(), image) && file.commit();
}

}  // namespace vellum
