// The graph class handler table: for each graph class C, the library "C.gc" found along
// "koralGraphClasses", opened on first use and kept loaded for the rest of the program. The
// handler loads and saves graphs and rules of its class and compiles module conditions; this
// table opens it and looks its entries up, with the system's messages for what is missing.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "koral/KoralLibrary.h"
#include "koral/PluginApi.h"

namespace vellum {

class GraphClassHandlers {
  public:
    // The process-wide table that modules and frames share.
    static GraphClassHandlers& instance();

    // The handler of the class, opened now unless it is already. When it cannot be found or
    // loaded, or the name is empty or holds a "/" or "\\" (a class is a name, not a path), the
    // console shows "Could not open the graph class handler for 'C' !!!" and the
    // result is a library with nothing loaded (it is tried again next time). The reference stays
    // valid as long as the table.
    const koralLibrary& handler(const std::string& graphClass);
    bool open(const std::string& graphClass) { return handler(graphClass).loaded(); }

    // The entries of the class's handler (opened as handler() does). Each throws koralException
    // (class "koralLibrary"): "No library loaded!!!" when the handler could not be opened, and
    // "Could not find the function 'gcLoadGraph' of graph class handler for 'C' !!!" (likewise
    // for gcSaveGraph and gcLoadGraphRule; "... 'gcGraphClassExpression' of the graph class
    // handler for 'C' !!!" for the last, both wordings kept) when it is not exported.
    GraphLoadEntry loadGraphEntry(const std::string& graphClass);
    GraphSaveEntry saveGraphEntry(const std::string& graphClass);
    RuleLoadEntry loadRuleEntry(const std::string& graphClass);
    ConditionCompileEntry conditionEntry(const std::string& graphClass);

    // The graph file of a class: `baseName` + "." + the value of C + "EXTGRAPH" (no search).
    static std::string graphFile(const std::string& baseName, const std::string& graphClass);
    // gcLoadGraph of the class on that path; null when the handler finds no graph there.
    std::unique_ptr<DirectedGraph> loadGraph(const std::string& graphClass,
                                             const std::string& path);
    // gcSaveGraph of the graph's own class; true on success.
    bool saveGraph(DirectedGraph& graph, const std::string& path);
    // gcGraphClassExpression of the class; null when the handler rejects the text.
    std::unique_ptr<KoralCondition> compileCondition(const std::string& graphClass, void* compiler,
                                                     const std::string& text);

  private:
    template <typename Entry>
    Entry entry(const std::string& graphClass, const char* name, const char* wording);

    std::mutex mutex_;  // guards the map; entries are never removed, so references stay valid
    std::map<std::string, koralLibrary> handlers_;  // only classes whose handler opened
    koralLibrary none_;                             // what a class that would not open gets
};

}  // namespace vellum
