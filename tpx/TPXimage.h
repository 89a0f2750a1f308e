// TPXimage: pixels carried between a picture and the files that hold it. Rows run from the top,
// one byte per sample: width * height bytes for grey, width * height * 3 (red, green, blue) for
// colour. Reads and writes portable grey maps (.pgm) and pixmaps (.ppm); PNG pictures are written
// by the view part of the GUI (gui/view/PngWriter.h).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vellum {

class TPXimage {
  public:
    enum class Type : int { None = 0, Colour = 1, Grey = 2 };

    TPXimage() = default;
    // A black image of the given size and type; a negative side counts as 0.
    TPXimage(int width, int height, Type type);

    int width() const { return m_width; }
    int height() const { return m_height; }
    Type type() const { return m_type; }
    // Whether samples are (or were, when read) raw bytes rather than decimal text.
    bool binary() const { return m_binary; }
    int samplesPerPixel() const { return m_type == Type::Colour ? 3 : 1; }
    std::vector<std::uint8_t>& pixels() { return m_pixels; }
    const std::vector<std::uint8_t>& pixels() const { return m_pixels; }
    // Whether the image has a type, a size and exactly the pixel bytes that size asks for.
    bool complete() const;

    // Reads a portable map. The lower-cased name decides the type: containing ".pgm" grey, else
    // containing ".ppm" colour, else refused. Accepts the text and binary magics of the type
    // (P2/P5, P3/P6), comments in the header and any maximum value from 1 to 255 (samples are
    // scaled to 0..255). The raw samples follow one white-space byte after the maximum, or two
    // when the file is one byte longer and that byte is a line feed, as write() puts it.
    // False, with the image unchanged, when the file cannot be opened, is no regular file, or
    // is malformed, truncated, longer than its header says or larger than 32768 pixels a side
    // or 2^28 samples; never reads past the end of the file, and allocates no more than the
    // file's size can fill.
    bool read(const std::string& fileName);
    // Writes a binary map of this image's type: "P5" or "P6", the width and height, "255" and an
    // empty line, then the rows. The file is replaced only once fully written, so a failure
    // leaves the one that was there. False when the image is not complete() or the file cannot
    // be written; says nothing (the caller reports).
    bool write(const std::string& fileName) const;

  private:
    bool m_binary = true;
    int m_width = 0;
    int m_height = 0;
    Type m_type = Type::None;
    std::vector<std::uint8_t> m_pixels;
};

}  // namespace vellum
