// bench_koral_runs CASE SIZE [--seed N]: runs a bundled example with the Koral interpreter, as
// `vellum-cli run` does, and prints one line of figures: the run time alone (on the clock and in
// processor time), the time with the loading of the module, its rules and the graph, and the
// peak memory of the process.
//   sierpinski K   unit genK of examples/sierpinski: generation K from generation 0
//   mutex N        unit sts of examples/mutex on a generated ring of N processes
//   mutex-nac N    the same with examples/mutex-nac, whose rules state the benchmark's negative
//                  conditions as such instead of process labels
// The result is checked (counts by label, the same for both mutex cases), so that a broken run
// cannot pass for a fast one.
// One case per process, so that the peak memory is that case's: `bench_koral_runs --cases`
// lists the cases that scripts/bench runs one by one.
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Console.h"
#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "koral/BundledDefaults.h"
#include "koral/KoralCPU.h"
#include "koral/ModuleCache.h"

namespace {

using Clock = std::chrono::steady_clock;

// The two mutex forms side by side at each size.
const char* const kCases[] = {"sierpinski 10",   "sierpinski 12",    "mutex 10000",
                              "mutex-nac 10000", "mutex 100000",     "mutex-nac 100000",
                              "mutex 1000000",   "mutex-nac 1000000"};

struct Case {
    std::string name;
    long size = 0;
    std::uint32_t seed = 1;
};

// What one case runs: a unit of a module in an example folder, on a graph file.
struct Input {
    std::string folder;
    std::string module;
    std::string unit;
    std::string graphFile;
};

// A folder of its own for generated inputs, removed with everything in it.
class ScratchFolder {
  public:
    ScratchFolder() {
        char name[] = "/tmp/bench_koral_XXXXXX";
        if (::mkdtemp(name) != nullptr)
            path_ = name;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        if (!path_.empty())
            std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

std::optional<Case> parseCase(int argc, char** argv) {
    if (argc != 3 && !(argc == 5 && std::string(argv[3]) == "--seed"))
        return std::nullopt;
    Case result;
    result.name = argv[1];
    char* end = nullptr;
    result.size = std::strtol(argv[2], &end, 10);
    if (*end != '\0' || result.size < 1)
        return std::nullopt;
    if (argc == 5)
        result.seed = static_cast<std::uint32_t>(std::strtoul(argv[4], nullptr, 10));
    const bool known = (result.name == "sierpinski" && result.size <= 14) ||
                       ((result.name == "mutex" || result.name == "mutex-nac") && result.size >= 2);
    return known ? std::optional<Case>(result) : std::nullopt;
}

// A ring of `count` processes joined by "next" edges, written as text as it goes, so that the
// generator adds nothing to the peak memory of the run.
bool writeRing(const std::string& file, long count) {
    std::ofstream out(file);
    out << "directed graph ring\n{\n";
    for (long i = 1; i <= count; ++i)
        out << "\tvertex " << i << " { label process }\n";
    for (long i = 1; i <= count; ++i)
        out << "\tedge " << i << " -> " << (i % count + 1) << " { label next }\n";
    out << "}\n";
    return static_cast<bool>(out);
}

std::optional<Input> prepare(const Case& c, const ScratchFolder& scratch) {
    const std::string examples = VELLUM_EXAMPLES_DIR;
    if (c.name == "sierpinski") {
        const std::string folder = examples + "/sierpinski";
        return Input{folder, "sierpinski", "gen" + std::to_string(c.size), folder + "/triangle.dg"};
    }
    const std::string ring = scratch.path() + "/ring.dg";
    if (scratch.path().empty() || !writeRing(ring, c.size))
        return std::nullopt;
    if (c.name == "mutex-nac")
        return Input{examples + "/mutex-nac", "mutex_nac", "sts", ring};
    return Input{examples + "/mutex", "mutex", "sts", ring};
}

// The expected shape of the result; empty when it is right.
std::string shapeProblem(const Case& c, const vellum::DirectedGraph& graph) {
    if (c.name == "sierpinski") {
        long power = 1;
        for (long i = 0; i <= c.size; ++i)
            power *= 3;
        const auto vertices = static_cast<std::size_t>((power + 3) / 2);
        const auto edges = static_cast<std::size_t>(power);
        if (graph.vertexCount() == vertices && graph.edgeCount() == edges)
            return "";
        return "expected " + std::to_string(vertices) + " vertices and " + std::to_string(edges) +
               " edges";
    }
    const auto n = static_cast<std::size_t>(c.size);
    if (graph.vertexCount("served") == n && graph.vertexCount("resource") == 1 &&
        graph.edgeCount("next") == n && graph.edgeCount("token") == 1 && graph.edgeCount() == n + 1)
        return "";
    return "expected " + std::to_string(n) + " served processes, one resource and its token";
}

double seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

// The processor time of the whole process so far, all threads together: on a shared machine it
// says more about the run than the time on the clock.
double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

long peakMegabytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;  // kilobytes on Linux
}

int runCase(const Case& c) {
    ScratchFolder scratch;
    const std::optional<Input> input = prepare(c, scratch);
    if (!input) {
        std::fprintf(stderr, "could not write the input of %s %ld\n", c.name.c_str(), c.size);
        return 1;
    }
    ::setenv("koralModules", input->folder.c_str(), 1);
    ::setenv("koralGraphRules", input->folder.c_str(), 1);
    vellum::ConsoleCapture console;

    const Clock::time_point start = Clock::now();
    const vellum::koralModule* module = vellum::loadModule(input->module);
    const vellum::koralUnit* unit = module != nullptr ? module->findUnit(input->unit) : nullptr;
    auto graph = std::make_unique<vellum::DirectedGraph>();
    if (unit == nullptr || !vellum::loadGraph(input->graphFile, *graph)) {
        std::fprintf(stderr, "could not load %s:\n%s", input->unit.c_str(), console.text().c_str());
        return 1;
    }
    const Clock::time_point loaded = Clock::now();
    const double processorAtStart = processorSeconds();
    vellum::koralCPU cpu;
    cpu.setSeed(c.seed);
    const bool started = cpu.start(unit, graph.get(), nullptr, true);
    cpu.wait();
    const Clock::time_point end = Clock::now();
    const double processor = processorSeconds() - processorAtStart;

    const std::string problem = started && cpu.outcome() == vellum::koralCPU::Outcome::Normal
                                    ? shapeProblem(c, *graph)
                                    : "the run failed:\n" + console.text();
    std::printf(
        "%-10s %8ld  run %7.3f s (processor %6.3f s)  with loading %7.3f s  peak memory %5ld MB  "
        "%zu vertices, %zu edges%s%s\n",
        c.name.c_str(), c.size, seconds(end - loaded), processor, seconds(end - start),
        peakMegabytes(), graph->vertexCount(), graph->edgeCount(),
        problem.empty() ? "" : "  WRONG: ", problem.c_str());
    return problem.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    vellum::applyBundledDefaults();
    if (argc == 2 && std::string(argv[1]) == "--cases") {
        for (const char* c : kCases)
            std::printf("%s\n", c);
        return 0;
    }
    const std::optional<Case> c = parseCase(argc, argv);
    if (!c) {
        std::fprintf(stderr,
                     "usage: bench_koral_runs sierpinski K | mutex N | mutex-nac N [--seed S]\n"
                     "       bench_koral_runs --cases\n"
                     "(K from 1 to 14, N at least 2)\n");
        return 2;
    }
    return runCase(*c);
}
