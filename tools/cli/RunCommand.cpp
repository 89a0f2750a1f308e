// vellum-cli run MODULE UNIT GRAPH [-o OUT|-] [--seed N] [--trace] [--stats] [--quiet]
// [--frames DIR [--size WxH]]: runs a transformation unit on a graph with the Koral interpreter
// and lets its console log through to standard output (to standard error when `-o -` puts the
// graph there); --frames records the run as numbered pictures (RunPictures). MODULE is a module
// file (its folder then serves as the module and rule search path where those are unset) or a
// module name found along "koralModules". Ctrl-C stops the run as the desktop program's Stop
// does. Exit status 0 when the run ended normally, 1 when it ended with an error, a condition
// could not be evaluated or the pictures failed, 130 when it was stopped by Ctrl-C, 2 for usage
// and loading errors. A run that did not end normally never writes over one of the files it
// read: its graph goes beside it.
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "base/Console.h"
#include "base/SearchPaths.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "koral/FileSearch.h"
#include "koral/KoralCPU.h"
#include "koral/ModuleCache.h"
#include "koral/RuleCache.h"
#include "tools/cli/Commands.h"
#include "tools/cli/RunPictures.h"

namespace vellum::cli {
namespace {

constexpr int kExitInterrupted = 130;         // as a shell reports a program ended by Ctrl-C
constexpr const char* kStandardOutput = "-";  // as the output file: the graph to standard output

// Set by the SIGINT handler, polled by the thread that waits for the run.
std::atomic<int> interruptRequested{0};
static_assert(std::atomic<int>::is_always_lock_free, "the signal handler needs a lock-free flag");

extern "C" void onInterrupt(int) {
    interruptRequested.store(1);
}

// Routes Ctrl-C to the flag for its lifetime; a second Ctrl-C ends the program as usual.
class InterruptGuard {
  public:
    InterruptGuard() {
        interruptRequested.store(0);
        struct sigaction action {};
        action.sa_handler = onInterrupt;
        action.sa_flags = SA_RESETHAND;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &previous_);
    }
    ~InterruptGuard() { sigaction(SIGINT, &previous_, nullptr); }
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

  private:
    struct sigaction previous_ {};
};

struct RunOptions {
    std::string module;
    std::string unit;
    std::string graphFile;
    std::optional<std::string> output;
    std::optional<std::uint32_t> seed;
    bool trace = false;
    bool statistics = false;
    bool quiet = false;
    std::optional<std::string> frames;  // the folder of the pictures
    PictureOptions picture;
};

// The options, or the problem to report in `problem`.
std::optional<RunOptions> parseOptions(const Arguments& arguments, std::string& problem) {
    RunOptions options;
    std::size_t given = 0;
    bool sized = false;
    problem =
        OptionTable()
            .flag("--trace", options.trace)
            .flag("--stats", options.statistics)
            .flag("--quiet", options.quiet)
            .value("-o", options.output)
            .value("--seed",
                   [&options](const std::string& text) {
                       options.seed = wholeNumber<std::uint32_t>(text);
                       return options.seed ? ""
                                           : "the seed must be a whole number from 0 to 4294967295";
                   })
            .value("--frames", options.frames)
            .value("--size",
                   [&options, &sized](const std::string& text) {
                       sized = true;
                       return readPictureSize(text, options.picture.width, options.picture.height);
                   })
            .positional(options.module)
            .positional(options.unit)
            .positional(options.graphFile)
            .parse(arguments, given);
    if (problem.empty() && given != 3)
        problem = "expected a module, a transformation unit and a graph file";
    if (problem.empty() && options.output && *options.output != kStandardOutput)
        problem = outputFileProblem(*options.output);
    if (problem.empty() && sized && !options.frames)
        problem = "--size goes with --frames";
    if (!problem.empty())
        return std::nullopt;
    return options;
}

bool isModuleFile(const std::string& argument) {
    std::error_code error;
    return std::filesystem::path(argument).extension() == ".mod" ||
           std::filesystem::is_regular_file(argument, error);
}

// The module named on the command line; `search` is made for a module file and must outlive
// the run, since the handler may look for rules while it runs.
const koralModule* loadModuleArgument(const std::string& argument,
                                      std::optional<ModuleFolderSearch>& search) {
    if (isModuleFile(argument)) {
        if (!openInput(argument, "run"))
            return nullptr;
        search.emplace(argument);
        const koralModule* module = search->load();
        if (module == nullptr)
            std::cerr << "vellum-cli run: the module '" << argument << "' has errors\n";
        return module;
    }
    if (findFile(ModuleCache::fileName(argument), "koralModules").empty()) {
        std::cerr << "vellum-cli run: no module '" << argument << "' along koralModules\n";
        return nullptr;
    }
    const koralModule* module = loadModule(argument);
    if (module == nullptr)
        std::cerr << "vellum-cli run: the module '" << argument << "' has errors\n";
    return module;
}

void traceStatement(const koralSourcePosition& position) {
    console() << "TRACE " << position.label << " line " << position.line << "\n";
}

// "TRACE unit 'U' rule 'R' applied at vertices 2 5" (positions as `match` gives them), or
// "... not applied".
void traceAttempt(const KoralRun::RuleAttempt& attempt) {
    std::ostringstream line;
    line << "TRACE unit '" << attempt.unit.name() << "' rule '" << attempt.rule << "' "
         << (attempt.applied ? "applied" : "not applied");
    if (attempt.applied && !attempt.vertices.empty()) {
        line << " at vertices";
        for (std::size_t position : attempt.vertices)
            line << " " << position;
    }
    console() << line.str() << "\n";
}

class StandardErrorSink : public ConsoleSink {
  public:
    void append(std::string_view text) override {
        std::fwrite(text.data(), 1, text.size(), stderr);
        std::fflush(stderr);
    }
};

// Sends the console log to standard error instead of standard output for its lifetime, so that
// standard output carries nothing but the graph.
class ConsoleOnStandardError {
  public:
    ConsoleOnStandardError() : sink_(std::make_shared<StandardErrorSink>()) {
        Console::instance().setStandardOutput(false);
        Console::instance().addSink(sink_);
    }
    ~ConsoleOnStandardError() {
        Console::instance().removeSink(sink_.get());
        Console::instance().setStandardOutput(true);
    }
    ConsoleOnStandardError(const ConsoleOnStandardError&) = delete;
    ConsoleOnStandardError& operator=(const ConsoleOnStandardError&) = delete;

