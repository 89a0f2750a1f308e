// TPXtext: a line of text in the scene, such as the label of a graph element (a child of the
// element's object, placed a little above it). It faces the viewer from every camera angle:
// drawn unlit in its colour in the plane of the picture, centred horizontally on the node's
// world position with its baseline there, one em of its font `size` world units high whatever
// the scale and turn of its parents. Picking passes it over; the light picture leaves it out
// when it would be small on screen. TPXtextBatch gathers the texts of a scene being drawn.
#pragma once

#include <string>
#include <vector>

#include "tpx/TPXfont.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXnode.h"

namespace vellum {

class TPXtext : public TPXnode {
  public:
    // The name of a graph element's label.
    static constexpr const char* labelName = "__label__";
    // The light picture leaves out a text whose em is fewer pixels high than this.
    static constexpr double lightMinimumPixels = 8.0;

    // A text node of kind Text. An empty `font` (its file could not be read) is allowed: the
    // text is then never drawn.
    TPXtext(std::string name, std::string text, TPXref<TPXfont> font, double size,
            const TPXrgb& colour);

    const std::string& text() const { return m_text; }
    void setText(std::string text);
    TPXfont* font() const { return m_font.get(); }
    double size() const { return m_size; }
    const TPXrgb& colour() const { return m_colour; }
    void setColour(const TPXrgb& colour) { m_colour = colour; }
    // The text's width in world units (0 without a font).
    double width() const { return m_size * m_em; }
    // Where the text stands in the world: this node's origin taken through its own and its
    // ancestors' placements (what worldMatrix() gives, without composing matrices, which would
    // cost more than drawing the text).
    TPXp3 anchor() const;

    // Draws the text as described above, or hands it to context.texts when that is set;
    // nothing in a picking pass, without a font or text, or in the light picture when small.
    // Leaves the model-view matrix as it found it. The text must stay unchanged until a batch
    // it went to has been drawn.
    void drawSelf(TPXdrawContext& context) const override;

  private:
    // The height of one em on screen, in pixels, for the light picture's choice, with the text
    // standing at `at` (world space).
    double pixelsHigh(const TPXdrawContext& context, const TPXp3& at) const;

    std::string m_text;
    TPXref<TPXfont> m_font;
    double m_size;
    TPXrgb m_colour;
    double m_em = 0.0;  // the text's advance in em units, kept in step with m_text
};

// The texts met while one scene is drawn, drawn together after its other objects. Drawn one by
// one, each text costs a change of state and a draw of its own, and on a software renderer the
// labels of a large graph would then cost more than the shapes they name.
class TPXtextBatch {
  public:
    void add(const TPXfont& font, const TPXtextRun& run);
    bool empty() const { return m_groups.empty(); }
    // Draws everything gathered, placed in world space (the model-view matrix is set to
    // context.view), and empties the batch. A context must be current.
    void draw(TPXdrawContext& context);

  private:
    struct Group {
        const TPXfont* font;
        std::vector<TPXtextRun> runs;
    };
    std::vector<Group> m_groups;  // one per font, in the order first met
};

}  // namespace vellum
