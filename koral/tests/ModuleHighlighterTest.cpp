// The highlighting of module texts: which category each piece of a text gets (rows of text and
// expected spans), and that highlighting again after random edits gives exactly the pieces of a
// full scan, with every changed style inside the region the edit reports.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "koral/ModuleHighlighter.h"

namespace vellum {
namespace {

// The spans as "CATEGORY:TEXT" words, e.g. "K:module N:m", for readable comparisons.
std::string describe(const std::string& text) {
    static const char* const letters = "CNnKX";  // comment, number, name, keyword, condition
    std::ostringstream out;
    for (const HighlightSpan& span : highlightModule(text)) {
        if (out.tellp() > 0)
            out << ' ';
        out << letters[static_cast<int>(span.category)] << ':'
            << text.substr(static_cast<std::size_t>(span.first),
                           static_cast<std::size_t>(span.last - span.first + 1));
        if (span.category == HighlightCategory::Name) {
            EXPECT_EQ(span.name, text.substr(static_cast<std::size_t>(span.first),
                                             static_cast<std::size_t>(span.last - span.first + 1)));
        }
    }
    return out.str();
}

TEST(ModuleHighlighterTest, CategoriesFollowTheScanner) {
    struct Row {
        const char* text;
        const char* spans;
    };
    const Row rows[] = {
        {"module m graph class : DirectedGraph", "K:module n:m K:graph class K:: n:DirectedGraph"},
        {"% a comment\nend.", "C:% a comment K:end K:."},
        {"apply 3 times r1 | r2 < u", "K:apply N:3 K:times n:r1 K:| n:r2 K:< n:u"},
        {"if (x > -1.5) then call lib.m end", "K:if X:(x > -1.5) K:then K:call n:lib.m K:end"},
        {"while (a\n  b) do", "K:while X:(a\n  b) K:do"},
        // A name that begins with a keyword splits, as the module scanner reads it.
        {"iffy done", "K:if n:fy K:do n:ne"},
        {"\"a \\\" b\" -12.5", "n:\"a \\\" b\" N:-12.5"},
        // Characters no token takes stay plain; the scan goes on after them.
        {"a > b ( c", "n:a n:b n:c"},
        {"initial: terminal: realized by body",
         "K:initial K:: K:terminal K:: K:realized by K:body"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(describe(row.text), row.spans) << "text: " << row.text;
}

TEST(ModuleHighlighterTest, StylesNumberTheCategoriesFromOne) {
    ModuleHighlighter highlighter;
    const std::string text = "% c\napply 2 times r (x)";
    highlighter.scan(text.c_str());
    EXPECT_EQ(highlighter.styles({0, static_cast<long>(text.size())}),
              std::string("\1\1\1\0\4\4\4\4\4\0\2\0\4\4\4\4\4\0\3\0\5\5\5", text.size()));
    EXPECT_EQ(highlighter.styles({6, 12}), std::string("\4\4\4\0\2\0", 6));
}

// A module of a few hundred lines with every kind of token, as edits meet them.
std::string sampleModule() {
    std::ostringstream out;
    out << "module sample graph class : DirectedGraph\nexports transformation unit u0;\n"
           "realized by\n";
    for (int i = 0; i < 60; ++i)
        out << "transformation unit u" << i << " % unit " << i << "\n  initial: (count(\"v\") > "
            << i << ")\n  body: apply " << i + 2 << " times r" << i << " | s.t" << i
            << ";\n  while (a\n b) do call lib.m end\n  terminal:\nend;\n";
    out << "end.\n";
    return out.str();
}

TEST(ModuleHighlighterTest, EditsGiveTheSameHighlightingAsAFullScan) {
    const std::string alphabet = "ab(){}\"%\\ \n.;:<|-19iftransformation unit";
    std::mt19937 random(17);
    std::string text = sampleModule();
    ModuleHighlighter highlighter;
    highlighter.scan(text.c_str());
    for (int round = 0; round < 400; ++round) {
        const long position = std::uniform_int_distribution<long>(0, text.size())(random);
        const long removed = std::min<long>(std::uniform_int_distribution<long>(0, 6)(random),
                                            static_cast<long>(text.size()) - position);
        std::string inserted;
        const int insertions = std::uniform_int_distribution<int>(0, 4)(random);
        for (int k = 0; k < insertions; ++k)
            inserted += alphabet[std::uniform_int_distribution<std::size_t>(
                0, alphabet.size() - 1)(random)];
        const std::string before = highlighter.styles({0, static_cast<long>(text.size())});
        text.replace(static_cast<std::size_t>(position), static_cast<std::size_t>(removed),
                     inserted);
        const ModuleHighlighter::Range changed =
            highlighter.edit(text.c_str(), position, removed, static_cast<long>(inserted.size()));

        ModuleHighlighter full;
        full.scan(text.c_str());
        ASSERT_EQ(highlighter.pieces().size(), full.pieces().size()) << "round " << round;
        for (std::size_t k = 0; k < full.pieces().size(); ++k) {
            const ScannedPiece& a = highlighter.pieces()[k];
            const ScannedPiece& b = full.pieces()[k];
            ASSERT_TRUE(a.start == b.start && a.end == b.end && a.code == b.code)
                << "round " << round << ", piece " << k << " at " << b.start;
        }
        // Outside the reported region the styles are those of before, moved with the text.
        const std::string after = full.styles({0, static_cast<long>(text.size())});
        const long delta = static_cast<long>(inserted.size()) - removed;
        for (long at = 0; at < static_cast<long>(text.size()); ++at) {
            if (at >= changed.from && at < changed.to)
                continue;
            const long old = at < position ? at : at - delta;
            ASSERT_EQ(after[static_cast<std::size_t>(at)], before[static_cast<std::size_t>(old)])
                << "round " << round << ": style at " << at << " changed outside [" << changed.from
                << ", " << changed.to << ")";
        }
    }
}

}  // namespace
}  // namespace vellum
