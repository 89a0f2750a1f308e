// bench_module_editor [LINES]: the module editor's highlighting on a module of 5,000 lines (or the
// number given). It prints, beside the aim of 16 ms per edit:
// - the highlighter alone: a full scan of the text, and the time per edit of several kinds in
//   the middle of the text (a letter typed into a name, a line commented out, a condition
//   opened with "(" and closed again, a string opened with a quote, a line feed), each the
//   mean and the longest of many, with the characters scanned again;
// - the same edits in a real module editor frame on an X display (scripts/bench starts a
//   virtual one): the text control's insertion or deletion including the re-highlighting that
//   follows it at once, at random places of the text.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "bench/BenchToolkit.h"
#include "gui/ModuleEditorFrame.h"
#include "koral/ModuleHighlighter.h"

namespace {

using vellum::ModuleEditorFrame;
using vellum::ModuleHighlighter;
using vellum::bench::Clock;
using vellum::bench::secondsSince;
using vellum::bench::settle;
using vellum::bench::Toolkit;

constexpr double kAimMs = 16.0;
constexpr int kRounds = 200;

// A module of about `lines` lines with every kind of token: units of eight lines each.
std::string moduleText(int lines) {
    std::ostringstream out;
    out << "module bench graph class : DirectedGraph\nexports transformation unit u0\n"
           "realized by\n";
    for (int i = 0; 3 + 8 * i < lines - 1; ++i)
        out << (i > 0 ? ";\n" : "") << "transformation unit u" << i << " % unit number " << i
            << "\n  initial : (vertices > " << i << " && edges.t == 3)\n  body : apply " << i + 2
            << " times split_t | split_n; call graphstats.count\n"
            << "  while (edges.n > 0) do\n    apply once \"quoted\" < twice\n  end\n"
            << "  terminal :\nend";
    out << "\nend.\n";
    return out.str();
}

struct Edit {
    const char* what;
    std::string inserted;  // at the place
    long removed = 0;      // characters removed there before
};

struct Figures {
    double meanMs = 0;
    double longestMs = 0;
    double meanRescanned = 0;
};

void print(const char* what, const Figures& f, bool withRescan) {
    std::printf("  %-34s mean %7.3f ms  longest %7.3f ms", what, f.meanMs, f.longestMs);
    if (withRescan)
        std::printf("  rescanned %8.0f chars", f.meanRescanned);
    std::printf("  %s\n", f.longestMs < kAimMs ? "(within 16 ms)" : "(ABOVE 16 ms)");
}

// Each edit applied and undone `kRounds` times at places in the middle third of the text.
Figures measureHighlighter(const std::string& original, const Edit& edit, std::mt19937& random) {
    Figures figures;
    std::string text = original;
    ModuleHighlighter highlighter;
    highlighter.scan(text.c_str());
    std::uniform_int_distribution<long> place(static_cast<long>(text.size()) / 3,
                                              2 * static_cast<long>(text.size()) / 3);
    for (int round = 0; round < kRounds; ++round) {
        const long at = place(random);
        const std::string removed =
            text.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(edit.removed));
        const Clock::time_point start = Clock::now();
        text.replace(static_cast<std::size_t>(at), removed.size(), edit.inserted);
        const ModuleHighlighter::Range range = highlighter.edit(
            text.c_str(), at, edit.removed, static_cast<long>(edit.inserted.size()));
        const double ms = secondsSince(start) * 1000.0;
        figures.meanMs += ms / kRounds;
        figures.longestMs = std::max(figures.longestMs, ms);
        figures.meanRescanned += static_cast<double>(range.to - range.from) / kRounds;
        // Back to the original text, unmeasured.
        text.replace(static_cast<std::size_t>(at), edit.inserted.size(), removed);
        highlighter.edit(text.c_str(), at, static_cast<long>(edit.inserted.size()),
                         static_cast<long>(removed.size()));
    }
    return figures;
}

Figures measureEditor(ModuleEditorFrame& editor, const Edit& edit, std::mt19937& random) {
    Figures figures;
    wxStyledTextCtrl& control = editor.text();
    std::uniform_int_distribution<int> place(0, control.GetLength() - 1);
    for (int round = 0; round < kRounds; ++round) {
        const int at = place(random);
        const Clock::time_point start = Clock::now();
        if (edit.removed > 0)
            control.DeleteRange(at, static_cast<int>(edit.removed));
        else
            control.InsertText(at, edit.inserted);
        const double ms = secondsSince(start) * 1000.0;
        figures.meanMs += ms / kRounds;
        figures.longestMs = std::max(figures.longestMs, ms);
        control.Undo();
    }
    return figures;
}

}  // namespace

int main(int argc, char** argv) {
    const int lines = argc > 1 ? std::max(10, std::atoi(argv[1])) : 5000;
    const std::string text = moduleText(lines);
    const long lineCount = std::count(text.begin(), text.end(), '\n');
    std::printf("module of %ld lines, %zu characters\n", lineCount, text.size());

    ModuleHighlighter full;
    const Clock::time_point start = Clock::now();
    full.scan(text.c_str());
    std::printf("full scan: %.2f ms, %zu pieces\n", secondsSince(start) * 1000.0,
                full.pieces().size());

    const std::vector<Edit> edits = {
        {"a letter typed", "x", 0},        {"a line commented out (%)", "%", 0},
        {"a condition opened: (", "(", 0}, {"a string opened: \"", "\"", 0},
        {"a line feed", "\n", 0},          {"a character deleted", "", 1},
    };
    std::mt19937 random(5000);
    std::printf("highlighter alone, %d edits each in the middle third:\n", kRounds);
    for (const Edit& edit : edits)
        print(edit.what, measureHighlighter(text, edit, random), true);

    Toolkit toolkit(argc, argv);
    if (!toolkit.ready()) {
        std::printf("module editor frame: skipped, no display\n");
        return 0;
    }
    auto* editor = new ModuleEditorFrame(nullptr);
    editor->SetClientSize(1024, 768);
    editor->text().SetText(text);
    settle(200);
    std::printf(
        "module editor frame, %d edits each at random places (the edit and its "
        "re-highlighting):\n",
        kRounds);
    for (const Edit& edit : edits)
        print(edit.what, measureEditor(*editor, edit, random), false);
    editor->text().SetSavePoint();
    editor->Destroy();
    settle(50);
    return 0;
}
