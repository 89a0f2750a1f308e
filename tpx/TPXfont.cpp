#include "tpx/TPXfont.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <type_traits>
#include <vector>

#include "tpx/TPXlists.h"

namespace vellum {

namespace {

// Glyphs are rasterised this many pixels to the em: labels stay sharp up to about that height
// on screen, and mipmaps keep smaller ones readable.
constexpr int kPixelsPerEm = 48;
// Transparent pixels round each glyph in the atlas, so that filtering and the coarser mipmap
// levels do not pull in a neighbour.
constexpr int kPadding = 3;
constexpr int kAtlasWidth = 512;
constexpr int kPageSize = 256;
constexpr char32_t kReplacement = 0xFFFD;

struct LibraryDeleter {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct FaceDeleter {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using LibraryHandle = std::unique_ptr<std::remove_pointer_t<FT_Library>, LibraryDeleter>;
using FaceHandle = std::unique_ptr<std::remove_pointer_t<FT_Face>, FaceDeleter>;

bool isControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

// Calls `use` with each code point of UTF-8 `text`. A byte that does not begin a complete,
// shortest-form sequence is taken as the Latin-1 character of the same number, so that labels
// from files in an 8-bit encoding still show.
template <typename Use>
void forEachCodePoint(std::string_view text, Use use) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const int length = lead < 0x80         ? 1
                           : (lead >> 5) == 6  ? 2
                           : (lead >> 4) == 14 ? 3
                           : (lead >> 3) == 30 ? 4
                                               : 0;
        char32_t c = length == 1 ? lead : lead & (0x7F >> length);
        bool valid = length > 0 && i + static_cast<std::size_t>(length) <= text.size();
        for (int k = 1; valid && k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            valid = (next & 0xC0) == 0x80;
            c = (c << 6) | (next & 0x3F);
        }
        static constexpr char32_t kShortest[5] = {0, 0, 0x80, 0x800, 0x10000};
        if (valid && length > 1 && c < kShortest[length])
            valid = false;
        if (!valid) {
            use(static_cast<char32_t>(lead));
            ++i;
            continue;
        }
        use(c > 0x10FFFF || (c >= 0xD800 && c < 0xE000) ? kReplacement : c);
        i += static_cast<std::size_t>(length);
    }
}

// A rasterised glyph before packing: its coverage, rows from the top.
struct Bitmap {
    int width = 0;
    int rows = 0;
    int left = 0;  // pixels from the pen to the first column
    int top = 0;   // pixels from the baseline up to the first row
    std::vector<std::uint8_t> coverage;
};

}  // namespace

struct TPXfont::Face {
    // The library outlives the face: members are destroyed in reverse order.
    LibraryHandle library;
    FaceHandle face;
};

namespace {

// A glyph as drawn: its metrics and, unless blank, its quad (em units, padding included) and
// where that quad lies in the page's atlas.
struct PlacedGlyph {
    TPXglyph shape;
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    float s0 = 0, t0 = 0, s1 = 0, t1 = 0;
};

using PageGlyphs = std::array<PlacedGlyph, kPageSize>;

// The glyph pictures of one page side by side: alpha, rows from the top.
struct Atlas {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> alpha;
};

// Rasterises code point `c` of `face`. A control character, and a glyph FreeType cannot load
// or render, stay blank.
void rasterise(FT_Face face, char32_t c, TPXglyph& shape, Bitmap& bitmap) {
    if (isControl(c))
        return;
    const FT_UInt index = FT_Get_Char_Index(face, c);  // 0: the missing-glyph box
    // Unhinted, so that advances and boxes are the outline's own, unrounded to pixels.
    if (FT_Load_Glyph(face, index, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0)
        return;
    FT_GlyphSlot slot = face->glyph;
    const double perEm = kPixelsPerEm;
    shape.advance = static_cast<double>(slot->linearHoriAdvance) / 65536.0 / perEm;
    const FT_Glyph_Metrics& m = slot->metrics;
    if (m.width <= 0 || m.height <= 0 || slot->format != FT_GLYPH_FORMAT_OUTLINE)
        return;
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0 ||
        slot->bitmap.pixel_mode != FT_PIXEL_MODE_GRAY)
        return;
    shape.left = static_cast<double>(m.horiBearingX) / 64.0 / perEm;
    shape.top = static_cast<double>(m.horiBearingY) / 64.0 / perEm;
    shape.right = shape.left + static_cast<double>(m.width) / 64.0 / perEm;
    shape.bottom = shape.top - static_cast<double>(m.height) / 64.0 / perEm;
    const FT_Bitmap& source = slot->bitmap;
    bitmap.width = static_cast<int>(source.width);
    bitmap.rows = static_cast<int>(source.rows);
    bitmap.left = slot->bitmap_left;
    bitmap.top = slot->bitmap_top;
    bitmap.coverage.resize(static_cast<std::size_t>(bitmap.width) * bitmap.rows);
    for (int row = 0; row < bitmap.rows; ++row) {
        const unsigned char* from = source.buffer + static_cast<std::ptrdiff_t>(row) * source.pitch;
        std::copy(from, from + bitmap.width,
                  bitmap.coverage.begin() + static_cast<std::ptrdiff_t>(row) * bitmap.width);
    }
}

int nextPowerOfTwo(int n) {
    int p = 1;
    while (p < n)
        p *= 2;
    return p;
}

// Packs the bitmaps into an atlas, shelf by shelf, and sets each glyph's quad and texture
// coordinates.
void pack(const std::vector<Bitmap>& bitmaps, PageGlyphs& glyphs, Atlas& atlas) {
    struct Spot {
        int x = 0;
        int y = 0;
    };
    std::vector<Spot> spots(bitmaps.size());
    int x = 0;
    int y = 0;
    int shelf = 0;
    for (std::size_t i = 0; i < bitmaps.size(); ++i) {
        if (bitmaps[i].coverage.empty())
            continue;
        const int w = std::min(bitmaps[i].width + 2 * kPadding, kAtlasWidth);
        const int h = bitmaps[i].rows + 2 * kPadding;
        if (x + w > kAtlasWidth) {
            x = 0;
            y += shelf;
            shelf = 0;
        }
        spots[i] = {x, y};
        x += w;
        shelf = std::max(shelf, h);
    }
    atlas.width = kAtlasWidth;
    atlas.height = nextPowerOfTwo(std::max(1, y + shelf));
    atlas.alpha.assign(static_cast<std::size_t>(atlas.width) * atlas.height, 0);
    const double perEm = kPixelsPerEm;
    for (std::size_t i = 0; i < bitmaps.size(); ++i) {
        const Bitmap& b = bitmaps[i];
        if (b.coverage.empty())
            continue;
        const int columns = std::min(b.width, kAtlasWidth - 2 * kPadding);
        for (int row = 0; row < b.rows; ++row)
            std::copy_n(b.coverage.begin() + static_cast<std::ptrdiff_t>(row) * b.width, columns,
                        atlas.alpha.begin() +
                            static_cast<std::ptrdiff_t>(spots[i].y + kPadding + row) * atlas.width +
                            spots[i].x + kPadding);
        PlacedGlyph& g = glyphs[i];
        g.x0 = static_cast<float>((b.left - kPadding) / perEm);
        g.x1 = static_cast<float>((b.left + columns + kPadding) / perEm);
        g.y1 = static_cast<float>((b.top + kPadding) / perEm);
        g.y0 = static_cast<float>((b.top - b.rows - kPadding) / perEm);
        g.s0 = static_cast<float>(spots[i].x) / static_cast<float>(atlas.width);
        g.s1 = static_cast<float>(spots[i].x + columns + 2 * kPadding) /
               static_cast<float>(atlas.width);
        g.t0 = static_cast<float>(spots[i].y) / static_cast<float>(atlas.height);
        g.t1 = static_cast<float>(spots[i].y + b.rows + 2 * kPadding) /
               static_cast<float>(atlas.height);
    }
}

}  // namespace

// Rasterised when made, never changed afterwards; only the lists and textures made from it in
// each GL context are added while drawing.
struct TPXfont::Page {
    PageGlyphs glyphs;
    Atlas atlas;
    mutable TPXlists<1, true> texture;
    mutable TPXlists<kPageSize> lists;

