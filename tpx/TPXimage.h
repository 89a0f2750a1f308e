// TPXimage: pixels carried between a picture and the files that hold it. Rows run from the top,
// one byte per sample: width * height bytes for grey, width * height * 3 (red, green, blue) for
// colour. Reads and writes portable grey maps (.pgm) and pixmaps (.ppm); the PNG writer lives
// with the pictures that use it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vellum {

class TPXimage {
  public:
    enum class Type : int { None = 0, Colour = 1, Grey = 2 };

    TPXimage() = default;
    // A black image of the given size and type.
    TPXimage(int width, int height, Type type);

    int width() const { return m_width; }
    int height() const { return m_height; }
    Type type() const { return m_type; }
    // Whether samples are (or were, when read) raw bytes rather than decimal text.
    bool binary() const { return m_binary; }
    int samplesPerPixel() const { return m_type == Type::Colour ? 3 : 1; }
    std::vector<std::uint8_t>& pixels() { return m_pixels; }
    const std::vector<std::uint8_t>& pixels() const { return m_pixels; }

    // Reads a portable map. The lower-cased name decides the type: containing ".pgm" grey, else
    // containing ".ppm" colour, else refused. Accepts the text and binary magics of the type
    // (P2/P5, P3/P6), comments in the header, and any maximum value up to 255. False (with the
    // image unchanged) when the file cannot be opened or is malformed, truncated or larger than
    // its header says; never reads past the end of the file.
    bool read(const std::string& fileName);
    // Writes a binary map of this image's type (P5 or P6 header, "255" and an empty line, then
    // the rows). False when the file cannot be opened or written or the image is empty.
    bool write(const std::string& fileName) const;

  private:
    bool m_binary = true;
    int m_width = 0;
    int m_height = 0;
    Type m_type = Type::None;
    std::vector<std::uint8_t> m_pixels;
};

}  // namespace vellum
