#include "koral/GraphClassHandlers.h"

#include "base/Console.h"
#include "base/SearchPaths.h"
#include "koral/FileSearch.h"
#include "koral/KoralException.h"

namespace vellum {

namespace {
constexpr const char* kHandlerWording = " of graph class handler for '";
constexpr const char* kConditionWording = " of the graph class handler for '";

// A class name becomes a file name in the folders of the search path; a name holding a folder
// separator would reach beyond them, so it names no handler.
bool isClassName(const std::string& graphClass) {
    return !graphClass.empty() && graphClass.find_first_of("/\\") == std::string::npos;
}

}  // namespace

GraphClassHandlers& GraphClassHandlers::instance() {
    static GraphClassHandlers table;
    return table;
}

const koralLibrary& GraphClassHandlers::handler(const std::string& graphClass) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = handlers_.find(graphClass);
    if (found != handlers_.end())
        return found->second;
    const std::string path =
        isClassName(graphClass) ? findFile(graphClass + ".gc", "koralGraphClasses") : "";
    koralLibrary library;
    try {
        if (!path.empty())
            library.load(loaderPath(path));
    } catch (const koralException&) {
        // Reported below in the handler's own words.
    }
    if (!library.loaded()) {
        console() << "Could not open the graph class handler for '" << graphClass << "' !!!\n";
        return none_;
    }
    return handlers_.emplace(graphClass, std::move(library)).first->second;
}

template <typename Entry>
Entry GraphClassHandlers::entry(const std::string& graphClass, const char* name,
                                const char* wording) {
    const koralLibrary& library = handler(graphClass);
    if (!library.loaded())
        throw koralException("No library loaded!!!", "koralLibrary");
    const auto found = library.find<Entry>(name);
    if (found == nullptr) {
        throw koralException(std::string("Could not find the function '") + name + "'" + wording +
                                 graphClass + "' !!!",
                             "koralLibrary");
    }
    return found;
}

GraphLoadEntry GraphClassHandlers::loadGraphEntry(const std::string& graphClass) {
    return entry<GraphLoadEntry>(graphClass, "gcLoadGraph", kHandlerWording);
}

GraphSaveEntry GraphClassHandlers::saveGraphEntry(const std::string& graphClass) {
    return entry<GraphSaveEntry>(graphClass, "gcSaveGraph", kHandlerWording);
}

RuleLoadEntry GraphClassHandlers::loadRuleEntry(const std::string& graphClass) {
    return entry<RuleLoadEntry>(graphClass, "gcLoadGraphRule", kHandlerWording);
}

ConditionCompileEntry GraphClassHandlers::conditionEntry(const std::string& graphClass) {
    return entry<ConditionCompileEntry>(graphClass, "gcGraphClassExpression", kConditionWording);
}

std::string GraphClassHandlers::graphFile(const std::string& baseName,
                                          const std::string& graphClass) {
    return baseName + "." + SearchPaths::instance().value(graphClass + "EXTGRAPH");
}

std::unique_ptr<DirectedGraph> GraphClassHandlers::loadGraph(const std::string& graphClass,
                                                             const std::string& path) {
    return std::unique_ptr<DirectedGraph>(loadGraphEntry(graphClass)(path.c_str()));
}

bool GraphClassHandlers::saveGraph(DirectedGraph& graph, const std::string& path) {
    return saveGraphEntry(graph.className())(&graph, path.c_str()) != 0;
}

std::unique_ptr<KoralCondition> GraphClassHandlers::compileCondition(const std::string& graphClass,
                                                                     void* compiler,
                                                                     const std::string& text) {
    return std::unique_ptr<KoralCondition>(conditionEntry(graphClass)(compiler, text.c_str()));
}

}  // namespace vellum
