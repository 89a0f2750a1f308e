// bench_interpreter [K] [--runs N]: the Sierpinski example's unit genK (K = 8 by default: 9,843
// vertices and 19,683 edges at the end) in a real interpreter frame on an X display (scripts/bench
// starts a virtual one), with a 1024x768 canvas, no pause, the matches highlighted, the
// intermediate states shown and no layout, beside the same unit run by `vellum-cli run` of the
// same build in a process of its own. Each is run N times (3 by default); it prints per run:
// - the run time from the interpreter's READY line, for the frame and for the command line;
// - the frame's paints during the run, with the time each held the scene lock (mean and max);
// - the time until the frame has seen the end and its scene shows the final graph;
// - the frame's figures (steps, steps per second) and the final graph's and scene's counts,
//   checked;
// then the same with the window hidden, where nothing is painted, and at the end the medians and
// their ratios (aim: at most 2 for the shown window).
#include <wx/evtloop.h>
#include <wx/timer.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "base/Console.h"
#include "base/Paths.h"
#include "bench/BenchGraph.h"
#include "bench/BenchToolkit.h"
#include "gui/InterpreterFrame.h"
#include "koral/BundledDefaults.h"

namespace {

using vellum::InterpreterFrame;
using vellum::bench::secondsSince;
using vellum::bench::settle;
using vellum::bench::Toolkit;

constexpr int kWidth = 1024;
constexpr int kHeight = 768;
constexpr int kRunLimitMs = 600000;  // a frame run that takes longer is taken as stuck

const std::string kFolder = std::string(VELLUM_EXAMPLES_DIR) + "/sierpinski/";
const std::string kModule = kFolder + "sierpinski.mod";
const std::string kStart = kFolder + "triangle.dg";

// Nobody answers questions in a benchmark: they are printed and answered with OK.
class PrintingPrompts : public vellum::EditorPrompts {
  public:
    int message(wxWindow*, const wxString& text, const wxString& title, long) override {
        std::fprintf(stderr, "bench_interpreter: the frame said (%s): %s\n",
                     title.utf8_str().data(), text.utf8_str().data());
        return wxOK;
    }
};

// The seconds of the READY line of `unit` in `log`; none without one.
std::optional<double> readySeconds(const std::string& log, const std::string& unit) {
    const std::regex ready("READY '" + unit + "'\\.\\.\\.([0-9.eE+-]+) seconds\\.");
    std::smatch found;
    if (!std::regex_search(log, found, ready))
        return std::nullopt;
    return std::strtod(found[1].str().c_str(), nullptr);
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

// `vellum-cli run` of this build on the same unit: its READY seconds, none when it failed.
std::optional<double> commandLineRun(const std::string& unit) {
    const std::string command = quoted(vellum::executableDirectory() + "/vellum-cli") + " run " +
                                quoted(kModule) + " " + unit + " " + quoted(kStart) + " 2>&1";
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return std::nullopt;
    std::string log;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        log.append(buffer, n);
    const int status = ::pclose(pipe);
    const std::optional<double> seconds = readySeconds(log, unit);
    if (status != 0 || !seconds)
        std::fprintf(stderr, "bench_interpreter: vellum-cli run failed (status %d):\n%s", status,
                     log.c_str());
    return status == 0 ? seconds : std::nullopt;
}

struct FrameRun {
    double seconds = 0.0;    // from the READY line
    double untilIdle = 0.0;  // from Start until the frame has seen the end and shows the graph
    vellum::TPXCanvas::PaintStatistics paints;
    std::string figures;
    std::size_t vertices = 0;
    std::size_t edges = 0;
    std::size_t shownVertices = 0;  // by the scene, once the frame has seen the run end
    std::size_t shownEdges = 0;
};

// Runs `unit` in the frame on a fresh start graph under a real event loop, as the program does;
// none when it did not start, did not end normally or left no READY line.
std::optional<FrameRun> frameRun(InterpreterFrame& frame, const std::string& unit) {
    if (!frame.loadGraph(kStart))
        return std::nullopt;
    settle(300);  // the first paint of the start graph
    wxGUIEventLoop loop;
    bool normally = false;
    frame.setRunEnded([&](bool ended) {
        normally = ended;
        loop.ScheduleExit();
    });
    wxTimer limit;
    limit.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        std::fprintf(stderr, "bench_interpreter: the run took over %d s, stopping it\n",
                     kRunLimitMs / 1000);
        frame.stop();
    });
    vellum::ConsoleCapture console;
    frame.canvas().resetPaintStatistics();
    const vellum::bench::Clock::time_point start = vellum::bench::Clock::now();
    if (!frame.startUnit(kModule, unit))
        return std::nullopt;
    limit.StartOnce(kRunLimitMs);
    loop.Run();
    const double untilIdle = secondsSince(start);
    limit.Stop();
    frame.setRunEnded(nullptr);
    FrameRun run;
    run.paints = frame.canvas().paintStatistics();
    run.figures = frame.figures().utf8_string();
    run.vertices = frame.graph().vertexCount();
    run.edges = frame.graph().edgeCount();
    run.shownVertices = frame.scene().vertexCount();
    run.shownEdges = frame.scene().edgeCount();
    const std::optional<double> seconds = readySeconds(console.text(), unit);
    if (!normally || !seconds) {
        std::fprintf(stderr, "bench_interpreter: the frame's run failed:\n%s",
                     console.text().c_str());
        return std::nullopt;
    }
    run.seconds = *seconds;
    run.untilIdle = untilIdle;
    return run;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int measure(int generation, int runs) {
    const std::string unit = "gen" + std::to_string(generation);
    long power = 1;
    for (int i = 0; i <= generation; ++i)
        power *= 3;
    const auto expectedVertices = static_cast<std::size_t>((power + 3) / 2);
    const auto expectedEdges = static_cast<std::size_t>(power);

    auto* frame = new InterpreterFrame(nullptr, std::make_unique<PrintingPrompts>());
    frame->SetClientSize(kWidth, kHeight);
    settle(200);
    if (!frame->canvas().hasContext()) {
        std::fprintf(stderr, "bench_interpreter: the canvas has no GL context\n");
        frame->Destroy();
        return 1;
    }
    vellum::InterpreterOptions options;
    options.snooze = 0;
    options.morphism = true;
    options.intermediate = true;
    options.debug = false;
    frame->setOptions(options);
    const wxSize size = frame->canvas().GetClientSize();
    std::printf(
        "unit %s of sierpinski.mod in the interpreter frame: canvas %dx%d, snooze 0, "
        "morphism on, intermediate on, no layout\n",
        unit.c_str(), size.x, size.y);

    int status = 0;
    // The runs in the shown window, then the same with the window hidden, which paints nothing:
    // what the frame's following of the steps costs without the paints competing for the cores.
    std::vector<double> shownSeconds;
    std::vector<double> hiddenSeconds;
    std::vector<double> cliSeconds;
    for (const bool shown : {true, false}) {
        frame->Show(shown);
        settle(100);
        for (int i = 1; i <= runs; ++i) {
            const std::optional<FrameRun> run = frameRun(*frame, unit);
            const std::optional<double> cli = commandLineRun(unit);
            if (!run || !cli) {
                status = 1;
                continue;
            }
            (shown ? shownSeconds : hiddenSeconds).push_back(run->seconds);
            cliSeconds.push_back(*cli);
            const bool right = run->vertices == expectedVertices && run->edges == expectedEdges &&
                               run->shownVertices == run->vertices && run->shownEdges == run->edges;
            const auto& p = run->paints;
            std::printf(
                "  %s run %d: frame %7.3f s, vellum-cli run %7.3f s, ratio %5.2f; %ld "
                "paints, %.1f ms mean, %.1f ms max\n",
                shown ? "shown " : "hidden", i, run->seconds, *cli, run->seconds / *cli, p.paints,
                p.paints > 0 ? 1000.0 * p.seconds / p.paints : 0.0, 1000.0 * p.maxSeconds);
            std::printf(
                "         %.3f s until idle; figures: %s; the scene shows %zu vertices, "
                "%zu edges%s\n",
                run->untilIdle, run->figures.c_str(), run->shownVertices, run->shownEdges,
                right ? "" : "  WRONG: not the expected generation");
            if (!right)
                status = 1;
        }
    }
    frame->Destroy();
    settle(50);
    if (shownSeconds.empty() || hiddenSeconds.empty())
        return 1;
    const double shownMedian = median(shownSeconds);
    const double hiddenMedian = median(hiddenSeconds);
    const double cliMedian = median(cliSeconds);
    std::printf("  %-34s %8.3f s\n", "frame run, shown (median)", shownMedian);
    std::printf("  %-34s %8.3f s\n", "frame run, hidden (median)", hiddenMedian);
    std::printf("  %-34s %8.3f s\n", "vellum-cli run (median)", cliMedian);
    std::printf("  %-34s %8.2f (aim <= 2)\n", "frame shown / vellum-cli", shownMedian / cliMedian);
    std::printf("  %-34s %8.2f\n", "frame hidden / vellum-cli", hiddenMedian / cliMedian);
    std::printf("  %-34s %zu vertices, %zu edges\n", "expected graph", expectedVertices,
                expectedEdges);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    vellum::applyBundledDefaults();
    int generation = 8;
    int runs = 3;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--runs" && i + 1 < argc)
            runs = std::atoi(argv[++i]);
        else
            generation = std::atoi(argv[i]);
    }
    if (generation < 1 || generation > 12 || runs < 1) {
        std::fprintf(stderr, "usage: bench_interpreter [K] [--runs N]   (K from 1 to 12)\n");
        return 2;
    }
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display) {
        std::fprintf(stderr, "bench_interpreter: DISPLAY is not set (run it under Xvfb)\n");
        return 1;
    }
    vellum::bench::printLoadAverage();
    char name[] = "bench_interpreter";
    char* toolkitArgv[] = {name, nullptr};
    const Toolkit toolkit(1, toolkitArgv);
    if (!toolkit.ready()) {
        std::fprintf(stderr, "bench_interpreter: cannot open display '%s'\n", display);
        return 1;
    }
    return measure(generation, runs);
}
