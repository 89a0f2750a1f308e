#include "tpx/TPXimage.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>

namespace vellum {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// Reads a whole file; false if it cannot be opened or read.
bool slurp(const std::string& fileName, std::vector<std::uint8_t>& bytes) {
    File file(std::fopen(fileName.c_str(), "rb"));
    if (!file)
        return false;
    std::uint8_t buffer[1 << 16];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0)
        bytes.insert(bytes.end(), buffer, buffer + got);
    return !std::ferror(file.get());
}

// A cursor over the header and text samples of a portable map: numbers separated by white
// space, with "#" comments to the end of a line.
class MapText {
  public:
    explicit MapText(const std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {}

    std::size_t position() const { return m_at; }
    void skip(std::size_t n) { m_at += n; }

    void skipSpace() {
        while (m_at < m_bytes.size()) {
            if (m_bytes[m_at] == '#') {
                while (m_at < m_bytes.size() && m_bytes[m_at] != '\n')
                    ++m_at;
            } else if (std::isspace(m_bytes[m_at])) {
                ++m_at;
            } else {
                return;
            }
        }
    }

    // A decimal number up to `limit`; false on anything else.
    bool number(long limit, long& value) {
        skipSpace();
        const std::size_t start = m_at;
        value = 0;
        while (m_at < m_bytes.size() && std::isdigit(m_bytes[m_at])) {
            value = value * 10 + (m_bytes[m_at] - '0');
            if (value > limit)
                return false;
            ++m_at;
        }
        return m_at > start;
    }

  private:
    const std::vector<std::uint8_t>& m_bytes;
    std::size_t m_at = 0;
};

TPXimage::Type typeOfName(const std::string& fileName) {
    std::string lower = fileName;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (lower.find(".pgm") != std::string::npos)
        return TPXimage::Type::Grey;
    if (lower.find(".ppm") != std::string::npos)
        return TPXimage::Type::Colour;
    return TPXimage::Type::None;
}

// The largest picture accepted: far above any texture or screenshot, low enough that a forged
// header cannot ask for gigabytes.
constexpr long maxSide = 1 << 15;
constexpr long maxSamples = 1L << 28;

}  // namespace

TPXimage::TPXimage(int width, int height, Type type)
    : m_width(width), m_height(height), m_type(type) {
    const int samples = type == Type::Colour ? 3 : 1;
    m_pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                        static_cast<std::size_t>(type == Type::None ? 0 : samples),
                    0);
}

bool TPXimage::read(const std::string& fileName) {
    const Type type = typeOfName(fileName);
    if (type == Type::None)
        return false;
    std::vector<std::uint8_t> bytes;
    if (!slurp(fileName, bytes) || bytes.size() < 2 || bytes[0] != 'P')
        return false;
    const char textMagic = type == Type::Grey ? '2' : '3';
    const char binaryMagic = type == Type::Grey ? '5' : '6';
    if (bytes[1] != textMagic && bytes[1] != binaryMagic)
        return false;
    const bool binary = bytes[1] == binaryMagic;
    MapText text(bytes);
    text.skip(2);
    long width = 0, height = 0, maximum = 0;
    if (!text.number(maxSide, width) || !text.number(maxSide, height) ||
        !text.number(255, maximum) || width == 0 || height == 0 || maximum == 0)
        return false;
    const long perPixel = type == Type::Colour ? 3 : 1;
    const long samples = width * height * perPixel;
    if (samples > maxSamples)
        return false;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(samples));
    if (binary) {
        // One white-space byte ends the header, or two when the second is the line feed that
        // our own writer adds; then exactly the samples, no more and no fewer.
        const std::size_t at = text.position();
        const std::size_t rest = bytes.size() - at;
        const std::size_t count = static_cast<std::size_t>(samples);
        const bool single = rest == count + 1 && std::isspace(bytes[at]);
        const bool doubled = rest == count + 2 && std::isspace(bytes[at]) && bytes[at + 1] == '\n';
        if (!single && !doubled)
            return false;
        std::copy(bytes.end() - static_cast<std::ptrdiff_t>(count), bytes.end(), pixels.begin());
    } else {
        for (auto& sample : pixels) {
            long value = 0;
            if (!text.number(maximum, value))
                return false;
            sample = static_cast<std::uint8_t>(value);
        }
        text.skipSpace();
        if (text.position() != bytes.size())
            return false;
    }
    m_binary = binary;
    m_width = static_cast<int>(width);
    m_height = static_cast<int>(height);
    m_type = type;
    m_pixels = std::move(pixels);
    return true;
}

bool TPXimage::write(const std::string& fileName) const {
    if (m_type == Type::None || m_width <= 0 || m_height <= 0 ||
        m_pixels.size() != static_cast<std::size_t>(m_width) * m_height * samplesPerPixel())
        return false;
    File file(std::fopen(fileName.c_str(), "wb+"));
    if (!file)
        return false;
    std::fprintf(file.get(), m_type == Type::Grey ? "P5\n" : "P6\n");
    std::fprintf(file.get(), "%i %i\n", m_width, m_height);
    std::fprintf(file.get(), "255\n\n");
    const bool written =
        std::fwrite(m_pixels.data(), 1, m_pixels.size(), file.get()) == m_pixels.size();
    return std::fclose(file.release()) == 0 && written;
}

}  // namespace vellum