  private:
    std::shared_ptr<StandardErrorSink> sink_;
};

// "vellum-cli run: condition 'C' of unit 'U' failed: PROBLEM (MEANING)" per condition that the
// run could not evaluate; true when there was one.
bool reportConditionFailures(const std::vector<KoralConditionFailure>& failures) {
    for (const KoralConditionFailure& failure : failures) {
        std::cerr << "vellum-cli run: condition '" << failure.condition << "' of unit '"
                  << failure.unit << "' failed: " << failure.problem;
        if (!failure.meaning.empty())
            std::cerr << " (" << failure.meaning << ")";
        std::cerr << "\n";
    }
    return !failures.empty();
}

// True when `output` is one of the files the run read: the graph, the modules, the rules. By
// file identity, so that "./g.dg" and "g.dg" are the same.
bool isInput(const std::string& output, const std::string& graphFile) {
    std::vector<std::string> inputs = ModuleCache::instance().files();
    const std::vector<std::string> rules = RuleCache::instance().files();
    inputs.insert(inputs.end(), rules.begin(), rules.end());
    inputs.push_back(graphFile);
    for (const std::string& input : inputs) {
        std::error_code error;
        if (std::filesystem::equivalent(output, input, error))
            return true;
    }
    return false;
}

// "dir/g.dg" gives "dir/g.partial.dg".
std::string partialFileBeside(const std::string& file) {
    std::filesystem::path path(file);
    const std::filesystem::path extension = path.extension();
    path.replace_extension();
    path += ".partial";
    path += extension;
    return path.string();
}

// Writes the graph where -o says: to standard output for "-", else to the file, or beside it
// when the run did not end normally and the file is one of its inputs. False when writing
// failed.
bool writeResult(const DirectedGraph& graph, const RunOptions& options, bool ranWell) {
    if (*options.output == kStandardOutput) {
        GraphWriter(std::cout).write(graph);
        std::cout.flush();
        return static_cast<bool>(std::cout);
    }
    std::string file = *options.output;
    if (!ranWell && isInput(file, options.graphFile)) {
        const std::string beside = partialFileBeside(file);
        std::cerr << "vellum-cli run: the run did not end normally, so its graph is not written "
                     "over the input '"
                  << file << "' but to '" << beside << "'\n";
        file = beside;
    }
    return saveGraph(graph, file);
}

void writeStatistics(const KoralStatistics& statistics) {
    std::ostringstream text;
    statistics.write(text);
    std::istringstream lines(text.str());
    std::string line;
    std::ostringstream out;
    while (std::getline(lines, line))
        out << "STATS " << line << "\n";
    console() << out.str();
}

// Starts the run and waits for its end, turning Ctrl-C into the interpreter's Stop.
koralCPU::Outcome runToEnd(koralCPU& cpu, const koralUnit& unit, DirectedGraph& graph,
                           KoralFrame* frame, bool quiet) {
    InterruptGuard interrupts;
    if (!cpu.start(&unit, &graph, frame, quiet))
        return koralCPU::Outcome::Exception;
    while (!cpu.waitUntilIdle(std::chrono::milliseconds(50))) {
        if (interruptRequested.load() == 1)
            cpu.stop();
    }
    cpu.wait();
    return cpu.outcome();
}

int exitStatus(koralCPU::Outcome outcome) {
    switch (outcome) {
        case koralCPU::Outcome::Normal:
            return kExitOk;
        case koralCPU::Outcome::Aborted:
            return kExitInterrupted;
        default:
            return kExitFailed;
    }
}

// Points the search path at the folder unless it is set; true when it did.
bool searchFolder(const char* variable, const std::string& folder) {
    return SearchPaths::instance().setDefault(variable, folder);
}

}  // namespace