    Page(FT_Face face, char32_t number) {
        std::vector<Bitmap> bitmaps(kPageSize);
        for (int i = 0; i < kPageSize; ++i)
            rasterise(face, number * kPageSize + static_cast<char32_t>(i), glyphs[i].shape,
                      bitmaps[i]);
        pack(bitmaps, glyphs, atlas);
    }
};

namespace {

// What drawing glyph quads needs: texturing with the atlas's alpha over the current colour,
// blending, an alpha test so that the clear corners of a quad do not hide what lies behind them
// in the depth buffer, and no lighting. The previous state comes back when it ends.
class GlyphState {
  public:
    GlyphState()
        : m_lighting(glIsEnabled(GL_LIGHTING)),
          m_texturing(glIsEnabled(GL_TEXTURE_2D)),
          m_blending(glIsEnabled(GL_BLEND)),
          m_alphaTest(glIsEnabled(GL_ALPHA_TEST)) {
        glDisable(GL_LIGHTING);
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(GL_GREATER, 0.1f);
    }
    ~GlyphState() {
        restore(GL_ALPHA_TEST, m_alphaTest);
        restore(GL_BLEND, m_blending);
        restore(GL_TEXTURE_2D, m_texturing);
        restore(GL_LIGHTING, m_lighting);
    }
    GlyphState(const GlyphState&) = delete;
    GlyphState& operator=(const GlyphState&) = delete;

