// Fuzz target: arbitrary bytes compiled as a Koral module of the graph class DirectedGraph by the
// real compiler, with the bundled graph class handler compiling its conditions, the rules of
// fuzz/fixtures/rules and the bundled examples to apply, and the modules of fuzz/fixtures/modules
// to use. A module that compiles is complete and finds each of its units by name.
#include <dlfcn.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/Console.h"
#include "base/Paths.h"
#include "fuzz/FuzzSupport.h"
#include "koral/BundledDefaults.h"
#include "koral/ModuleCache.h"
#include "koral/ModuleCompiler.h"
#include "tests/support/TempFile.h"

using vellum::fuzz::check;

namespace {

// Search paths fixed once, before the first input: rules and modules from the fixture folder
// first, then from the examples, so that names in the seeds resolve.
void setSearchPaths() {
    const std::string fixtures = VELLUM_FUZZ_FIXTURES;
    const std::string examples = VELLUM_EXAMPLES;
    std::string rules = fixtures + "/rules";
    for (const char* example : {"colouring", "mutex", "petri", "sierpinski", "tree"})
        rules += ";" + examples + "/" + example;
    ::setenv("koralGraphRules", rules.c_str(), 1);
    ::setenv("koralModules", (fixtures + "/modules;" + examples + "/tree").c_str(), 1);
    vellum::applyBundledDefaults();
}

// The plug-ins carry coverage counters that libFuzzer reads after every input; one that a module
// unloads would leave it reading unmapped memory, so each stays mapped for the whole run.
void pinPlugins() {
    for (const char* name : {"DirectedGraph.gc", "graphstats.so", "vmath.so"}) {
        const std::string path = vellum::pluginDirectory() + "/" + name;
        (void)::dlopen(path.c_str(), RTLD_NOW | RTLD_NODELETE);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setSearchPaths();
    pinPlugins();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vellum::test::TempFile file(std::string(reinterpret_cast<const char*>(data), size));
    if (file.path().empty())
        return 0;
    vellum::ConsoleCapture capture;
    {
        vellum::ModuleCompiler compiler;
        const auto module = compiler.compile(file.path(), "fuzzed");
        if (module != nullptr) {
            check(module->loaded());
            for (const auto& unit : module->units()) {
                const vellum::koralUnit* found = module->findUnit(unit->name());
                check(found != nullptr && found->name() == unit->name());
            }
        }
    }
    // Every input starts from empty caches, so that a finding reproduces on its own.
    vellum::clearKoralCaches();
    return 0;
}
