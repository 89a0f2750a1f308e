// The label font: real outlines and advances, UTF-8 measuring, the cache by base name, and what
// a missing or broken font file gives. No GL needed.
#include <gtest/gtest.h>

#include <string>

#include "TPXtestSupport.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"
#include "tpx/TPXfont.h"
#include "tpx/TPXtext.h"
#include "tpx/TPXtransform.h"

namespace vellum {
namespace {

using test::ScopedEnvironment;
using test::TempFolder;

TPXref<TPXfont> labelFont(TPXfontCache& cache) {
    std::string error;
    TPXref<TPXfont> font = cache.get(TPXfont::systemName, error);
    EXPECT_TRUE(font) << error;
    return font;
}

TEST(TPXfont, VellumFontHasTheOutlinesAndAdvancesOfARealFace) {
    ScopedEnvironment unset(TPXfont::fileVariable, std::nullopt);
    TPXfontCache cache;
    TPXref<TPXfont> font = labelFont(cache);
    ASSERT_TRUE(font);
    const TPXglyph w = font->glyph('W'), i = font->glyph('i'), g = font->glyph('g');
    const TPXglyph x = font->glyph('x'), l = font->glyph('l'), space = font->glyph(' ');
    // In em units: a W is about one em wide, an i about a quarter.
    EXPECT_GT(w.advance, 0.85);
    EXPECT_LT(w.advance, 1.1);
    EXPECT_GT(i.advance, 0.15);
    EXPECT_LT(i.advance, 0.4);
    EXPECT_GT(w.right - w.left, 3 * (i.right - i.left));
    EXPECT_LT(g.bottom, -0.1);  // descends below the baseline
    EXPECT_NEAR(x.bottom, 0.0, 0.02);
    EXPECT_GT(l.top, x.top + 0.1);
    EXPECT_TRUE(space.blank());
    EXPECT_GT(space.advance, 0.2);
    EXPECT_FALSE(x.blank());
    EXPECT_EQ(font->glyph('\n').advance, 0.0);

    EXPECT_DOUBLE_EQ(font->width("ab"), font->glyph('a').advance + font->glyph('b').advance);
    EXPECT_EQ(font->width(""), 0.0);
    // UTF-8, a stray Latin-1 byte read as its own character, and a code point of a later page.
    const double eAcute = font->glyph(0xE9).advance;
    EXPECT_DOUBLE_EQ(font->width("\xC3\xA9"), eAcute);
    EXPECT_DOUBLE_EQ(font->width("\xE9x"), eAcute + x.advance);
    const TPXglyph alpha = font->glyph(0x3B1);
    EXPECT_FALSE(alpha.blank());
    EXPECT_DOUBLE_EQ(font->width("\xCE\xB1"), alpha.advance);

    TPXtext label(TPXtext::labelName, "ab", font, 0.5, TPXrgb{1, 0.5, 0});
    EXPECT_EQ(label.kind(), TPXkind::Text);
    EXPECT_DOUBLE_EQ(label.width(), 0.5 * font->width("ab"));
}

TEST(TPXfont, TheCacheKnowsAFontByItsBaseName) {
    TempFolder folder;
    std::string error;
    const std::string system = TPXfontCache::systemFontFile(error);
    ASSERT_FALSE(system.empty()) << error;
    const std::string file = folder.copy(system, "face.ttf");

    TPXfontCache cache;
    TPXref<TPXfont> first = cache.get(file, error);
    ASSERT_TRUE(first) << error;
    // Neither of these files exists: only the base name counts.
    EXPECT_EQ(cache.get("/elsewhere/face.ttf", error).get(), first.get());
    EXPECT_EQ(cache.get("C:\\fonts\\face.ttf", error).get(), first.get());
    EXPECT_EQ(cache.get("face.ttf", error).get(), first.get());
    EXPECT_EQ(labelFont(cache).get(), cache.get("/any/folder/VellumFont", error).get());
    EXPECT_NE(labelFont(cache).get(), first.get());
}

TEST(TPXtext, StandsWhereItsWorldMatrixTakesItsOrigin) {
    // Turned, scaled and pivoted on two levels, as a label under an edge under a group.
    TPXnode group(TPXkind::Widget, "group");
    group.setPlacement({TPXp3(1, 2, 3), TPXquaternion::fromAngles(TPXp3(10, 20, 30)),
                        TPXp3(2, 0.5, 1), TPXp3(0.5, 0, -1)});
    TPXnode* owner = group.adopt(std::make_unique<TPXnode>(TPXkind::EdgeObject, "edge"));
    owner->setPlacement({TPXp3(-1, 0, 4), TPXquaternion::fromAngles(TPXp3(0, 90, 45)),
                         TPXp3(1, 3, 1), TPXp3(0, 1, 0)});
    auto* label = static_cast<TPXtext*>(owner->adopt(std::make_unique<TPXtext>(
        TPXtext::labelName, "e", TPXref<TPXfont>(), 0.4, TPXrgb{1, 0.5, 0})));
    label->setPosition(TPXp3(0.2, 0.5, -0.3));
    EXPECT_TRUE(test::near(label->anchor(), TPXtransformPoint(label->worldMatrix(), TPXp3())));
}

struct MissingRow {
    const char* name;
    const char* fontVariable;  // VELLUM_FONT, or null for unset
    const char* error;         // a part of the error
};

TEST(TPXfont, AMissingOrBrokenFileGivesAnErrorAndNoFont) {
    TempFolder folder;
    const std::string text = folder.write("notes.ttf", "not a font at all\n");
    const std::string missing = folder.path("missing.ttf");
    const MissingRow rows[] = {
        {missing.c_str(), nullptr, "cannot open the font file '"},
        {text.c_str(), nullptr, "not a font file"},
        {TPXfont::systemName, missing.c_str(), "(named by VELLUM_FONT)"},
        {TPXfont::systemName, text.c_str(), "not a font file"},
    };
    for (const MissingRow& row : rows) {
        ScopedEnvironment variable(
            TPXfont::fileVariable,
            row.fontVariable ? std::optional<std::string>(row.fontVariable) : std::nullopt);
        TPXfontCache cache;
        for (int attempt = 0; attempt < 2; ++attempt) {  // the failure is kept
            std::string error;
            EXPECT_FALSE(cache.get(row.name, error)) << row.name;
            EXPECT_NE(error.find(row.error), std::string::npos) << row.name << ": " << error;
        }
    }
    TPXtext label(TPXtext::labelName, "ab", TPXref<TPXfont>(), 0.5, TPXrgb{1, 0.5, 0});
    EXPECT_EQ(label.width(), 0.0);
}

}  // namespace
}  // namespace vellum