  private:
    static void restore(GLenum capability, GLboolean enabled) {
        if (enabled)
            glEnable(capability);
        else
            glDisable(capability);
    }

    GLboolean m_lighting;
    GLboolean m_texturing;
    GLboolean m_blending;
    GLboolean m_alphaTest;
};

// Sends the corners of glyph `g` of `run`, its pen `pen` ems along the run, inside GL_QUADS.
void sendQuad(const PlacedGlyph& g, const TPXtextRun& run, double pen) {
    const auto corner = [&](float s, float t, float x, float y) {
        const TPXp3 p = run.origin + run.xAxis * (pen + x) + run.yAxis * static_cast<double>(y);
        glTexCoord2f(s, t);
        glVertex3d(p.x(), p.y(), p.z());
    };
    corner(g.s0, g.t1, g.x0, g.y0);
    corner(g.s1, g.t1, g.x1, g.y0);
    corner(g.s1, g.t0, g.x1, g.y1);
    corner(g.s0, g.t0, g.x0, g.y1);
}

}  // namespace

TPXref<TPXfont> TPXfont::load(const std::string& fileName, std::string& error) {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) {
        error = "cannot read the font '" + fileName + "': FreeType does not start";
        return {};
    }
    auto face = std::make_unique<Face>();
    face->library.reset(library);
    FT_Face opened = nullptr;
    const FT_Error failure = FT_New_Face(library, fileName.c_str(), 0, &opened);
    face->face.reset(opened);
    if (failure == FT_Err_Cannot_Open_Resource) {
        error = "cannot open the font file '" + fileName + "'";
        return {};
    }
    if (failure != 0) {
        error = "cannot read the font '" + fileName + "': not a font file";
        return {};
    }
    if (!FT_IS_SCALABLE(opened) || FT_Set_Pixel_Sizes(opened, 0, kPixelsPerEm) != 0) {
        error = "cannot read the font '" + fileName + "': it has no outlines";
        return {};
    }
    FT_Select_Charmap(opened, FT_ENCODING_UNICODE);  // a symbol font keeps its own map
    return TPXref<TPXfont>(new TPXfont(fileName, std::move(face)));
}

TPXfont::TPXfont(std::string fileName, std::unique_ptr<Face> face)
    : m_fileName(std::move(fileName)), m_face(std::move(face)) {
    m_firstPage = std::make_unique<Page>(m_face->face.get(), 0);
}

TPXfont::~TPXfont() = default;

const TPXfont::Page& TPXfont::page(char32_t number) const {
    if (number == 0)
        return *m_firstPage;
    std::lock_guard<std::mutex> lock(m_mutex);
    std::unique_ptr<Page>& page = m_pages[number];
    if (!page)
        page = std::make_unique<Page>(m_face->face.get(), number);
    return *page;
}

TPXglyph TPXfont::glyph(char32_t c) const {
    if (c > 0x10FFFF)
        c = kReplacement;
    return page(c / kPageSize).glyphs[c % kPageSize].shape;
}

double TPXfont::width(std::string_view text) const {
    double sum = 0.0;
    forEachCodePoint(text, [&](char32_t c) { sum += glyph(c).advance; });
    return sum;
}

void TPXfont::bindAtlas(const Page& page, TPXdrawContext& context) const {
    GLuint name = page.texture.get(*context.lists, 0);
    if (name != 0) {
        glBindTexture(GL_TEXTURE_2D, name);
        return;
    }
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST);
    // Below an eighth of the raster size the padding between glyphs runs out.
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 3);
    gluBuild2DMipmaps(GL_TEXTURE_2D, GL_ALPHA, page.atlas.width, page.atlas.height, GL_ALPHA,
                      GL_UNSIGNED_BYTE, page.atlas.alpha.data());
    page.texture.set(context.lists, 0, name);
}