ModuleFolderSearch::ModuleFolderSearch(std::string moduleFile)
    : file_(std::move(moduleFile)),
      setModules_(searchFolder("koralModules", folderOf(file_))),
      setRules_(searchFolder("koralGraphRules", folderOf(file_))) {}

ModuleFolderSearch::~ModuleFolderSearch() {
    if (setModules_)
        SearchPaths::instance().reset("koralModules");
    if (setRules_)
        SearchPaths::instance().reset("koralGraphRules");
}

const koralModule* ModuleFolderSearch::load() const {
    return ModuleCache::instance().loadFile(file_);
}

namespace {

// The recording --frames asks for, its first picture written; null, with the reason on standard
// error, when it cannot start.
std::unique_ptr<RunPictures> startRecording(const RunOptions& options, DirectedGraph& graph) {
    std::string error;
    std::unique_ptr<RunPictures> pictures = RunPictures::start(
        graph, folderOf(options.graphFile), options.picture, *options.frames, error);
    if (!pictures) {
        std::cout.flush();
        std::cerr << "vellum-cli run: " << error << "\n";
    }
    return pictures;
}

// "vellum-cli run: the recording stopped after N pictures: PROBLEM"; true when it did.
bool reportRecording(const RunPictures* pictures) {
    if (pictures == nullptr || pictures->problem().empty())
        return false;
    std::cerr << "vellum-cli run: the recording stopped after " << pictures->pictures()
              << " pictures: " << pictures->problem() << "\n";
    return true;
}

int runLoaded(const RunOptions& options, const koralUnit& unit, DirectedGraph& graph) {
    std::optional<ConsoleOnStandardError> consoleOnStandardError;
    if (options.output == kStandardOutput)
        consoleOnStandardError.emplace();
    // After the console's redirection: showing the graph may have something to say.
    std::unique_ptr<RunPictures> pictures;
    if (options.frames && !(pictures = startRecording(options, graph)))
        return kExitFailed;
    koralCPU cpu;
    cpu.setSeed(options.seed);
    if (options.trace) {
        cpu.setTraceHook(traceStatement);
        cpu.setAttemptHook(traceAttempt);
    }
    cpu.setCollectStatistics(options.statistics);
    const koralCPU::Outcome outcome = runToEnd(cpu, unit, graph, pictures.get(), options.quiet);
    if (options.statistics)
        writeStatistics(cpu.statistics());
    std::cout.flush();
    int status = exitStatus(outcome);
    if (reportConditionFailures(cpu.conditionFailures()) && status == kExitOk)
        status = kExitFailed;
    if (reportRecording(pictures.get()) && status == kExitOk)
        status = kExitFailed;
    if (options.output && !writeResult(graph, options, status == kExitOk))
        status = kExitFailed;
    std::cout.flush();
    return status;
}

}  // namespace

int runRun(const Arguments& arguments) {
    std::string problem;
    const std::optional<RunOptions> options = parseOptions(arguments, problem);
    if (!options)
        return usageError("run", problem);
    std::optional<ModuleFolderSearch> search;
    const koralModule* module = loadModuleArgument(options->module, search);
    if (module == nullptr)
        return kExitUsage;
    const koralUnit* unit = module->findUnit(options->unit);
    if (unit == nullptr) {
        std::cerr << "vellum-cli run: the module '" << module->name()
                  << "' has no transformation unit '" << options->unit << "'\n";
        return kExitUsage;
    }
    DirectedGraph graph;
    if (!openInput(options->graphFile, "run"))
        return kExitUsage;
    if (!loadGraph(options->graphFile, graph)) {
        std::cout.flush();
        return kExitUsage;
    }
    return runLoaded(*options, *unit, graph);
}

}  // namespace vellum::cli
