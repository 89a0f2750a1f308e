// The entries of the function library "$(graph": each hands its call to the graph layer's
// implementation (graph/GraphFunctions.h), with the way a pattern's name becomes a rule: the file
// the name denotes as the rules that modules apply are named ("a.b" is "a/b.drl"), found along
// "koralGraphRules" and read as a rule file.
#include "grammar/ExpressionFunction.h"
#include "graph/GraphFunctions.h"
#include "graph/RuleReader.h"
#include "koral/FileSearch.h"
#include "koral/RuleCache.h"

namespace {

std::unique_ptr<vellum::DirectedGraphRule> loadPattern(const std::string& name,
                                                       std::string& problem) {
    const std::string fileName = vellum::RuleCache::fileName(name, "DirectedGraph");
    const std::string file = vellum::findFile(fileName, "koralGraphRules");
    if (file.empty()) {
        problem = "is not found: no file '" + fileName + "' along koralGraphRules";
        return nullptr;
    }
    auto rule = vellum::loadRule(file);
    if (!rule)
        problem = "could not be read from '" + file + "'";
    return rule;
}

vellum::Value* call(const char* name, const vellum::ValueList* arguments,
                    const vellum::Environment* environment) {
    return vellum::callGraphFunction(name, *arguments, *environment, loadPattern);
}

}  // namespace

VELLUM_EXPRESSION_FUNCTION(outdegree) {
    return call("outdegree", arguments, environment);
}

VELLUM_EXPRESSION_FUNCTION(indegree) {
    return call("indegree", arguments, environment);
}

VELLUM_EXPRESSION_FUNCTION(edge) {
    return call("edge", arguments, environment);
}

VELLUM_EXPRESSION_FUNCTION(absent) {
    return call("absent", arguments, environment);
}

VELLUM_EXPRESSION_FUNCTION(present) {
    return call("present", arguments, environment);
}