GLuint TPXfont::glyphList(const Page& page, unsigned index, TPXdrawContext& context) const {
    const PlacedGlyph& g = page.glyphs[index];
    if (g.shape.blank())
        return 0;
    GLuint list = page.lists.get(*context.lists, index);
    if (list != 0)
        return list;
    list = glGenLists(1);
    if (list == 0)
        return 0;
    glNewList(list, GL_COMPILE);
    glBegin(GL_QUADS);
    glTexCoord2f(g.s0, g.t1);
    glVertex2f(g.x0, g.y0);
    glTexCoord2f(g.s1, g.t1);
    glVertex2f(g.x1, g.y0);
    glTexCoord2f(g.s1, g.t0);
    glVertex2f(g.x1, g.y1);
    glTexCoord2f(g.s0, g.t0);
    glVertex2f(g.x0, g.y1);
    glEnd();
    glEndList();
    page.lists.set(context.lists, index, list);
    return list;
}

void TPXfont::draw(TPXdrawContext& context, std::string_view text) const {
    const GlyphState state;
    const Page* bound = nullptr;
    forEachCodePoint(text, [&](char32_t c) {
        const Page& p = page(c / kPageSize);
        const unsigned index = c % kPageSize;
        if (!p.glyphs[index].shape.blank() && &p != bound) {
            bindAtlas(p, context);
            bound = &p;
        }
        if (const GLuint list = glyphList(p, index, context))
            glCallList(list);
        glTranslatef(static_cast<GLfloat>(p.glyphs[index].shape.advance), 0.0f, 0.0f);
    });
}

void TPXfont::drawRuns(TPXdrawContext& context, const std::vector<TPXtextRun>& runs) const {
    if (runs.empty())
        return;
    const GlyphState state;
    const Page* bound = nullptr;  // whose atlas the open glBegin draws with
    for (const TPXtextRun& run : runs) {
        glColor3d(run.colour.r, run.colour.g, run.colour.b);
        double pen = 0.0;
        forEachCodePoint(run.text, [&](char32_t c) {
            const Page& p = page(c / kPageSize);
            const PlacedGlyph& g = p.glyphs[c % kPageSize];
            if (!g.shape.blank()) {
                if (&p != bound) {
                    if (bound)
                        glEnd();
                    bindAtlas(p, context);
                    glBegin(GL_QUADS);
                    bound = &p;
                }
                sendQuad(g, run, pen);
            }
            pen += g.shape.advance;
        });
    }
    if (bound)
        glEnd();
}

std::string TPXfontCache::baseName(const std::string& name) {
    const std::size_t slash = name.find_last_of("/\\");
    return slash == std::string::npos ? name : name.substr(slash + 1);
}

std::string TPXfontCache::systemFontFile(std::string& error) {
    if (const char* file = std::getenv(TPXfont::fileVariable); file && *file)
        return file;
    // Debian and Ubuntu (fonts-dejavu-core), Fedora old and new, Arch.
    static constexpr const char* kPlaces[] = {
        "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
        "/usr/share/fonts/dejavu/DejaVuSans.ttf",
        "/usr/share/fonts/dejavu-sans-fonts/DejaVuSans.ttf",
        "/usr/share/fonts/TTF/DejaVuSans.ttf",
    };
    for (const char* place : kPlaces)
        if (std::FILE* file = std::fopen(place, "rb")) {
            std::fclose(file);
            return place;
        }
    error = std::string("cannot find the font '") + TPXfont::systemName +
            "': DejaVuSans.ttf (Debian package fonts-dejavu-core) is in none of the usual "
            "places; set " +
            TPXfont::fileVariable + " to the font file to use";
    return {};
}

TPXref<TPXfont> TPXfontCache::get(const std::string& name, std::string& error) {
    const std::string key = baseName(name);
    auto found = m_fonts.find(key);
    if (found == m_fonts.end()) {
        Entry entry;
        const bool system = key == TPXfont::systemName;
        const std::string file = system ? systemFontFile(entry.error) : name;
        if (!file.empty())
            entry.font = TPXfont::load(file, entry.error);
        if (!entry.font && system && std::getenv(TPXfont::fileVariable))
            entry.error += std::string(" (named by ") + TPXfont::fileVariable + ")";
        found = m_fonts.emplace(key, std::move(entry)).first;
    }
    if (!found->second.font)
        error = found->second.error;
    return found->second.font;
}

}  // namespace vellum
