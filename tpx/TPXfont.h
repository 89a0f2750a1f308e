// TPXfont: an outline font read with FreeType, a shared resource; labels are written in it.
// Glyphs are rasterised from their outlines into an alpha atlas, 256 code points to a page (the
// first page when the font is read, others when first asked for), and each glyph is one display
// list drawing a textured quad, made lazily in every GL context it is drawn in. Textured quads
// keep a label at two triangles a glyph, so that thousands of labels cost less on a software
// renderer than the spheres they name. TPXfontCache keeps one owner's fonts by base file name.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "tpx/TPXdrawContext.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXp3.h"
#include "tpx/TPXshared.h"

namespace vellum {

// One character's shape in em units (the font drawn at size 1): its advance along the baseline
// and the box of its outline, relative to the pen position on the baseline (y up).
struct TPXglyph {
    double advance = 0.0;
    double left = 0.0;
    double bottom = 0.0;
    double right = 0.0;
    double top = 0.0;

    // No outline (a space): nothing to draw, only the advance.
    bool blank() const { return right <= left || top <= bottom; }
};

// A line of text placed in space for TPXfont::drawRuns: the pen starts at `origin` and moves
// along `xAxis`, `yAxis` points up, each axis one em long.
struct TPXtextRun {
    std::string_view text;
    TPXp3 origin;
    TPXp3 xAxis;
    TPXp3 yAxis;
    TPXrgb colour;
};

class TPXfont : public TPXshared {
  public:
    // The name under which the scene asks for its label font, and the environment variable
    // that may name the file it stands for.
    static constexpr const char* systemName = "VellumFont";
    static constexpr const char* fileVariable = "VELLUM_FONT";

    // Reads the outline font file `fileName` (TrueType or OpenType). Empty, with the reason in
    // `error`, when the file cannot be opened, is no font FreeType knows or has no outlines.
    static TPXref<TPXfont> load(const std::string& fileName, std::string& error);

    const std::string& fileName() const { return m_fileName; }

    // The shape of the code point `c`; the font's missing-glyph box for one it lacks, and a
    // blank glyph without advance for a control character. Any thread.
    TPXglyph glyph(char32_t c) const;
    // The advance of `text` in em units: the sum of its characters' advances. The text is UTF-8;
    // a byte that does not start a valid sequence is read as a Latin-1 character. Any thread.
    double width(std::string_view text) const;

    // Draws `text` glyph by glyph from the origin along x, the baseline on y = 0, one em to the
    // unit, unlit in the current colour: each glyph's display list, then a glTranslatef of its
    // advance (the model-view matrix is left moved to the end of the text). The context of
    // `context` must be current; lighting, texturing, blending and the alpha test are as they
    // were afterwards.
    void draw(TPXdrawContext& context, std::string_view text) const;
    // Draws many texts at once, each in its colour, as quads placed with the current model-view
    // matrix: the state is set once and the quads go out in one batch per atlas page, so a
    // scene's thousands of labels cost about one draw. Otherwise as draw.
    void drawRuns(TPXdrawContext& context, const std::vector<TPXtextRun>& runs) const;

  private:
    struct Face;
    struct Page;

    TPXfont(std::string fileName, std::unique_ptr<Face> face);
    ~TPXfont() override;

    // The page of glyphs for code points number * 256 to number * 256 + 255, rasterised on first
    // use. Pages never change once made.
    const Page& page(char32_t number) const;
    // Binds the page's atlas texture in `context`, uploading it there on first use.
    void bindAtlas(const Page& page, TPXdrawContext& context) const;
    // The display list of one glyph in `context`, compiled on first use; 0 for a blank glyph.
    GLuint glyphList(const Page& page, unsigned index, TPXdrawContext& context) const;

    std::string m_fileName;
    // Guards m_face and m_pages: a scene may be measured on one thread and drawn on another.
    mutable std::mutex m_mutex;
    std::unique_ptr<Face> m_face;
    std::unique_ptr<Page> m_firstPage;  // ASCII and Latin-1, made when the font is read
    mutable std::map<char32_t, std::unique_ptr<Page>> m_pages;  // the others, by page number
};

// The fonts one owner (a scene, a canvas) has asked for, by base file name: the part of the
// name after its last "/" or "\". Not shared between threads.
class TPXfontCache {
  public:
    // The font `name` stands for. The base name "VellumFont" is the label font: the file named
    // by VELLUM_FONT when that is set, otherwise DejaVu Sans from the first of a few usual
    // places; any other name is the path of a font file. A base name asked for before returns
    // the same font without reading anything. Empty, with the reason in `error`, when the file
    // cannot be found or read; the failure is kept as well, so a scene of many labels tries the
    // disk once.
    TPXref<TPXfont> get(const std::string& name, std::string& error);

    // The file the label font is read from; empty, with the reason in `error`, when
    // VELLUM_FONT is unset and DejaVu Sans is in none of the usual places.
    static std::string systemFontFile(std::string& error);
    static std::string baseName(const std::string& name);

  private:
    struct Entry {
        TPXref<TPXfont> font;
        std::string error;  // why the font is missing when it is
    };
    std::map<std::string, Entry> m_fonts;
};

}  // namespace vellum
