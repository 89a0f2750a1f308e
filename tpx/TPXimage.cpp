#include "tpx/TPXimage.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "base/ReplacingFile.h"

namespace vellum {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// The largest picture accepted: far above any texture or screenshot, low enough that a forged
// header cannot ask for gigabytes.
constexpr long kMaxSide = 1 << 15;
constexpr long kMaxSamples = 1L << 28;

bool isBlank(int c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isDigit(int c) {
    return c >= '0' && c <= '9';
}

TPXimage::Type typeOfName(const std::string& fileName) {
    std::string lower = fileName;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    if (lower.find(".pgm") != std::string::npos)
        return TPXimage::Type::Grey;
    if (lower.find(".ppm") != std::string::npos)
        return TPXimage::Type::Colour;
    return TPXimage::Type::None;
}

// The header and text samples of a portable map, read byte by byte from the file: decimal
// numbers separated by white space, with comments from "#" to the end of the line.
class MapScanner {
  public:
    explicit MapScanner(std::FILE* file) : m_file(file) {}

    int get() { return std::getc(m_file); }

    // "P" and one of the two magic digits, followed by white space or a comment; the digit read
    // or 0.
    int magic(int text, int binary) {
        if (get() != 'P')
            return 0;
        const int digit = get();
        if (digit != text && digit != binary)
            return 0;
        return endsToken() ? digit : 0;
    }

    // A decimal number from 0 to `limit` after white space and comments, ending in white space,
    // a comment or the end of the file (its end is left unread); false on anything else.
    bool number(long limit, long& value) {
        skipBlanks();
        int c = get();
        if (!isDigit(c))
            return false;
        value = 0;
        for (; isDigit(c); c = get()) {
            value = value * 10 + (c - '0');
            if (value > limit)
                return false;
        }
        if (c == EOF)
            return true;
        std::ungetc(c, m_file);
        return endsToken();
    }

    void skipBlanks() {
        for (;;) {
            int c = get();
            if (c == '#') {
                do
                    c = get();
                while (c != EOF && c != '\n' && c != '\r');
            } else if (!isBlank(c)) {
                if (c != EOF)
                    std::ungetc(c, m_file);
                return;
            }
        }
    }

  private:
    bool endsToken() {
        const int c = get();
        if (c == EOF)
            return true;
        std::ungetc(c, m_file);
        return isBlank(c) || c == '#';
    }

    std::FILE* m_file;
};

// How many bytes follow the current position of a regular file; -1 for anything else (a
// folder, a device, a pipe).
long long bytesLeft(std::FILE* file) {
    struct stat info {};
    if (::fstat(::fileno(file), &info) != 0 || !S_ISREG(info.st_mode))
        return -1;
    const long at = std::ftell(file);
    return at < 0 ? -1 : static_cast<long long>(info.st_size) - at;
}

// Samples of a maximum below 255 are stretched to the full byte (rounded); 255 keeps them.
std::uint8_t scaled(long value, long maximum) {
    return static_cast<std::uint8_t>((value * 255 + maximum / 2) / maximum);
}

// The raw samples after the maximum: one white-space byte, then exactly `samples` bytes, or one
// more when the first of them is the line feed our writer adds after the header.
bool readBinarySamples(std::FILE* file, long samples, long maximum,
                       std::vector<std::uint8_t>& pixels) {
    if (!isBlank(std::getc(file)))
        return false;
    const long long left = bytesLeft(file);
    if (left == samples + 1LL) {
        if (std::getc(file) != '\n')
            return false;
    } else if (left != samples) {
        return false;
    }
    pixels.resize(static_cast<std::size_t>(samples));
    if (std::fread(pixels.data(), 1, pixels.size(), file) != pixels.size() ||
        std::getc(file) != EOF)
        return false;
    for (std::uint8_t& sample : pixels) {
        if (sample > maximum)
            return false;
        sample = scaled(sample, maximum);
    }
    return true;
}

bool readTextSamples(MapScanner& scanner, long samples, long maximum,
                     std::vector<std::uint8_t>& pixels) {
    pixels.resize(static_cast<std::size_t>(samples));
    for (std::uint8_t& sample : pixels) {
        long value = 0;
        if (!scanner.number(maximum, value))
            return false;
        sample = scaled(value, maximum);
    }
    scanner.skipBlanks();
    return scanner.get() == EOF;
}

}  // namespace

TPXimage::TPXimage(int width, int height, Type type)
    : m_width(std::max(width, 0)), m_height(std::max(height, 0)), m_type(type) {
    if (type != Type::None)
        m_pixels.assign(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) *
                            static_cast<std::size_t>(samplesPerPixel()),
                        0);
}

bool TPXimage::complete() const {
    return m_type != Type::None && m_width > 0 && m_height > 0 &&
           m_pixels.size() == static_cast<std::size_t>(m_width) *
                                  static_cast<std::size_t>(m_height) *
                                  static_cast<std::size_t>(samplesPerPixel());
}

bool TPXimage::read(const std::string& fileName) {
    const Type type = typeOfName(fileName);
    if (type == Type::None)
        return false;
    File file(std::fopen(fileName.c_str(), "rb"));
    if (!file || bytesLeft(file.get()) < 0)
        return false;
    MapScanner scanner(file.get());
    const int magic = type == Type::Grey ? scanner.magic('2', '5') : scanner.magic('3', '6');
    long width = 0, height = 0, maximum = 0;
    if (magic == 0 || !scanner.number(kMaxSide, width) || !scanner.number(kMaxSide, height) ||
        !scanner.number(255, maximum) || width == 0 || height == 0 || maximum == 0)
        return false;
    const long samples = width * height * (type == Type::Colour ? 3 : 1);
    if (samples > kMaxSamples)
        return false;
    const bool binary = magic == '5' || magic == '6';
    // A sample takes a byte, or as text a digit and a separator (but the last): a file too short
    // for the header's size is refused before anything is allocated for it.
    const long long needed = binary ? samples : 2LL * samples - 1;
    if (bytesLeft(file.get()) < needed)
        return false;
    std::vector<std::uint8_t> pixels;
    if (binary ? !readBinarySamples(file.get(), samples, maximum, pixels)
               : !readTextSamples(scanner, samples, maximum, pixels))
        return false;
    m_binary = binary;
    m_width = static_cast<int>(width);
    m_height = static_cast<int>(height);
    m_type = type;
    m_pixels = std::move(pixels);
    return true;
}

bool TPXimage::write(const std::string& fileName) const {
    if (!complete())
        return false;
    ReplacingFile file(fileName);
    if (!file.open())
        return false;
    std::ostream& out = file.stream();
    out << (m_type == Type::Grey ? "P5\n" : "P6\n") << m_width << ' ' << m_height << "\n255\n\n";
    out.write(reinterpret_cast<const char*>(m_pixels.data()),
              static_cast<std::streamsize>(m_pixels.size()));
    return file.commit();
}

}  // namespace vellum
